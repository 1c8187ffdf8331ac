#include "platform/directory_walk.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/posix/tree_cursor.h"

namespace wendle {
namespace {

bool isDirectory(int parent, const DirectoryEntry& entry) {
  if (entry.type != EntryType::unknown) return entry.type == EntryType::directory;
  struct stat status {};
  return ::fstatat(parent, entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::vector<std::string> findDirectories(const std::string& start,
                                         const std::function<bool(std::string_view)>& matches) {
  std::vector<std::string> found;
  std::string path = start;
  std::vector<size_t> parentLengths;  // of `path`, in step with the cursor's levels
  TreeCursor cursor;
  if (cursor.enter(start)) return found;
  parentLengths.push_back(0);
  while (cursor.depth() > 0) {
    const auto entry = cursor.next();
    if (!entry) {
      (void)cursor.leave();  // a folder that was moved away: go on with what is still reachable
      path.resize(parentLengths[cursor.depth()]);
      parentLengths.resize(cursor.depth());
    } else if (isDirectory(cursor.fd(), *entry)) {
      const size_t length = path.size();
      path += "/" + entry->name;
      if (matches(entry->name)) found.push_back(path);
      if (cursor.enter(entry->name)) {
        path.resize(length);
      } else {
        parentLengths.push_back(length);
      }
    }
  }
  return found;
}

}  // namespace wendle
