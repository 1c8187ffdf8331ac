#include "platform/linux/file_content.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "base/unique_fd.h"

namespace wendle {

std::string fileContent(const std::string& path) {
  return contentOf(UniqueFd(::open(path.c_str(), O_RDONLY | O_CLOEXEC)));
}

std::string contentOf(const UniqueFd& file) {
  std::string content;
  std::array<char, 16 * 1024> buffer;  // NOLINT(*-member-init): read(2) fills what is used of it
  for (;;) {
    const ssize_t count = retryOnInterrupt([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count <= 0) return content;
    content.append(buffer.data(), static_cast<size_t>(count));
  }
}

}  // namespace wendle
