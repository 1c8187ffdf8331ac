#include "platform/directory_stream.h"

#include <dirent.h>

#include <string_view>

namespace wendle {

struct DirectoryStream::Implementation {
  explicit Implementation(UniqueFd directory) : stream(::fdopendir(directory.get())) {
    if (stream == nullptr) failure = errno;
    if (stream != nullptr) (void)directory.release();  // the stream closes it from here on
    fd = std::move(directory);
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;
  ~Implementation() {
    if (stream != nullptr) ::closedir(stream);
  }

  DIR* stream;
  UniqueFd fd;  // when there is no stream
  int failure = 0;
};

namespace {

EntryType toEntryType(const dirent& entry) {
  if (entry.d_type == DT_UNKNOWN) return EntryType::unknown;
  return entry.d_type == DT_DIR ? EntryType::directory : EntryType::other;
}

}  // namespace

DirectoryStream::DirectoryStream(UniqueFd directory)
    : implementation_(new Implementation(std::move(directory))) {}
DirectoryStream::DirectoryStream(DirectoryStream&&) noexcept = default;
DirectoryStream& DirectoryStream::operator=(DirectoryStream&&) noexcept = default;
DirectoryStream::~DirectoryStream() = default;

std::optional<DirectoryEntry> DirectoryStream::next() {
  while (implementation_->stream != nullptr) {
    errno = 0;  // readdir(3) says "end" and "error" alike
    const dirent* entry = ::readdir(implementation_->stream);
    if (entry == nullptr) {
      if (errno != 0) implementation_->failure = errno;
      break;
    }
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return DirectoryEntry{std::string(name), toEntryType(*entry)};
  }
  return std::nullopt;
}

int DirectoryStream::failure() const { return implementation_->failure; }

int DirectoryStream::fd() const {
  return implementation_->stream != nullptr ? ::dirfd(implementation_->stream) : implementation_->fd.get();
}

}  // namespace wendle
