#include "platform/pipe.h"

#include <fcntl.h>
#include <poll.h>

#include <array>
#include <system_error>

#include "base/unique_fd.h"

namespace wendle {
namespace {

constexpr int firstOrdinaryFd = 3;
constexpr size_t mostThatLiesInAPipe =
    1024 * 1024;  // pipe(7): more needs privileges; other systems hold less

UniqueFd closedOnExecAboveStandardStreams(UniqueFd fd) {
  if (fd.get() >= firstOrdinaryFd) {
    ::fcntl(fd.get(), F_SETFD, FD_CLOEXEC);
    return fd;
  }
  UniqueFd moved(::fcntl(fd.get(), F_DUPFD_CLOEXEC, firstOrdinaryFd));
  if (!moved.isOpen()) throw std::system_error(errno, std::generic_category(), "pipe");
  return moved;
}

}  // namespace

Pipe::Pipe() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  UniqueFd reading(ends[0]);
  UniqueFd writing(ends[1]);
  readEnd_ = closedOnExecAboveStandardStreams(std::move(reading));
  writeEnd_ = closedOnExecAboveStandardStreams(std::move(writing));
}

std::string Pipe::readDataToEndOfFile() {
  while (takeInOnce()) continue;
  return std::exchange(data_, {});
}

void Pipe::takeInAvailable() {
  pollfd readable{readEnd_.get(), POLLIN, 0};
  const size_t enough =
      data_.size() + mostThatLiesInAPipe;  // a writer that never pauses must not hold us here
  while (readEnd_.isOpen() && data_.size() < enough &&
         retryOnInterrupt([&] { return ::poll(&readable, 1, 0); }) == 1) {
    takeInOnce();
  }
}

bool Pipe::takeInOnce() {
  if (!readEnd_.isOpen()) return false;
  std::array<char, 64 * 1024> buffer;  // NOLINT(*-member-init): read(2) fills what is used of it
  const ssize_t count =
      retryOnInterrupt([&] { return ::read(readEnd_.get(), buffer.data(), buffer.size()); });
  if (count <= 0) {
    readEnd_.reset();
    return false;
  }
  data_.append(buffer.data(), static_cast<size_t>(count));
  return true;
}

}  // namespace wendle
