#include "dock/dock_shortcut.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "platform/file_url.h"
#include "platform/preferences.h"
#include "platform/process_environment.h"
#include "platform/queues.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
namespace {
using namespace std::chrono_literals;

constexpr const char* dockDomain = "com.apple.dock";
constexpr const char* tilesKey = "persistent-others";
constexpr auto writingTime = 2s;  // the preferences are on the disk by then, for the Dock to read [I]
constexpr useconds_t pollInterval = 10'000;  // microseconds
constexpr auto dockStartTime = 5s;

PropertyListArray dockTiles() {
  const auto tiles = UserDefaults(dockDomain).objectForKey(tilesKey);
  const auto* array = tiles ? std::get_if<PropertyListArray>(&tiles->value) : nullptr;
  return array == nullptr ? PropertyListArray() : *array;
}

PropertyListArray::const_iterator findTile(const PropertyListArray& tiles,
                                           const std::optional<FileUrl>& folder) {
  return std::find_if(tiles.begin(), tiles.end(), [&](const PropertyList& tile) {
    const std::string* url = tile.findText({"tile-data", "file-data", "_CFURLString"});
    return url != nullptr && folder && *url == folder->absoluteString();
  });
}

PropertyList integer(std::int32_t number) { return {std::int64_t{number}}; }
PropertyList text(const std::string& value) { return {value}; }

PropertyList makeTile(const std::optional<FileUrl>& folder) {
  const auto bookmark = folder ? bookmarkData(*folder) : std::nullopt;
  if (!bookmark) throw std::invalid_argument("a Dock tile needs a folder that exists");
  const PropertyListDictionary fileData{{"_CFURLString", text(folder->absoluteString())},
                                        {"_CFURLStringType", integer(15)}};
  const PropertyListDictionary tileData{{"arrangement", integer(2)},    {"book", {*bookmark}},
                                        {"displayas", integer(1)},      {"file-data", {fileData}},
                                        {"file-label", text("Wendle")}, {"file-type", integer(2)},
                                        {"showas", integer(2)}};
  return {PropertyListDictionary{{"GUID", text(makeUniqueIdentifier())},
                                 {"tile-data", {tileData}},
                                 {"tile-type", text("directory-tile")}}};
}

void editTiles(const std::optional<FileUrl>& folder, DockShortcutChange change) {
  UserDefaults dock(dockDomain);
  PropertyListArray tiles = dockTiles();
  if (const auto found = findTile(tiles, folder); found != tiles.end()) {
    std::erase_if(tiles, [tile = *found](const PropertyList& other) { return isEqual(other, tile); });
  }
  if (change == DockShortcutChange::add) tiles.insert(tiles.begin(), makeTile(folder));
  dock.setObject({tiles}, tilesKey);
  dock.synchronize();
}

void waitForWriting() {
  const auto start = std::chrono::steady_clock::now();
  do {
    ::usleep(pollInterval);
  } while (std::chrono::steady_clock::now() - start <= writingTime);
}

void restartDock() {
  Task task;
  run(task, "/usr/bin/killall", {"Dock"});
}

// The URL made anew from its path, with a slash at the end when that is an existing directory.
std::optional<FileUrl> withFixedTrailingSlash(const std::optional<FileUrl>& url) {
  if (!url) return std::nullopt;
  return FileUrl::fileUrlWithPath(url->path());
}
}  // namespace

bool getPersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder) {
  const PropertyListArray tiles = dockTiles();
  return findTile(tiles, withFixedTrailingSlash(folder)) != tiles.end();
}

void changePersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder,
                                                DockShortcutChange change,
                                                const std::function<void(bool result)>& completion,
                                                const std::function<void(bool isChanging)>& setFlag) {
  setFlag(true);
  asyncOnUtilityQueue([folder = withFixedTrailingSlash(folder), change, completion, setFlag] {
    editTiles(folder, change);
    waitForWriting();
    restartDock();
    if (!completion) return setFlag(false);
    afterDelayOnMainQueue(dockStartTime, [completion, setFlag] {
      setFlag(false);
      completion(true);
    });
  });
}
}  // namespace wendle
