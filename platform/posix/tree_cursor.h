#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "platform/directory.h"

namespace wendle {
// Opens the directory `name` of the open directory `parent`, AT_FDCWD for a path of the process's own. Not
// open, with errno set, when it cannot be; ENOTDIR or ELOOP when `name` is no directory or is a link.
[[nodiscard]] UniqueFd openDirectory(int parent, const std::string& name);

// A position in a tree that is being traversed. Every step is relative to an open descriptor, follows no link
// and enters no other volume, so a directory that is replaced by a link meanwhile cannot lead out of the
// tree.
//
// Trees may be deeper than there are descriptors. The first levels stay open while their subdirectories are
// visited, and so does the parent of the current directory, since `..` cannot be opened from a directory
// without search permission. Those between are closed, with the entries they still had to list kept in
// memory, and found again through the `..` of their subdirectory, or else by name from the levels that are
// open; it must then be the very directory that was left.
class TreeCursor {
 public:
  // How many directories are open above the current one at the most.
  static constexpr size_t maxOpenLevels = 24;

  // At depth 0, outside the tree, the current directory is `start`; it must stay open.
  explicit TreeCursor(int start) : start_(start) {}

  [[nodiscard]] size_t depth() const { return levels_.size(); }

  // The current directory, for the *at() calls.
  [[nodiscard]] int fd() const;

  // Opens the directory `name` of the current one and goes there; `name` may be a path at depth 0. Returns
  // ENOTDIR or ELOOP when it is no directory, EBUSY when it is on another device than the directory of
  // depth 1.
  [[nodiscard]] Status enter(const std::string& name);

  // What fstat(2) said of the current directory when it was entered; only at depth 1 and below.
  [[nodiscard]] const struct stat& status() const { return levels_.back().status; }

  // The next entry of the current directory; none when all were returned or reading failed (see readStatus).
  [[nodiscard]] std::optional<DirectoryEntry> next();
  [[nodiscard]] Status readStatus() const;

  // Goes back to the parent. When it cannot be found again (it was moved away), it returns why and goes up to
  // the nearest level that can: see depth().
  [[nodiscard]] Status leave();

 private:
  struct Level {
    std::string name;
    struct stat status {};
    std::optional<DirectoryStream> stream;  // none: closed while a subdirectory is visited
    UniqueFd reopened;                      // after that
    std::vector<DirectoryEntry> unvisited;  // what the stream had not returned, last entry first
    int readFailure = 0;

    [[nodiscard]] int fd() const { return stream ? stream->fd() : reopened.get(); }
  };

  static void suspend(Level& level);
  static Status reopen(Level& level, int neighbour, const std::string& name);
  Status reopenFromAbove();

  int start_;
  std::vector<Level> levels_;
};
}  // namespace wendle
