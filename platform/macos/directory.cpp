#include "platform/directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/attr.h>
#include <unistd.h>

#include <cstdint>
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

static EntryType toEntryType(const dirent& entry) {
  if (entry.d_type == DT_UNKNOWN) return EntryType::unknown;
  return entry.d_type == DT_DIR ? EntryType::directory : EntryType::other;
}

constexpr int atRemovedirDataless = 0x0100;  // AT_REMOVEDIR_DATALESS in xnu's <sys/fcntl.h> [S]
constexpr std::uint32_t userFlags = UF_IMMUTABLE | UF_APPEND;
constexpr std::uint32_t systemFlags = SF_IMMUTABLE | SF_APPEND;

static bool areToBeCleared(std::uint32_t flags) {
  return (flags & userFlags) != 0 && (flags & systemFlags) == 0;
}
static bool isSuperuser() { return ::geteuid() == 0; }

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

int directoryRemovalFlags(const struct stat& directory) {
  return (directory.st_flags & SF_DATALESS) != 0 ? AT_REMOVEDIR | atRemovedirDataless : AT_REMOVEDIR;
}

bool flagsForbidRemoval(const struct stat& item) {
  return (item.st_flags & (isSuperuser() ? systemFlags : systemFlags | userFlags)) != 0;
}

void clearUserFlags(int directory, const struct stat& status) {
  if (isSuperuser() && areToBeCleared(status.st_flags)) ::fchflags(directory, status.st_flags & ~userFlags);
}

bool clearUserFlagsAt(int parent, const std::string& name) {
  struct stat status {};
  if (!isSuperuser() || ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  if (!areToBeCleared(status.st_flags)) return false;
  attrlist attributes{};
  attributes.bitmapcount = ATTR_BIT_MAP_COUNT;
  attributes.commonattr = ATTR_CMN_FLAGS;
  std::uint32_t flags = status.st_flags & ~userFlags;
  return ::setattrlistat(parent, name.c_str(), &attributes, &flags, sizeof flags, FSOPT_NOFOLLOW) == 0;
}
}  // namespace wendle
