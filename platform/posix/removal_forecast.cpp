#include "platform/removal_forecast.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "base/path.h"
#include "platform/directory.h"
#include "platform/posix/tree_cursor.h"

namespace wendle {
namespace {
ItemKind toItemKind(const struct stat& status) {
  if (S_ISLNK(status.st_mode)) return ItemKind::link;
  return S_ISDIR(status.st_mode) ? ItemKind::directory : ItemKind::file;
}

// A directory, and what stands against taking entries out of it.
struct VisitedDirectory {
  std::string path;
  struct stat status {};
  int refusal = 0;  // an errno value: no entry at all can be taken out
  bool keepsSomething = false;
};

// unlink(2): the directory must be writable and searchable, and what another volume is mounted on is busy; in
// a sticky directory, such as /tmp, only root and the owners of entry and directory may take the entry out.
int unlinkRefusal(const VisitedDirectory& directory, const struct stat& entry) {
  if (directory.refusal != 0) return directory.refusal;
  if (entry.st_dev != directory.status.st_dev) return EBUSY;
  if (flagsForbidRemoval(entry) || flagsForbidRemoval(directory.status)) return EPERM;
  const uid_t user = ::geteuid();
  const bool isSticky = (directory.status.st_mode & S_ISVTX) != 0;
  const bool mayTake = user == 0 || user == entry.st_uid || user == directory.status.st_uid;
  return isSticky && !mayTake ? EPERM : 0;
}

VisitedDirectory visitedDirectory(std::string path, int fd, const char* name) {
  VisitedDirectory directory;
  directory.path = std::move(path);
  if (::fstatat(fd, name, &directory.status, 0) != 0) directory.refusal = errno;
  if (::faccessat(fd, name, W_OK | X_OK, AT_EACCESS) != 0) directory.refusal = errno;
  return directory;
}

class Forecast {
 public:
  explicit Forecast(const std::string& path) {
    const std::string parent = deletingLastPathComponent(path);
    directories_.push_back(visitedDirectory(parent == "/" ? "" : parent, AT_FDCWD, parent.c_str()));
  }

  std::optional<RemovalForecast> run(const std::string& path) {
    struct stat item {};
    if (::lstat(path.c_str(), &item) != 0) return unseen(path, errno);
    result_.kind = toItemKind(item);
    device_ = item.st_dev;
    visit(path, path, item);
    while (cursor_.depth() > 0) {
      if (const auto entry = cursor_.next()) {
        visitEntry(entry->name);
      } else {
        leaveDirectory();
      }
    }
    return result_;
  }

 private:
  static std::optional<RemovalForecast> unseen(const std::string& path, int failure) {
    if (failure == ENOENT) return std::nullopt;
    return RemovalForecast{ItemKind::unknown, 0, RemovalObstacle{posixError(failure), path}};
  }

  VisitedDirectory& current() { return directories_.back(); }

  void visitEntry(const std::string& name) {
    struct stat entry {};
    const std::string path = current().path + "/" + name;
    if (::fstatat(cursor_.fd(), name.c_str(), &entry, AT_SYMLINK_NOFOLLOW) != 0)
      return keep(path, posixError(errno));
    visit(name, path, entry);
  }

  // `name` is the entry's for the cursor: at first the item's whole path.
  void visit(const std::string& name, const std::string& path, const struct stat& entry) {
    if (S_ISREG(entry.st_mode)) result_.size += static_cast<std::uint64_t>(entry.st_size);
    const bool isRead = directoryRemovalFlags(entry) == AT_REMOVEDIR;
    if (!S_ISDIR(entry.st_mode) || !isRead) return takeOut(path, entry);
    if (entry.st_dev != device_) return keep(path, posixError(EBUSY));  // also when it cannot be opened
    if (const Status entered = cursor_.enter(name); !entered.ok()) return keep(path, entered.error());
    directories_.push_back(visitedDirectory(path, cursor_.fd(), "."));
  }

  void leaveDirectory() {
    const VisitedDirectory left = std::move(directories_.back());
    directories_.pop_back();
    if (const Status read = cursor_.readStatus(); !read.ok()) keep(left.path, read.error());
    if (const Status parent = cursor_.leave(); !parent.ok()) keep(left.path, parent.error());
    directories_.resize(cursor_.depth() + 1);
    if (!left.keepsSomething) return takeOut(left.path, left.status);
    current().keepsSomething = true;
  }

  void takeOut(const std::string& path, const struct stat& entry) {
    if (const int refusal = unlinkRefusal(current(), entry)) keep(path, posixError(refusal));
  }

  void keep(const std::string& path, const Error& refusal) {
    if (!result_.obstacle) result_.obstacle = RemovalObstacle{refusal, path};
    current().keepsSomething = true;
  }

  TreeCursor cursor_{AT_FDCWD};
  std::vector<VisitedDirectory> directories_;  // the item's parent, and one for each level of the cursor
  dev_t device_ = 0;
  RemovalForecast result_;
};
}  // namespace

std::optional<RemovalForecast> forecastRemoval(const std::string& path) { return Forecast(path).run(path); }

bool isReachedByRemoval(const std::string& item, const std::string& path) {
  struct stat volume {};
  if (!path.starts_with(item + "/") || ::lstat(item.c_str(), &volume) != 0) return false;
  for (std::string directory = deletingLastPathComponent(path);;
       directory = deletingLastPathComponent(directory)) {
    struct stat status {};
    const bool isListed = ::lstat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                          status.st_dev == volume.st_dev &&
                          ::faccessat(AT_FDCWD, directory.c_str(), R_OK | X_OK, AT_EACCESS) == 0;
    if (!isListed) return false;
    if (directory == item) return true;
  }
}
}  // namespace wendle
