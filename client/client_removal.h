#pragma once

#include <string>
#include <vector>

#include "client/removal_plan.h"
#include "platform/file_tree.h"

namespace wendle {

// The steps that remove the client's folders and files. Each goes through all its items whatever happens,
// logs what became of each, and returns normally.

// Removes `<name>.app` from the client's own launch agents folder with /bin/rm, for each name. An absent one
// is passed over silently; what rm reports is not looked at.
void removeLaunchAgentApps(const std::vector<std::string>& names);

// The directories at any depth in `containers` whose names begin with "com.wendle.", a nested one after its
// parent: their paths in it.
[[nodiscard]] std::vector<std::string> findFolderContainers(const FileTree& containers);

// Deletes those in the containers directory from where they were found, when there is one. A nested match is
// gone with its parent by then, which is logged as an error.
void removeFolderContainers();

// Deletes the support folders and the main application.
void removeSupportFolders();

// Deletes the support folders and the preference files.
void removeClientFolders();

// What removeLaunchAgentApps(), removeFolderContainers() and removeClientFolders() would do.
void planLaunchAgentApps(RemovalPlan& plan, const std::vector<std::string>& names);
void planFolderContainers(RemovalPlan& plan);
void planClientFolders(RemovalPlan& plan);

}  // namespace wendle
