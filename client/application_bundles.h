#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/removal_plan.h"
#include "platform/file_url.h"

namespace wendle {
// The client's component applications, wherever Spotlight's index has a copy of them.

// The absolute paths in an answer of the index, which parts them by line feeds (mdfind(1)). A path may hold
// line feeds as well: neighbouring lines are one path when such an item is there, since to take them apart
// would be to name other items. A line that is no absolute path is left out: it would name something in the
// working directory.
[[nodiscard]] std::vector<std::string> pathsInAnswer(std::string_view answer);

// The absolute paths of the bundles with that identifier, in the index's order. Empty when nothing is found,
// and when the tool fails or its output is no UTF-8. Throws LaunchException when the tool cannot be started.
[[nodiscard]] std::vector<std::string> findSpotlightPaths(const std::string& bundleIdentifier);

// Tells copies of the client that somebody keeps on purpose. None of the tests follows or changes anything.

// Whether the item lies in, or is, a directory whose name ends in ".backupdb", ignoring case.
[[nodiscard]] bool isInBackupDatabase(const FileUrl& item);

// Whether a directory "_CCC SafetyNet" lies in the item or in a directory above it; the root directory is not
// looked at.
[[nodiscard]] bool isInSafetyNetFolder(const FileUrl& item);

// Whether the item lies in, or is, an existing directory whose name ends in ".wrp" and a number in plain
// decimal text: x.wrp7 and x.wrp-2, not x.wrp07. The lowercased path is what must exist, so on a
// case-sensitive volume a path with capitals is not found.
[[nodiscard]] bool isInNumberedWrpFolder(const FileUrl& item);

// Those that lie neither on another volume, in a build directory, in a backup, beside a safety net directory,
// nor in a numbered directory.
[[nodiscard]] std::vector<std::string> findAppBundles(const std::string& bundleIdentifier);

// Deletes every copy that findAppBundles() finds, application by application.
void removeInstancesWithExceptions();

// Deletes every copy that findSpotlightPaths() finds: those on other volumes and in backups as well.
void removeAllInstances();

// What these two would do.
void planInstancesWithExceptions(RemovalPlan& plan);
void planAllInstances(RemovalPlan& plan);
}  // namespace wendle
