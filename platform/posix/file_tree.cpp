#include "platform/file_tree.h"

#include <fcntl.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

#include "platform/directory.h"
#include "platform/posix/tree_cursor.h"

namespace wendle {
namespace {
// Some file systems skip entries of a directory that shrinks while it is read; others gain entries meanwhile.
// Such a directory is read again, but not for ever.
constexpr int maxPasses = 16;

// Bounds the time in which directories are read again: it is up after as long as all the rest has taken, or
// after two seconds. A volume that is slow to delete from thus has the time that it needs.
class RereadTimer {
 public:
  bool isRunning() const { return depth_ > 0; }

  // Runs until the directory at `depth` is left; does nothing within another one that is read again.
  void startAt(size_t depth) {
    if (isRunning()) return;
    depth_ = depth;
    since_ = Clock::now();
  }

  void leaveFor(size_t depth) {
    if (depth >= depth_) return;
    spent_ += Clock::now() - since_;
    depth_ = 0;
  }

  bool isUp() const {
    const auto now = Clock::now();
    const Clock::duration rereading = isRunning() ? spent_ + (now - since_) : spent_;
    return rereading > std::max<Clock::duration>(std::chrono::seconds(2), now - begin_ - rereading);
  }

 private:
  using Clock = std::chrono::steady_clock;

  const Clock::time_point begin_ = Clock::now();
  size_t depth_ = 0;  // 0: not running
  Clock::time_point since_;
  Clock::duration spent_{};
};

bool isNotEmpty(int failure) { return failure == ENOTEMPTY || failure == EEXIST; }

constexpr int fileRemovalFlags = 0;  // of unlinkat(2)

class Removal {
 public:
  explicit Removal(int start) : cursor_(start) {}

  Status run(const std::string& path) {
    remove({path, EntryType::unknown});
    while (cursor_.depth() > 0) {
      const bool isGivenUp = rereads_.isRunning() && rereads_.isUp();
      const bool isRead = !isGivenUp && directoryRemovalFlags(cursor_.status()) == AT_REMOVEDIR;
      if (const auto entry = isRead ? cursor_.next() : std::nullopt) {
        remove(*entry);
      } else {
        finishDirectory();
      }
    }
    return firstCause_;
  }

 private:
  struct Directory {
    std::string name;
    int pass = 1;
    bool keepsSomething = false;
  };

  void remove(const DirectoryEntry& entry, int pass = 1) {
    if (entry.type == EntryType::other) return removeFile(entry.name);
    const Status entered = cursor_.enter(entry.name);
    if (entered.ok()) {
      clearUserFlags(cursor_.fd(), cursor_.status());
      return path_.push_back({entry.name, pass});
    }
    const int refusal = entered.error().code;
    if (refusal == ENOTDIR || refusal == ELOOP) return removeFile(entry.name);
    const int failure = unlinkAt(entry.name, AT_REMOVEDIR);  // an empty one needs no opening
    if (failure == ENOTDIR) return removeFile(entry.name);   // nor does what only might have been one
    if (failure != 0) recordFailure(isNotEmpty(failure) ? entered : posixError(failure));
  }

  void removeFile(const std::string& name) {
    if (const int failure = unlinkAt(name, fileRemovalFlags)) recordFailure(posixError(failure));
  }

  void finishDirectory() {
    const Status read = cursor_.readStatus();
    const int flags = directoryRemovalFlags(cursor_.status());
    const Directory directory = std::move(path_.back());
    const Status left = cursor_.leave();
    path_.resize(cursor_.depth());
    rereads_.leaveFor(cursor_.depth());
    if (!left.ok()) return recordFailure(read.ok() ? left : read);
    const int failure = unlinkAt(directory.name, flags);
    if (failure == 0) return;
    if (!read.ok()) return recordFailure(read);
    if (!isNotEmpty(failure)) return recordFailure(posixError(failure));
    if (directory.keepsSomething) return keepParent();
    if (directory.pass == maxPasses || rereads_.isUp()) return recordFailure(posixError(failure));
    rereads_.startAt(cursor_.depth() + 1);
    remove({directory.name, EntryType::directory}, directory.pass + 1);
  }

  // The errno value; 0 also for an entry that is already absent, unless it is the item itself.
  int unlinkAt(const std::string& name, int flags) {
    const auto unlink = [&] { return ::unlinkat(cursor_.fd(), name.c_str(), flags); };
    int failure = retryOnInterrupt(unlink) == 0 ? 0 : errno;
    if (failure == EPERM && clearUserFlagsAt(cursor_.fd(), name))
      failure = retryOnInterrupt(unlink) == 0 ? 0 : errno;
    return failure == ENOENT && cursor_.depth() > 0 ? 0 : failure;
  }

  void recordFailure(const Status& failure) {
    if (firstCause_.ok()) firstCause_ = failure;
    keepParent();
  }

  void keepParent() {
    if (!path_.empty()) path_.back().keepsSomething = true;
  }

  TreeCursor cursor_;
  std::vector<Directory> path_;  // the open directories, in step with cursor_
  RereadTimer rereads_;
  Status firstCause_;
};

bool isDirectory(int parent, const DirectoryEntry& entry) {
  if (entry.type != EntryType::unknown) return entry.type == EntryType::directory;
  struct stat status {};
  return ::fstatat(parent, entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}
}  // namespace

Status removeItem(const std::string& path) { return Removal(AT_FDCWD).run(path); }

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

Status FileTree::removeItem(std::string_view path) const {
  UniqueFd parent;
  int fd = directory_.get();
  for (size_t end = path.find('/'); end != std::string_view::npos; end = path.find('/')) {
    parent = openDirectory(fd, std::string(path.substr(0, end)));
    if (!parent.isOpen()) return posixError(errno);
    fd = parent.get();
    path.remove_prefix(end + 1);
  }
  return Removal(fd).run(std::string(path));
}
}  // namespace wendle
