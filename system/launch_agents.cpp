#include "system/launch_agents.h"

#include <optional>
#include <vector>

#include "base/path.h"
#include "base/text.h"
#include "client/client_locations.h"
#include "client/client_removal.h"
#include "logging/logger.h"
#include "platform/files.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
static void runLaunchctl(const std::vector<std::string>& arguments, const std::string& commandText,
                         const std::string& failureText) {
  logProgress(commandText + " - started");
  Task task = makeConsoleTask();
  const Status status = runAndReturnError(task, "/bin/launchctl", arguments);
  if (!status.ok()) return uninstallerLogger().log(status.error(), failureText);
  logProgress(commandText + " - success");
}

// What launchd knows the job of one of the client's agents by.
static std::string jobLabel(const std::string& agentPath) {
  const std::string name = pathComponents(agentPath).back();
  return name.substr(0, name.rfind('.'));
}

// The process of a job; none when launchd knows no such job, or when it does not run. Source: launchctl(1),
// `list`, which prints a dictionary with a line `"PID" = 123;`.
static std::optional<std::int64_t> jobProcess(const std::string& label) {
  const std::string job = runForOutput("/bin/launchctl", {"list", label});
  const std::string key = "\"PID\" = ";
  const size_t start = job.find(key);
  if (start == std::string::npos) return std::nullopt;
  const std::string number = job.substr(start + key.size());
  return parseDecimal(number.substr(0, number.find(';')));
}

void unloadLaunchAgents() {
  logStartFinish("Unload Wendle agent", [] {
    for (const std::string& path : clientLocations().launchAgentPaths) {
      if (!fileExists(path)) continue;
      unloadLaunchAgent(path);
      removeLaunchAgent(path);
      deleteItem(path, deleteFilePrefix);
    }
  });
}

void planLaunchAgents(RemovalPlan& plan) {
  for (const std::string& path : clientLocations().launchAgentPaths) {
    if (!fileExists(path)) continue;
    if (path == clientLocations().quickLookGeneratorPath) {
      plan.addPath(path, "the client's Quick Look generator");
      continue;
    }
    plan.addPath(path, "a launch agent; its job is unloaded");
    const std::string label = jobLabel(path);
    if (const auto process = jobProcess(label)) plan.addProcess(label, *process, "ends with its job");
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
