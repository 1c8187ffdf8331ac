#include "platform/pipe.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <array>

#include "base/unique_fd.h"

namespace wendle {
namespace {

constexpr int firstOrdinaryFd = 3;
constexpr size_t maxPipeCapacity = 1024 * 1024;  // pipe(7): more needs privileges; other systems hold less

// Not open, and errno says why, when there is no descriptor left.
UniqueFd closedOnExecAboveStandardStreams(UniqueFd fd) {
  if (fd.get() < firstOrdinaryFd) return UniqueFd(::fcntl(fd.get(), F_DUPFD_CLOEXEC, firstOrdinaryFd));
  ::fcntl(fd.get(), F_SETFD, FD_CLOEXEC);
  return fd;
}

}  // namespace

Pipe::Pipe(size_t maxKept) : maxKept_(maxKept), status_(makeEnds()) {}

Status Pipe::makeEnds() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return posixError(errno);
  UniqueFd reading(ends[0]);
  UniqueFd writing(ends[1]);
  readEnd_ = closedOnExecAboveStandardStreams(std::move(reading));
  if (!readEnd_.isOpen()) return posixError(errno);
  writeEnd_ = closedOnExecAboveStandardStreams(std::move(writing));
  if (!writeEnd_.isOpen()) return posixError(errno);
  return {};
}

std::string Pipe::readDataToEndOfFile() {
  while (readOnce() > 0) continue;
  return std::exchange(data_, {});
}

void Pipe::readAvailable() {
  pollfd readable{readEnd_.get(), POLLIN, 0};
  size_t count = 0;  // limited, since a writer that never pauses must not hold us here
  while (readEnd_.isOpen() && count < maxPipeCapacity &&
         retryOnInterrupt([&] { return ::poll(&readable, 1, 0); }) == 1) {
    count += readOnce();
  }
}

size_t Pipe::readOnce() {
  if (!readEnd_.isOpen()) return 0;
  std::array<char, 64 * 1024> buffer;  // NOLINT(*-member-init): read(2) fills what is used of it
  const ssize_t result =
      retryOnInterrupt([&] { return ::read(readEnd_.get(), buffer.data(), buffer.size()); });
  if (result <= 0) {
    readEnd_.reset();
    return 0;
  }
  const auto count = static_cast<size_t>(result);
  data_.append(buffer.data(), std::min(count, maxKept_ - data_.size()));
  return count;
}

}  // namespace wendle
