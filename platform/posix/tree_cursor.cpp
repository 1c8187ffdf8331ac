#include "platform/posix/tree_cursor.h"

#include <fcntl.h>

#include <algorithm>

#include "base/unique_fd.h"

namespace wendle {
namespace {

UniqueFd openDirectory(int parent, const char* name) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  return UniqueFd(retryOnInterrupt([&] { return ::openat(parent, name, flags); }));
}

int identify(int directory, struct stat& identity) {
  return retryOnInterrupt([&] { return ::fstat(directory, &identity); });
}

}  // namespace

int TreeCursor::fd() const { return levels_.empty() ? AT_FDCWD : levels_.back().fd(); }

std::optional<Error> TreeCursor::enter(const std::string& name) {
  UniqueFd directory = openDirectory(fd(), name.c_str());
  if (!directory.isOpen()) return posixError(errno);
  if (depth() > mostOpenLevels) {
    if (auto error = suspend(levels_.back())) return error;
  }
  Level level;
  level.name = name;
  level.stream.emplace(std::move(directory));
  levels_.push_back(std::move(level));
  return std::nullopt;
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

std::optional<Error> TreeCursor::readFailure() const {
  if (levels_.empty()) return std::nullopt;
  const Level& level = levels_.back();
  const int failure = level.stream ? level.stream->failure() : level.readFailure;
  if (failure == 0) return std::nullopt;
  return posixError(failure);
}

std::optional<Error> TreeCursor::leave() {
  const Level left = std::move(levels_.back());
  levels_.pop_back();
  if (levels_.empty() || levels_.back().fd() >= 0) return std::nullopt;
  if (!reopen(levels_.back(), left.fd(), "..")) return std::nullopt;
  return reopenFromAbove();  // moved away, or not to be searched
}

std::optional<Error> TreeCursor::suspend(Level& level) {
  if (level.stream) {
    if (identify(level.fd(), level.identity) != 0) return posixError(errno);
    while (auto entry = level.stream->next()) level.unvisited.push_back(std::move(*entry));
    std::reverse(level.unvisited.begin(), level.unvisited.end());
    level.readFailure = level.stream->failure();
    level.stream.reset();
  }
  level.reopened.reset();
  return std::nullopt;
}

std::optional<Error> TreeCursor::reopen(Level& level, int neighbour, const char* name) {
  UniqueFd directory = openDirectory(neighbour, name);
  struct stat found {};
  if (!directory.isOpen() || identify(directory.get(), found) != 0) return posixError(errno);
  if (found.st_dev != level.identity.st_dev || found.st_ino != level.identity.st_ino)
    return posixError(ENOENT);
  level.reopened = std::move(directory);
  return std::nullopt;
}

std::optional<Error> TreeCursor::reopenFromAbove() {
  size_t closed = levels_.size() - 1;
  while (levels_[closed - 1].fd() < 0) --closed;  // ends: the first levels are never closed
  for (; closed < levels_.size(); ++closed) {
    Level& parent = levels_[closed - 1];
    if (auto error = reopen(levels_[closed], parent.fd(), levels_[closed].name.c_str())) {
      levels_.resize(closed);
      return error;
    }
    parent.reopened.reset();
  }
  return std::nullopt;
}

}  // namespace wendle
