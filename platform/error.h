#pragma once

#include <string>
#include <string_view>

namespace wendle {

inline constexpr std::string_view posixErrorDomain = "NSPOSIXErrorDomain";      // code: an errno value
inline constexpr std::string_view statusErrorDomain = "NSOSStatusErrorDomain";  // code: a tool's exit status

// What went wrong, as a value: where the code comes from, the code, and its text.
struct Error {
  std::string domain;
  int code = 0;
  std::string description;

  friend bool operator==(const Error&, const Error&) = default;
};

// The error of a system call: domain `NSPOSIXErrorDomain`, and the system's own text for `errnoValue`.
// Take errno in the statement after the call that failed.
[[nodiscard]] Error posixError(int errnoValue);

// As Foundation prints an NSError: Error Domain=NSPOSIXErrorDomain Code=2 "No such file or directory"
[[nodiscard]] std::string describe(const Error& error);

}  // namespace wendle
