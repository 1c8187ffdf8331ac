// Reading bytes that somebody else has written: every access is checked.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "simulated_mac/macos_program/refusal.h"

namespace wendle::macho {
using Bytes = std::span<const std::uint8_t>;

// The part of `bytes` from `offset` on; throws Refusal, naming `what`, when it is not all there.
[[nodiscard]] inline Bytes part(Bytes bytes, std::uint64_t offset, std::uint64_t size, const char* what) {
  if (offset > bytes.size() || size > bytes.size() - offset) {
    throw Refusal(std::string("it is damaged: ") + what + " lies outside of it");
  }
  return bytes.subspan(offset, size);
}

// A number or a structure, in this processor's byte order, which is that of both processors of a Mac.
template <typename T>
[[nodiscard]] T valueAt(Bytes bytes, std::uint64_t offset, const char* what) {
  T value{};
  std::memcpy(&value, part(bytes, offset, sizeof value, what).data(), sizeof value);
  return value;
}

// The number at `position`, which is moved behind it. ULEB128: seven bits a byte, the least significant
// first.
[[nodiscard]] inline std::uint64_t readUleb(Bytes bytes, std::size_t& position) {
  std::uint64_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto next = valueAt<std::uint8_t>(bytes, position++, "a number");
    if (shift > 63) throw Refusal("it is damaged: an endless number");
    value |= std::uint64_t{next & 0x7FU} << shift;
    if ((next & 0x80U) == 0) return value;
  }
}
}  // namespace wendle::macho
