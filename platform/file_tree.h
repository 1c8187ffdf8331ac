#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/unique_fd.h"

namespace wendle {
// Removes the item at `path`, a directory with all its contents; removes a link, never what it leads to, at
// any depth and also when directories are replaced by links meanwhile. Only links in the directories above
// the item are followed. Blocks until done; needs fewer than 40 descriptors whatever the depth. Memory grows
// with the depth, and with the number of entries only in directories more than 22 levels down.
//
// A directory on another device than the item's is another volume: it stays with all its contents, and is
// EBUSY, as a mount point is (removefile(3) walks with FTS_XDEV [S]). An item that is itself a mount point is
// emptied.
//
// As removefile(3) on macOS, the superuser's process takes off the flags with which users keep an item from
// being removed (`uchg`, `uappnd`), and a directory whose contents are in the cloud goes without their being
// fetched [S].
//
// What cannot be removed is passed over and the rest is removed all the same; the result is then the error
// that was met first, not the "directory not empty" that follows from it. A missing item is ENOENT; one that
// vanishes from inside the tree meanwhile is success. A directory that gains entries meanwhile is read again,
// at most 15 times, and no longer than the rest of the removal has taken or two seconds, whichever is more.
[[nodiscard]] Status removeItem(const std::string& path);

// A directory that is held open: what is found in it is removed from it, even if its path leads elsewhere by
// then. Below it no link is followed. All paths are relative to it.
class FileTree {
 public:
  // Links in the directories above `path` are followed. Nothing is found in a missing directory, a plain file
  // or a link.
  explicit FileTree(const std::string& path);

  // The directories at any depth whose own names satisfy `matches`, parents before their contents, otherwise
  // in the file system's order. Hidden directories count; links are no directories; an unreadable directory
  // may match, its contents are passed over, and so are those of a directory on another volume. Blocks until
  // the tree is read; keeps the matches only, and of directories more than 22 levels down the entries still
  // to come.
  [[nodiscard]] std::vector<std::string> findDirectories(
      const std::function<bool(std::string_view)>& matches) const;

  // As the function of that name. ENOENT also when a directory above the item is missing; ENOTDIR when it is
  // a link by now.
  [[nodiscard]] Status removeItem(std::string_view path) const;

 private:
  UniqueFd directory_;
};
}  // namespace wendle
