#include "system/launch_agents.h"

#include <vector>

#include "client/client_locations.h"
#include "client/client_removal.h"
#include "logging/logger.h"
#include "platform/files.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
namespace {

void runLaunchctl(const std::vector<std::string>& arguments, const std::string& commandText,
                  const std::string& failureText) {
  logProgress(commandText + " - started");
  Task task = makeConsoleTask();
  const Status status = runAndReturnError(task, "/bin/launchctl", arguments);
  if (!status.ok()) return uninstallerLogger().log(status.error(), failureText);
  logProgress(commandText + " - success");
}

}  // namespace

void unloadLaunchAgents() {
  logStartFinish("Unload Wendle agent", [] {
    for (const std::string& path : clientLocations().launchAgentPaths) {
      if (!fileExists(path)) continue;
      unloadLaunchAgent(path);
      removeLaunchAgent(path);
      deleteItem(FileUrl::fileUrlWithPath(path), deleteFilePrefix);
    }
  });
}

void planLaunchAgents(RemovalPlan& plan) {
  for (const std::string& path : clientLocations().launchAgentPaths) {
    if (!fileExists(path)) continue;
    plan.addPath(path, path == clientLocations().quickLookGeneratorPath
                           ? "the client's Quick Look generator"
                           : "a launch agent; its job is unloaded, which ends it");
  }
}

void unloadLaunchAgent(const std::string& path) {
  runLaunchctl({"unload", "-w", path}, "Run `launchctl unload -w " + path + "`",
               "Failed to run `launchctl unload -w " + path + "`");
}

void removeLaunchAgent(const std::string& path) {
  const std::string commandText = "Run `launchctl remove " + path + "`";
  const std::string& failureText = commandText;  // no "Failed to": kept for log compatibility
  runLaunchctl({"remove", path}, commandText, failureText);
}

}  // namespace wendle
