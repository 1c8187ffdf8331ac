// The section __unwind_info: how each function's frame is taken down when an exception passes. Its format is
// that of <mach-o/compact_unwind_encoding.h>.
#pragma once

#include <cstdint>
#include <vector>

#include "simulated_mac/macos_program/bytes.h"

namespace wendle::macho {
// A function; places are offsets from the image's first address, 0 for none.
struct UnwindEntry {
  std::uint32_t start = 0, end = 0;
  std::uint32_t encoding = 0;  // of the frame; the meaning is the processor's
  std::uint32_t exceptionTable = 0;
  std::uint32_t personalityPointer = 0;  // where the pointer to the personality function is
};

inline constexpr std::uint32_t encodingMode = 0x0F000000;  // what kind of frame; 0 for none

// In the order of their places. `section` may be anything; throws Refusal for what is damaged.
[[nodiscard]] std::vector<UnwindEntry> parseUnwindInfo(Bytes section);
}  // namespace wendle::macho
