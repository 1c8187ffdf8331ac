#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/removal_plan.h"

namespace wendle {
// The steps that remove the client's directories and files. Each attempts all its items, logs the result of
// each, and returns normally.

inline constexpr std::string_view deleteFolderPrefix = "Delete Folder - ";  // directories and bundles
inline constexpr std::string_view deleteFilePrefix = "Delete File - ";  // files, and what is listed with them

// Deletes the item at `path`, a directory with all its contents, as removeItem() does, and logs the prefix,
// the item's URL and " - success", or the error. A missing item is such an error.
void deleteItem(const std::string& path, std::string_view logPrefix);

// Removes `<name>.app` from the client's own launch agents directory with /bin/rm, for each name. An absent
// one is skipped silently; rm's exit status and output are ignored.
void removeLaunchAgentApps(const std::vector<std::string>& names);

// Deletes the directories at any depth below the containers directory whose names begin with "com.wendle.",
// a nested one after its parent, each from the directory in which it was found. A nested match is gone with
// its parent by then, which is logged as an error. Nothing happens when there is no containers directory.
void removeFolderContainers();

// Deletes the support directories and the main application.
void removeSupportFolders();

// Deletes the support directories and the preference files.
void removeClientFolders();

// What removeLaunchAgentApps(), removeFolderContainers() and removeClientFolders() would do.
void planLaunchAgentApps(RemovalPlan& plan, const std::vector<std::string>& names);
void planFolderContainers(RemovalPlan& plan);
void planClientFolders(RemovalPlan& plan);
}  // namespace wendle
