#pragma once

#include <cerrno>

namespace wendle {

// Calls `systemCall` until a signal no longer interrupts it; its result and errno are those of the last call.
template <typename SystemCall>
auto retryOnInterrupt(SystemCall systemCall) {
  auto result = systemCall();
  while (result == -1 && errno == EINTR) result = systemCall();
  return result;
}

}  // namespace wendle
