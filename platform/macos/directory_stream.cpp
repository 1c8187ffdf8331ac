#include "platform/directory_stream.h"

#include <dirent.h>

#include <string_view>

namespace wendle {

struct DirectoryStream::Body {
  explicit Body(UniqueFd directory) : stream(::fdopendir(directory.get())) {
    if (stream == nullptr) failure = errno;
    if (stream != nullptr) (void)directory.release();  // the stream closes it from here on
    fd = std::move(directory);
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  ~Body() {
    if (stream != nullptr) ::closedir(stream);
  }

  DIR* stream;
  UniqueFd fd;  // when there is no stream
  int failure = 0;
};

namespace {

EntryType typeOf(const dirent& entry) {
  if (entry.d_type == DT_UNKNOWN) return EntryType::unknown;
  return entry.d_type == DT_DIR ? EntryType::directory : EntryType::other;
}

}  // namespace

DirectoryStream::DirectoryStream(UniqueFd directory) : body_(new Body(std::move(directory))) {}
DirectoryStream::DirectoryStream(DirectoryStream&&) noexcept = default;
DirectoryStream& DirectoryStream::operator=(DirectoryStream&&) noexcept = default;
DirectoryStream::~DirectoryStream() = default;

std::optional<DirectoryEntry> DirectoryStream::next() {
  while (body_->stream != nullptr) {
    errno = 0;  // readdir(3) says "end" and "error" alike
    const dirent* entry = ::readdir(body_->stream);
    if (entry == nullptr) {
      if (errno != 0) body_->failure = errno;
      break;
    }
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return DirectoryEntry{std::string(name), typeOf(*entry)};
  }
  return std::nullopt;
}

int DirectoryStream::failure() const { return body_->failure; }

int DirectoryStream::fd() const {
  return body_->stream != nullptr ? ::dirfd(body_->stream) : body_->fd.get();
}

}  // namespace wendle
