#include "client/client_removal.h"

#include "client/client_locations.h"
#include "client/item_deletion.h"
#include "logging/uninstaller_logger.h"
#include "platform/directory_walk.h"
#include "platform/file_presence.h"
#include "platform/task.h"

namespace wendle {
namespace {

std::string launchAgentAppPath(const std::string& name) {
  return wendleLaunchAgentsDirectory() + "/" + name + ".app";
}

std::vector<std::string> supportFolderPaths() {
  return {wendleSupportDirectory(), sharedWendleDirectory(), wendleAppPath()};
}

void removeWithTool(const std::string& path) {
  Task task;
  task.setExecutable("/bin/rm");
  task.setArguments({"-rf", path});
  if (const auto error = task.launchAndReturnError()) {
    return uninstallerLogger().log(LogLevel::failure, "Failed to remove " + path + ": " + describe(*error));
  }
  task.waitUntilExit();
  uninstallerLogger().log(LogLevel::progress, "Remove " + path + " - finished");
}

}  // namespace

void removeLaunchAgentApps(const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const std::string path = launchAgentAppPath(name);
    if (fileExists(path)) removeWithTool(path);
  }
}

std::vector<FileUrl> findFolderContainers() {
  const auto isContainer = [](std::string_view name) { return name.starts_with("com.wendle."); };
  std::vector<FileUrl> containers;
  for (const std::string& path : findDirectories(containersDirectory(), isContainer)) {
    containers.push_back(FileUrl::fileUrlWithDirectoryPath(path));
  }
  return containers;
}

void removeFolderContainers() {
  uninstallerLogger().log(LogLevel::progress, "Remove folder containers - started");
  for (const FileUrl& container : findFolderContainers()) deleteItem(container, deleteFolderPrefix);
  uninstallerLogger().log(LogLevel::progress, "Remove folder containers - finished");
}

void removeSupportFolders() {
  for (const std::string& path : supportFolderPaths()) {
    deleteItem(FileUrl::fileUrlWithPath(path), deleteFolderPrefix);
  }
}

void removeClientFolders() {
  removeSupportFolders();
  for (const std::string& path : preferenceFilePaths()) {
    deleteItem(FileUrl::fileUrlWithPath(path), deleteFilePrefix);
  }
}

void planLaunchAgentApps(RemovalPlan& plan, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    plan.addPath(launchAgentAppPath(name), "the search extension in the client's own launch agents folder");
  }
}

void planFolderContainers(RemovalPlan& plan) {
  for (const FileUrl& container : findFolderContainers()) {
    plan.addPath(container.path(), "a container whose name begins with com.wendle.");
  }
}

void planClientFolders(RemovalPlan& plan) {
  for (const std::string& path : supportFolderPaths()) plan.addPath(path, "the client's folder");
  for (const std::string& path : preferenceFilePaths()) plan.addPath(path, "the client's preferences");
}

}  // namespace wendle
