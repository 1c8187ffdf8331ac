#pragma once

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

}  // namespace wendle
