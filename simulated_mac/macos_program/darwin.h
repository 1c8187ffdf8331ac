// Numbers of macOS that differ here: errors and signals. From the platform's <sys/errno.h> and
// <sys/signal.h>.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <string>
#include <type_traits>

namespace wendle::macho {
// This thread's errno as the program sees it.
[[nodiscard]] int& darwinErrno();

// An error of this system's number; refuses one that macOS has no number for.
[[nodiscard]] int toDarwinError(int number);
[[nodiscard]] const char* darwinErrorText(int darwinNumber);

// None here for a signal of macOS: 0.
[[nodiscard]] int toHostSignal(int darwinNumber);
[[nodiscard]] int toDarwinSignal(int hostNumber);

template <typename R>
[[nodiscard]] bool isFailure(R result) {
  if constexpr (std::is_pointer_v<R>) return result == nullptr;
  if constexpr (!std::is_pointer_v<R>) return result == static_cast<R>(-1);
}

// The result of a call that has just been made; its error is the program's errno.
template <typename R>
R withErrno(R result) {
  if (isFailure(result)) darwinErrno() = toDarwinError(errno);
  return result;
}

// A function of this system as it is, but for its errno.
template <auto function>
struct WithErrno;
template <typename R, typename... A, bool isNoexcept, R (*function)(A...) noexcept(isNoexcept)>
struct WithErrno<function> {
  static R call(A... arguments) { return withErrno(function(arguments...)); }
};
}  // namespace wendle::macho
