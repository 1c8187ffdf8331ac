#pragma once

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

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
[[nodiscard]] inline Error posixError(int errnoValue) {
  return {std::string(posixErrorDomain), errnoValue, std::strerror(errnoValue)};
}

// As Foundation prints an NSError [D]: Error Domain=NSPOSIXErrorDomain Code=2 "No such file or directory"
[[nodiscard]] inline std::string describe(const Error& error) {
  return "Error Domain=" + error.domain + " Code=" + std::to_string(error.code) + " \"" + error.description +
         "\"";
}

// What became of an operation that has no other result: success, or the error of what failed.
//
//   if (const Status status = removeItem(path); !status.ok()) log(status.error());
class [[nodiscard]] Status {
 public:
  Status() = default;  // success
  Status(Error error)
      : error_(std::move(error)) {}  // a failure; implicit, so that `return posixError(errno);` is one

  [[nodiscard]] bool ok() const { return !error_; }
  [[nodiscard]] const Error& error() const { return *error_; }  // defined for a failure only

  friend bool operator==(const Status&, const Status&) = default;

 private:
  std::optional<Error> error_;
};
}  // namespace wendle
