#pragma once

#include <sys/stat.h>

#include <memory>
#include <optional>
#include <string>

#include "base/unique_fd.h"

namespace wendle {
enum class EntryType { directory, other, unknown };  // unknown: the file system does not say

struct DirectoryEntry {
  std::string name;
  EntryType type = EntryType::unknown;
};

// The entries of one open directory in the file system's own order, without `.` and `..`. Holds a fixed
// amount of memory, however many entries there are. Systems read directories in different ways.
class DirectoryStream {
 public:
  explicit DirectoryStream(UniqueFd directory);  // takes ownership; must be open on a directory
  DirectoryStream(DirectoryStream&&) noexcept;
  DirectoryStream& operator=(DirectoryStream&&) noexcept;
  ~DirectoryStream();

  // The next entry; none at the end and after an error.
  [[nodiscard]] std::optional<DirectoryEntry> next();

  // The errno value of the read that failed; 0 when none did.
  [[nodiscard]] int failure() const;

  [[nodiscard]] int fd() const;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

// What macOS keeps in an item's flags (chflags(2)) and removefile(3) heeds [S]; none of it concerns Linux.

// The flags with which unlinkat(2) removes a directory: AT_REMOVEDIR, and one more for a dataless directory,
// whose contents are in the cloud: it is removed unread, so that nothing is fetched only to be removed.
[[nodiscard]] int directoryRemovalFlags(const struct stat& directory);

// Whether flags keep an entry, or the entries of a directory, from being removed by this process's user: the
// superuser's process takes off those that users set themselves.
[[nodiscard]] bool flagsForbidRemoval(const struct stat& item);

// Takes the flags "immutable" and "append only", which users set themselves, off an open directory. Only the
// superuser's process does so, and only where the system has not set its own.
void clearUserFlags(int directory, const struct stat& status);

// The same for the entry `name` of the directory `parent`; a link itself is meant. Returns whether there were
// such flags and they are off.
[[nodiscard]] bool clearUserFlagsAt(int parent, const std::string& name);
}  // namespace wendle
