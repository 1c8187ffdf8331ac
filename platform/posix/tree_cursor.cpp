#include "platform/posix/tree_cursor.h"

#include <fcntl.h>

#include <algorithm>

namespace wendle {
UniqueFd openDirectory(int parent, const std::string& name) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  return UniqueFd(retryOnInterrupt([&] { return ::openat(parent, name.c_str(), flags); }));
}

static int identify(int directory, struct stat& identity) {
  return retryOnInterrupt([&] { return ::fstat(directory, &identity); });
}

int TreeCursor::fd() const { return levels_.empty() ? start_ : levels_.back().fd(); }

Status TreeCursor::enter(const std::string& name) {
  UniqueFd directory = openDirectory(fd(), name);
  struct stat status {};
  if (!directory.isOpen() || identify(directory.get(), status) != 0) return posixError(errno);
  if (depth() > 0 && status.st_dev != levels_.front().status.st_dev) return posixError(EBUSY);
  if (depth() > maxOpenLevels) suspend(levels_[depth() - 2]);
  Level& level = levels_.emplace_back();
  level.name = name;
  level.status = status;
  level.stream.emplace(std::move(directory));
  return {};
}

std::optional<DirectoryEntry> TreeCursor::next() {
  if (levels_.empty()) return std::nullopt;
  Level& level = levels_.back();
  if (level.stream) return level.stream->next();
  if (level.unvisited.empty()) return std::nullopt;
  DirectoryEntry entry = std::move(level.unvisited.back());
  level.unvisited.pop_back();
  return entry;
}

Status TreeCursor::readStatus() const {
  if (levels_.empty()) return {};
  const Level& level = levels_.back();
  const int failure = level.stream ? level.stream->failure() : level.readFailure;
  return failure == 0 ? Status() : posixError(failure);
}

Status TreeCursor::leave() {
  const Level left = std::move(levels_.back());
  levels_.pop_back();
  if (levels_.empty() || levels_.back().fd() >= 0) return {};
  if (reopen(levels_.back(), left.fd(), "..").ok()) return {};
  return reopenFromAbove();  // moved away, or not to be searched any more
}

void TreeCursor::suspend(Level& level) {
  if (level.stream) {
    while (auto entry = level.stream->next()) level.unvisited.push_back(std::move(*entry));
    std::reverse(level.unvisited.begin(), level.unvisited.end());
    level.readFailure = level.stream->failure();
    level.stream.reset();
  }
  level.reopened.reset();
}

Status TreeCursor::reopen(Level& level, int neighbour, const std::string& name) {
  UniqueFd directory = openDirectory(neighbour, name);
  struct stat found {};
  if (!directory.isOpen() || identify(directory.get(), found) != 0) return posixError(errno);
  if (found.st_dev != level.status.st_dev || found.st_ino != level.status.st_ino) return posixError(ENOENT);
  level.reopened = std::move(directory);
  return {};
}

Status TreeCursor::reopenFromAbove() {
  size_t closed = levels_.size() - 1;
  while (levels_[closed - 1].fd() < 0) --closed;  // ends: the first levels are never closed
  for (; closed < levels_.size(); ++closed) {
    Level& parent = levels_[closed - 1];
    if (Status status = reopen(levels_[closed], parent.fd(), levels_[closed].name); !status.ok()) {
      levels_.resize(closed);
      return status;
    }
    parent.reopened.reset();
  }
  return {};
}
}  // namespace wendle
