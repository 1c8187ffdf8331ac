#include "platform/directory.h"

#include <dirent.h>
#include <fcntl.h>

#include <array>
#include <string_view>

#include "base/unique_fd.h"

namespace wendle {
// getdents64(2) directly: two system calls for most directories, where readdir(3) needs four.
struct DirectoryStream::Implementation {  // NOLINT(*-member-init): the kernel fills what is used of `buffer`
  UniqueFd fd;
  int failure = 0;
  size_t position = 0;
  size_t filled = 0;
  alignas(dirent64) std::array<char, 32 * 1024> buffer;  // not zeroed for every directory

  bool fill() {
    const auto count = retryOnInterrupt([&] { return ::getdents64(fd.get(), buffer.data(), buffer.size()); });
    if (count < 0) failure = errno;
    position = 0;
    filled = count > 0 ? static_cast<size_t>(count) : 0;
    return count > 0;
  }
};

static EntryType toEntryType(const dirent64& entry) {
  if (entry.d_type == DT_UNKNOWN) return EntryType::unknown;
  return entry.d_type == DT_DIR ? EntryType::directory : EntryType::other;
}

DirectoryStream::DirectoryStream(UniqueFd directory) : implementation_(new Implementation) {
  implementation_->fd = std::move(directory);
}
DirectoryStream::DirectoryStream(DirectoryStream&&) noexcept = default;
DirectoryStream& DirectoryStream::operator=(DirectoryStream&&) noexcept = default;
DirectoryStream::~DirectoryStream() = default;

std::optional<DirectoryEntry> DirectoryStream::next() {
  while (implementation_->position < implementation_->filled || implementation_->fill()) {
    const auto* entry =
        reinterpret_cast<const dirent64*>(&implementation_->buffer[implementation_->position]);
    implementation_->position += entry->d_reclen;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return DirectoryEntry{std::string(name), toEntryType(*entry)};
  }
  return std::nullopt;
}

int DirectoryStream::failure() const { return implementation_->failure; }
int DirectoryStream::fd() const { return implementation_->fd.get(); }

int directoryRemovalFlags(const struct stat& /*directory*/) { return AT_REMOVEDIR; }
bool flagsForbidRemoval(const struct stat& /*item*/) { return false; }
void clearUserFlags(int /*directory*/, const struct stat& /*status*/) {}
bool clearUserFlagsAt(int /*parent*/, const std::string& /*name*/) { return false; }
}  // namespace wendle
