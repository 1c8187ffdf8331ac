#include "platform/file_url.h"

#include <unistd.h>

#include <array>
#include <climits>

#include "platform/files.h"

namespace wendle {
constexpr std::string_view unescapedMarks = "-._~!$&'()*+,=:@/";  // the semicolon is escaped, as on macOS [I]

static bool standsUnescaped(char byte) {
  const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
  return isLetter || (byte >= '0' && byte <= '9') || unescapedMarks.find(byte) != std::string_view::npos;
}

static std::string percentEscaped(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char byte : text) {
    if (standsUnescaped(byte)) {
      result += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      result += {'%', digits[value >> 4U], digits[value & 0xFU]};
    }
  }
  return result;
}

static std::string absolutePath(std::string_view path) {
  if (path.starts_with('/')) return std::string(path);
  std::array<char, PATH_MAX> workingDirectory{};
  (void)!::getcwd(workingDirectory.data(), workingDirectory.size());  // nothing when it is gone
  return std::string(workingDirectory.data()).append("/").append(path);
}

FileUrl FileUrl::fileUrlWithPath(std::string_view path) {
  std::string absolute = absolutePath(path);
  if (absolute.ends_with('/') || isDirectoryItself(absolute)) return fileUrlWithDirectoryPath(absolute);
  std::string text = "file://" + percentEscaped(absolute);
  return {std::move(absolute), std::move(text)};
}

FileUrl FileUrl::fileUrlWithDirectoryPath(std::string_view path) {
  std::string absolute = absolutePath(path);
  std::string text = "file://" + percentEscaped(absolute);
  if (!text.ends_with('/')) text += '/';
  while (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
  return {std::move(absolute), std::move(text)};
}

// Linux has no bookmarks: bytes that name the item.
std::optional<PropertyListData> bookmarkData(const FileUrl& item) {
  if (!fileExists(item.path())) return std::nullopt;
  return PropertyListData{"book" + item.path()};
}
}  // namespace wendle
