#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "platform/directory_stream.h"

namespace wendle {

// A place in a tree that is being visited. Every step is relative to an open descriptor and follows no link,
// so nobody who swaps a folder for a link can lead a visit out of the tree.
//
// Trees may be deeper than there are descriptors. The first levels stay open while their subfolders are
// visited; a deeper folder is closed, with the entries it still had to list kept in memory, and found again
// through the `..` of its subfolder, or else by name from the levels that are open; it must then be the very
// directory that was left.
class TreeCursor {
 public:
  // How many folders are open above the current one at the most.
  static constexpr size_t mostOpenLevels = 24;

  // Depth 0 is outside the tree, where paths are as open(2) takes them; enter() leads into the tree.
  [[nodiscard]] size_t depth() const { return levels_.size(); }

  // The current directory, for the *at() calls; AT_FDCWD at depth 0.
  [[nodiscard]] int fd() const;

  // Opens the directory `name` of the current one and goes there. Returns ENOTDIR or ELOOP when it is no
  // directory.
  [[nodiscard]] std::optional<Error> enter(const std::string& name);

  // The next entry of the current directory; none when all were returned or reading failed (see readFailure).
  [[nodiscard]] std::optional<DirectoryEntry> next();
  [[nodiscard]] std::optional<Error> readFailure() const;

  // Goes back to the parent. When it cannot be found again (somebody has moved it away), it returns why and
  // goes up to the nearest level that can: look at depth().
  [[nodiscard]] std::optional<Error> leave();

 private:
  struct Level {
    std::string name;
    std::optional<DirectoryStream> stream;  // none: closed while a subfolder is visited
    UniqueFd reopened;                      // after that
    std::vector<DirectoryEntry> unvisited;  // what the stream had not returned, last entry first
    int readFailure = 0;
    struct stat identity {};

    [[nodiscard]] int fd() const { return stream ? stream->fd() : reopened.get(); }
  };

  static std::optional<Error> suspend(Level& level);
  static std::optional<Error> reopen(Level& level, int neighbour, const char* name);
  std::optional<Error> reopenFromAbove();

  std::vector<Level> levels_;
};

}  // namespace wendle
