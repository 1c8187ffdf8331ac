#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "platform/linux/property_list_file.h"

namespace wendle {
namespace {
constexpr size_t maxXmlContainers = 20'000;          // each could lie in the one before
constexpr std::uint64_t maxExpandedSize = 64 << 20;  // bytes
constexpr std::uint64_t objectSize = 64;             // bytes, what an empty object takes at the least

// The objects of a binary property list, as CoreFoundation's CFBinaryPList.c describes them [S]: a marker
// with kind and count, then bytes or references to other objects; behind them the table of their offsets, and
// a trailer.
class BinaryObjects {
 public:
  explicit BinaryObjects(std::string_view bytes) : bytes_(bytes) {
    if (bytes.size() < trailerSize) return;
    const size_t trailer = bytes.size() - trailerSize;
    offsetWidth_ = number(trailer + 6, 1);
    referenceWidth_ = number(trailer + 7, 1);
    const std::uint64_t count = number(trailer + 8, 8);
    if (count <= bytes.size()) sizes_.resize(count);
    top_ = number(trailer + 16, 8);
    offsets_ = number(trailer + 24, 8);
  }

  [[nodiscard]] bool areBounded() { return measure(top_, 1).has_value(); }

 private:
  static constexpr size_t trailerSize = 32;
  static constexpr auto none = std::numeric_limits<std::uint64_t>::max();

  // `none` where the bytes end before.
  [[nodiscard]] std::uint64_t number(std::uint64_t position, std::uint64_t width) const {
    if (position > bytes_.size() || width > bytes_.size() - position) return none;
    std::uint64_t value = 0;
    for (const char byte : bytes_.substr(position, width)) {
      value = (value << 8U) | static_cast<unsigned char>(byte);
    }
    return value;
  }

  // The size of an object with all that it refers to; none when that is out of bounds, a reference leads
  // nowhere, or an object holds itself.
  std::optional<std::uint64_t> measure(std::uint64_t object, int level) {
    if (level > maxPropertyListLevels || object >= sizes_.size()) return std::nullopt;
    if (sizes_[object] == 0) {
      const auto size = measureContents(number(offsets_ + object * offsetWidth_, offsetWidth_), level);
      if (!size || *size > maxExpandedSize) return std::nullopt;
      sizes_[object] = *size;
    }
    return sizes_[object];
  }

  std::optional<std::uint64_t> measureContents(std::uint64_t position, int level) {
    const std::uint64_t marker = number(position++, 1);
    const std::uint64_t kind = marker >> 4U;
    std::uint64_t count = marker & 0xFU;
    if (count == 0xF) {  // an integer object of 1, 2, 4 or 8 bytes follows, which has the count
      const std::uint64_t width = std::uint64_t{1} << (number(position++, 1) & 0x3U);
      count = number(position, width);
      position += width;
    }
    if (marker == none || count > bytes_.size()) return std::nullopt;
    if (kind < 0xA) return objectSize + count;
    std::uint64_t size = objectSize;
    const std::uint64_t references = kind == 0xD ? 2 * count : count;  // a dictionary's keys, then its values
    for (std::uint64_t i = 0; i < references && size <= maxExpandedSize; ++i) {
      const auto held = measure(number(position + i * referenceWidth_, referenceWidth_), level + 1);
      if (!held) return std::nullopt;
      size += *held;
    }
    return size;
  }

  std::string_view bytes_;
  std::uint64_t offsetWidth_ = 0;
  std::uint64_t referenceWidth_ = 0;
  std::uint64_t top_ = 0;
  std::uint64_t offsets_ = 0;
  std::vector<std::uint64_t> sizes_;  // by object; 0 where not known yet
};
}  // namespace

bool isBoundedXml(std::string_view bytes) {
  size_t containers = 0;
  for (const std::string_view tag : {"<array", "<dict"}) {
    for (size_t i = bytes.find(tag); i != std::string_view::npos; i = bytes.find(tag, i + 1)) ++containers;
  }
  return containers <= maxXmlContainers;
}

bool isBoundedBinary(std::string_view bytes) { return BinaryObjects(bytes).areBounded(); }
}  // namespace wendle
