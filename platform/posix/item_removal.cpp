#include "platform/item_removal.h"

#include <fcntl.h>

#include <vector>

#include "base/unique_fd.h"
#include "platform/posix/tree_cursor.h"

namespace wendle {
namespace {

// Some file systems skip entries of a folder that shrinks while it is read; others gain entries meanwhile.
// Such a folder is read again, but not for ever.
constexpr int mostPasses = 16;

enum class Kind { file, directory };

class Removal {
 public:
  std::optional<Error> run(const std::string& path) {
    remove({path, EntryType::unknown});
    while (cursor_.depth() > 0) {
      if (const auto entry = cursor_.next()) {
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
    int passes = 1;
    bool keepsSomething = false;
  };

  void remove(const DirectoryEntry& entry) {
    if (entry.type == EntryType::other) return removeFile(entry.name);
    const auto error = cursor_.enter(entry.name);
    if (!error) return path_.push_back({entry.name});
    if (error->code == ENOTDIR || error->code == ELOOP) return removeFile(entry.name);
    const int failure = unlinkAt(entry.name, Kind::directory);  // an empty one needs no opening
    if (failure == ENOTDIR) return removeFile(entry.name);      // nor does what only might have been one
    if (failure != 0) note(*error);
  }

  void removeFile(const std::string& name) {
    if (const int failure = unlinkAt(name, Kind::file)) note(posixError(failure));
  }

  void finishDirectory() {
    const auto unread = cursor_.readFailure();
    Directory directory = std::move(path_.back());
    const auto lost = cursor_.leave();
    path_.resize(cursor_.depth());
    if (lost) return note(unread.value_or(*lost));
    const int failure = unlinkAt(directory.name, Kind::directory);
    if (failure == 0) return;
    if (unread) return note(*unread);
    if (failure != ENOTEMPTY && failure != EEXIST) return note(posixError(failure));
    if (directory.keepsSomething) return keepParent();
    readAgain(std::move(directory), failure);
  }

  void readAgain(Directory directory, int failure) {
    if (++directory.passes > mostPasses) return note(posixError(failure));
    if (const auto error = cursor_.enter(directory.name)) return note(*error);
    path_.push_back(std::move(directory));
  }

  // The errno value; 0 also for an entry that is already absent, unless it is the item itself.
  int unlinkAt(const std::string& name, Kind kind) {
    const int flags = kind == Kind::directory ? AT_REMOVEDIR : 0;
    if (retryOnInterrupt([&] { return ::unlinkat(cursor_.fd(), name.c_str(), flags); }) == 0) return 0;
    return errno == ENOENT && cursor_.depth() > 0 ? 0 : errno;
  }

  void note(const Error& error) {
    if (!firstCause_) firstCause_ = error;
    keepParent();
  }

  void keepParent() {
    if (!path_.empty()) path_.back().keepsSomething = true;
  }

  TreeCursor cursor_;
  std::vector<Directory> path_;  // the open directories, in step with cursor_
  std::optional<Error> firstCause_;
};

}  // namespace

std::optional<Error> removeItem(const std::string& path) { return Removal().run(path); }

}  // namespace wendle
