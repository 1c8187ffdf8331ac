#include "dock/dock_folder_removal.h"

#include <limits>
#include <stdexcept>
#include <string>

#include "base/text.h"
#include "client/client_locations.h"
#include "logging/uninstaller_logger.h"
#include "platform/folder_lock.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
namespace {

// The shell makes the escaped quote part of the pattern, so that grep passes over the _CFURLStringType lines;
// awk prints the position, among the tiles' URL lines, of every line that speaks of the client.
constexpr const char* searchLine =
    R"(defaults read com.apple.dock persistent-others | grep _CFURLString\" | awk "/Wendle/ {print NR}")";

std::string deleteLine(std::int64_t index) {
  return "/usr/libexec/PlistBuddy -c 'Delete persistent-others:" + std::to_string(index) + "' " +
         preferencesDirectory() + "/com.apple.dock.plist";
}

std::int64_t indexOfPosition(std::int64_t position) {
  if (position == std::numeric_limits<std::int64_t>::min()) throw std::overflow_error("dock item location");
  return position - 1;
}

}  // namespace

void removeDockFolder() {
  uninstallerLogger().log(LogLevel::progress, "Remove dock folder - started");
  // A second uninstaller that searched before and deleted after us would delete the tile that has moved up.
  const FolderLock oneAtATime(preferencesDirectory());
  std::string location = runCommand(searchLine);
  std::erase(location, '\n');
  if (location.empty()) {
    return uninstallerLogger().log(LogLevel::progress, "Remove dock folder - no dock item found");
  }
  const auto position = parseDecimal(location);
  if (!position) return uninstallerLogger().log(LogLevel::failure, "Invalid dock item location: " + location);
  uninstallerLogger().log(LogLevel::progress, "Remove dock folder - removing dock item");
  (void)runCommand(deleteLine(indexOfPosition(*position)));
  (void)runCommand("killall Dock");
}

}  // namespace wendle
