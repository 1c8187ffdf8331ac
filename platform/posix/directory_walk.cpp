#include <fcntl.h>
#include <sys/stat.h>

#include "platform/file_tree.h"
#include "platform/posix/tree_cursor.h"

namespace wendle {
namespace {

bool isDirectory(int parent, const DirectoryEntry& entry) {
  if (entry.type != EntryType::unknown) return entry.type == EntryType::directory;
  struct stat status {};
  return ::fstatat(parent, entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

FileTree::FileTree(const std::string& path) : directory_(openDirectory(AT_FDCWD, path)) {}

std::vector<std::string> FileTree::findDirectories(
    const std::function<bool(std::string_view)>& matches) const {
  std::vector<std::string> found;
  std::string path;
  std::vector<size_t> parentLengths;  // of `path`, in step with the cursor's levels
  TreeCursor cursor(directory_.get());
  if (!cursor.enter(".").ok()) return found;
  parentLengths.push_back(0);
  while (cursor.depth() > 0) {
    const auto entry = cursor.next();
    if (!entry) {
      (void)cursor.leave();  // a directory that was moved away: go on with what is still reachable
      path.resize(parentLengths[cursor.depth()]);
      parentLengths.resize(cursor.depth());
    } else if (isDirectory(cursor.fd(), *entry)) {
      const size_t length = path.size();
      path.append(path.empty() ? "" : "/").append(entry->name);
      if (matches(entry->name)) found.push_back(path);
      if (cursor.enter(entry->name).ok()) {
        parentLengths.push_back(length);
      } else {
        path.resize(length);
      }
    }
  }
  return found;
}

}  // namespace wendle
