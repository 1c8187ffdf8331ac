#pragma once

#include <functional>
#include <optional>

#include "platform/file_url.h"

namespace wendle {
// A folder's tile, labelled "Wendle", among the Dock's persistent other items: the Dock's own preferences are
// edited and it is restarted. For programs that load this code; no mode of the uninstaller uses it.

enum class DockShortcutChange { remove, add };

// Whether the Dock has a tile of the folder: one whose URL is the folder's to the letter. No folder has none.
[[nodiscard]] bool getPersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder);

// Sees to it that the folder's tile is the first one, or takes its first tile out, on another thread: returns
// at once. The Dock is restarted at least 2 seconds after its preferences were written, also when nothing
// changed. `completion`, if any, is called with true on the main queue 5 seconds after that; it is never
// called in a program that does not serve its main queue.
//
// The caller keeps a flag: `setFlag` is called with true on the calling thread, and with false when the
// change ends: just before the completion, without one right after the restart, on that thread. Requests
// under way together edit the list each for itself, the later write holds, and the first to end takes the
// flag back.
//
// Adding a folder that does not exist ends the process by an exception, before anything is written; so does a
// killall that cannot be started.
void changePersistenceOfShortcutInDockFolderURL(const std::optional<FileUrl>& folder,
                                                DockShortcutChange change,
                                                const std::function<void(bool result)>& completion,
                                                const std::function<void(bool isChanging)>& setFlag);
}  // namespace wendle
