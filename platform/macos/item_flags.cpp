#include "platform/posix/item_flags.h"

#include <fcntl.h>
#include <sys/attr.h>
#include <unistd.h>

#include <cstdint>

namespace wendle {
namespace {

constexpr int atRemovedirDataless = 0x0100;  // AT_REMOVEDIR_DATALESS in xnu's <sys/fcntl.h>
constexpr std::uint32_t userFlags = UF_IMMUTABLE | UF_APPEND;
constexpr std::uint32_t systemFlags = SF_IMMUTABLE | SF_APPEND;

bool areToBeCleared(std::uint32_t flags) { return (flags & userFlags) != 0 && (flags & systemFlags) == 0; }
bool isSuperuser() { return ::geteuid() == 0; }

}  // namespace

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
