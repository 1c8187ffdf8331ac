#include "platform/bookmark.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "platform/files.h"

namespace wendle {

// Linux has no bookmarks: bytes that name the item.
std::optional<PropertyListData> bookmarkData(const FileUrl& item) {
  if (!fileExists(item.path())) return std::nullopt;
  return PropertyListData{"book" + item.path()};
}

// A version 4 UUID (RFC 4122).
std::string makeUniqueIdentifier() {
  std::array<unsigned char, 16> bytes{};
  if (::getentropy(bytes.data(), bytes.size()) != 0) {
    throw std::system_error(errno, std::generic_category(), "getentropy");
  }
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);
  constexpr const char* digits = "0123456789ABCDEF";
  std::string text;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += {digits[bytes[i] >> 4U], digits[bytes[i] & 0xFU]};
  }
  return text;
}

}  // namespace wendle
