#pragma once

#include <atomic>
#include <functional>
#include <optional>

#include "base/property_list.h"
#include "platform/file_url.h"

namespace wendle {

// Manages a folder's tile, labelled "Wendle", among the Dock's persistent other items, by editing the Dock's
// own preferences and restarting it. For programs that load this code; no mode of the uninstaller uses it.
class DockShortcutManager {
 public:
  enum class Change { remove, add };
  using Completion = std::function<void(bool result)>;
  using FlagSetter = std::function<void(bool isChanging)>;

  // The one instance that lives until the process ends. Any other must outlive its changes.
  [[nodiscard]] static DockShortcutManager& sharedInstance();

  // Whether a change is under way: true from the call of changePersistence... on. With overlapping changes it
  // becomes false when the first of them ends.
  [[nodiscard]] bool isChangingPersistenceOfShortcutInDock() const { return isChanging_; }

  // `didChange` is called after the flag has changed its value, on the thread that changes it. At most one
  // observer; to be set before the first change.
  void observeFlag(std::function<void()> didChange) { didChange_ = std::move(didChange); }

  // Whether the Dock has a tile of the folder: one whose URL is the folder's to the letter. No folder has
  // none.
  [[nodiscard]] static bool getPersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder);

  // Sees to it that the folder's tile is the first one, or takes its first tile out, on another thread:
  // returns at once. The Dock is restarted at least 2 seconds after its preferences were written, also when
  // nothing changed. `completion`, if any, is called with true on the main queue 5 seconds after that, and
  // the flag falls then; it is never called in a program that does not serve its main queue. Without one the
  // flag falls right after the restart.
  //
  // Adding a folder that does not exist ends the process by an exception, before anything is written; so does
  // a killall that cannot be started. Requests under way together edit the list each for itself: the later
  // write holds.
  void changePersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder, Change change,
                                                  const Completion& completion);

  // The same for a flag that the caller keeps: `setFlag` is called with true on the calling thread, and with
  // false on the thread on which the change ends.
  static void changePersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder, Change change,
                                                         const Completion& completion,
                                                         const FlagSetter& setFlag);

  // The URL made anew from its path, with a slash at the end when that is an existing directory.
  [[nodiscard]] static std::optional<FileUrl> fileURLWithFixedTrailingSlash(
      const std::optional<FileUrl>& url);

 private:
  void setIsChangingPersistenceOfShortcutInDock(bool isChanging);

  std::atomic<bool> isChanging_ = false;
  std::function<void()> didChange_;
};

}  // namespace wendle
