// Unwind tables in the form that GCC's unwinder reads.
#pragma once

#include <cstdint>
#include <vector>

#include "simulated_mac/macos_program/mach_o.h"
#include "simulated_mac/macos_program/unwind_info.h"

namespace wendle::macho {
// A function as it lies in memory.
struct UnwoundFunction {
  const void* start = nullptr;
  std::uint64_t size = 0;
  std::uint32_t encoding = 0;  // as in UnwindEntry
  const void* exceptionTable = nullptr;
  const void* personality = nullptr;
};

// Whether a function's frame is described in the image's own __eh_frame, and not by its encoding.
[[nodiscard]] bool isDescribedByDwarf(std::uint32_t encoding, Processor processor);

// The contents of an .eh_frame section for these functions; those that no exception can pass, or that DWARF
// describes, are left out. Throws Refusal for an encoding that is unknown.
[[nodiscard]] std::vector<std::uint8_t> callFrames(const std::vector<UnwoundFunction>& functions,
                                                   Processor processor);
}  // namespace wendle::macho
