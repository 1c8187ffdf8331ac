#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <string>

#include "base/unique_fd.h"

namespace wendle {

// The bytes of an open file from where it stands; no more than can be read.
[[nodiscard]] inline std::string fileContent(const UniqueFd& file) {
  std::string content;
  std::array<char, 16 * 1024> buffer;  // NOLINT(*-member-init): read(2) fills what is used of it
  for (;;) {
    const ssize_t count = retryOnInterrupt([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count <= 0) return content;
    content.append(buffer.data(), static_cast<size_t>(count));
  }
}

// The same of the file at `path`; none when it is absent.
[[nodiscard]] inline std::string fileContent(const std::string& path) {
  return fileContent(UniqueFd(::open(path.c_str(), O_RDONLY | O_CLOEXEC)));
}

}  // namespace wendle
