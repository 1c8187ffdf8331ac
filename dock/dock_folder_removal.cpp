#include "dock/dock_folder_removal.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <stdexcept>
#include <string>

#include "base/text.h"
#include "client/client_locations.h"
#include "logging/logger.h"
#include "platform/files.h"
#include "platform/preferences.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
// The shell makes the escaped quote part of the pattern, so that grep passes over the _CFURLStringType lines
// [D]; awk prints the position, among the tiles' URL lines, of every line that speaks of the client.
constexpr const char* searchLine =
    R"(defaults read com.apple.dock persistent-others | grep _CFURLString\" | awk "/Wendle/ {print NR}")";

// The position in decimal, those of several tiles run together; empty when no tile matches; else what a tool
// complains of.
static std::string findDockItem() {
  std::string location = runCommand(searchLine);
  std::erase(location, '\n');
  return location;
}

static std::string dockPreferencesPath() {
  return clientLocations().preferencesDirectory + "/com.apple.dock.plist";
}

static std::string deleteLine(std::int64_t index) {
  return "/usr/libexec/PlistBuddy -c 'Delete persistent-others:" + std::to_string(index) + "' " +
         dockPreferencesPath();
}

static std::int64_t toIndex(std::int64_t position) {
  if (position == std::numeric_limits<std::int64_t>::min()) throw std::overflow_error("dock item location");
  return position - 1;
}

// Whether the shell takes an unquoted `text` for one word, as it stands.
static bool isOneShellWord(const std::string& text) {
  const auto isPlain = [](unsigned char c) {
    return std::isalnum(c) != 0 || c >= 0x80 ||
           std::string_view("/._-+,:@%").find(static_cast<char>(c)) != std::string_view::npos;
  };
  return std::all_of(text.begin(), text.end(), isPlain);
}

// The element at a position that counts from 1; null when the array has none there, and for what is no array.
static const PropertyList* elementAt(const PropertyList& list, std::int64_t position) {
  const auto* array = std::get_if<PropertyListArray>(&list.value);
  if (array == nullptr || position < 1 || static_cast<std::uint64_t>(position) > array->size())
    return nullptr;
  return &array->at(static_cast<std::size_t>(position - 1));
}

void planDockFolder(RemovalPlan& plan) {
  const std::string location = findDockItem();
  if (location.empty()) return;
  const auto position = parseDecimal(location);
  if (!position) return plan.warn("The Dock keeps its tiles: they cannot be listed (" + location + ")");
  if (!isOneShellWord(dockPreferencesPath())) {
    return plan.warn("The Dock may keep the client's tile: the shell reads the characters of " +
                     dockPreferencesPath());
  }
  const auto tiles = UserDefaults("com.apple.dock").objectForKey("persistent-others");
  const PropertyList* tile = tiles ? elementAt(*tiles, *position) : nullptr;
  if (tile == nullptr) {
    return plan.warn("The Dock keeps its tiles: several match, and their positions make " + location +
                     ", where there is none; it is restarted all the same");
  }
  const std::string* found = tile->findText({"tile-data", "file-label"});
  const std::string label = found == nullptr ? "" : *found;
  plan.add({"Dock tile", label, "the client's folder in the Dock, by its position; the Dock is restarted"});
  const std::string* url = tile->findText({"tile-data", "file-data", "_CFURLString"});
  if (url == nullptr || url->find("Wendle") == std::string::npos) {
    plan.warn("The Dock's tile " + label + " goes, though it is not the client's");
  }
}

void removeDockFolder() {
  logProgress("Remove dock folder - started");
  // A second uninstaller that searched before and deleted after us would delete the tile that has moved up.
  const DirectoryLock oneAtATime(clientLocations().preferencesDirectory);
  const std::string location = findDockItem();
  if (location.empty()) {
    return logProgress("Remove dock folder - no dock item found");
  }
  const auto position = parseDecimal(location);
  if (!position) {
    return uninstallerLogger().log(
        LogLevel::failure, "Invalid dock item location: " + std::string(firstBytes(location, maxLoggedText)));
  }
  logProgress("Remove dock folder - removing dock item");
  (void)runCommand(deleteLine(toIndex(*position)));
  (void)runCommand("killall Dock");
}
}  // namespace wendle
