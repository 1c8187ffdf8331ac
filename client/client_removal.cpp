#include "client/client_removal.h"

#include "client/client_locations.h"
#include "logging/logger.h"
#include "platform/file_tree.h"
#include "platform/file_url.h"
#include "platform/files.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
static std::string launchAgentAppPath(const std::string& name) {
  return clientLocations().wendleLaunchAgentsDirectory + "/" + name + ".app";
}

static std::vector<std::string> supportFolderPaths() {
  return {clientLocations().wendleSupportDirectory, clientLocations().sharedWendleDirectory,
          clientLocations().wendleAppPath};
}

static void removeWithTool(const std::string& path) {
  Task task;
  if (const Status status = runAndReturnError(task, "/bin/rm", {"-rf", path}); !status.ok()) {
    return uninstallerLogger().log(LogLevel::failure,
                                   "Failed to remove " + path + ": " + describe(status.error()));
  }
  logProgress("Remove " + path + " - finished");
}

static void logDeletion(const Status& status, const FileUrl& url, std::string_view logPrefix) {
  const std::string message = std::string(logPrefix) + url.absoluteString();
  if (status.ok()) {
    logProgress(message + " - success");
  } else {
    uninstallerLogger().log(status.error(), message);
  }
}

// The directories at any depth in `containers` whose names begin with "com.wendle.", a nested one after its
// parent: their paths in it.
static std::vector<std::string> findFolderContainers(const FileTree& containers) {
  return containers.findDirectories([](std::string_view name) { return name.starts_with("com.wendle."); });
}

void deleteItem(const std::string& path, std::string_view logPrefix) {
  const FileUrl url = FileUrl::fileUrlWithPath(path);  // before: what is gone is no directory any more
  logDeletion(removeItem(url.path()), url, logPrefix);
}

void removeLaunchAgentApps(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const std::string path = launchAgentAppPath(name);
    if (fileExists(path)) removeWithTool(path);
  }
}

void removeFolderContainers() {
  const std::string& directory = clientLocations().containersDirectory;
  logStartFinish("Remove folder containers", [&] {
    const FileTree containers(directory);
    for (const std::string& found : findFolderContainers(containers)) {
      const FileUrl url = FileUrl::fileUrlWithDirectoryPath(directory + "/" + found);
      logDeletion(containers.removeItem(found), url, deleteFolderPrefix);
    }
  });
}

void removeSupportFolders() {
  for (const std::string& path : supportFolderPaths()) deleteItem(path, deleteFolderPrefix);
}

void removeClientFolders() {
  removeSupportFolders();
  for (const std::string& path : clientLocations().preferenceFilePaths) deleteItem(path, deleteFilePrefix);
}

void planLaunchAgentApps(RemovalPlan& plan, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const std::string path = launchAgentAppPath(name);
    if (fileExists(path)) plan.addPath(path, "the search extension in the client's own launch agents folder");
  }
}

void planFolderContainers(RemovalPlan& plan) {
  for (const std::string& found : findFolderContainers(FileTree(clientLocations().containersDirectory))) {
    plan.addPath(clientLocations().containersDirectory + "/" + found,
                 "a container whose name begins with com.wendle.");
  }
}

void planClientFolders(RemovalPlan& plan) {
  for (const std::string& path : supportFolderPaths()) plan.addPath(path, "the client's folder");
  for (const std::string& path : clientLocations().preferenceFilePaths)
    plan.addPath(path, "the client's preferences");
}
}  // namespace wendle
