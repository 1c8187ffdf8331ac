#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/removal_plan.h"

namespace wendle {

// The client's component applications, wherever Spotlight's index has a copy of them.

// The absolute paths in an answer of the index, which parts them by line feeds. A path may hold line feeds as
// well: neighbouring lines are one path when such an item is there, since to take them apart would be to name
// other items. A line that is no absolute path is left out: it would name something in the working directory.
[[nodiscard]] std::vector<std::string> pathsInAnswer(std::string_view answer);

// The absolute paths of the bundles with that identifier, in the index's order. Empty when nothing is found,
// and when the tool fails or its output is no UTF-8. Throws LaunchException when the tool cannot be started.
[[nodiscard]] std::vector<std::string> findSpotlightPaths(const std::string& bundleIdentifier);

// Those that lie neither on another volume, in a build folder, in a backup, beside a safety net folder, nor
// in a numbered folder (see path_filters.h).
[[nodiscard]] std::vector<std::string> findAppBundles(const std::string& bundleIdentifier);

// Deletes every copy that findAppBundles() finds, application by application.
void removeInstancesWithExceptions();

// Deletes every copy that findSpotlightPaths() finds: those on other volumes and in backups as well.
void removeAllInstances();

// What these two would do.
void planInstancesWithExceptions(RemovalPlan& plan);
void planAllInstances(RemovalPlan& plan);

}  // namespace wendle
