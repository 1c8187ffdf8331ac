// The pointers that dyld sets in a loaded image, from the opcodes of LC_DYLD_INFO (<mach-o/loader.h>,
// REBASE_OPCODE_* and BIND_OPCODE_*).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulated_mac/macos_program/mach_o.h"

namespace wendle::macho {
struct Bind {
  std::uint64_t address = 0;  // of the pointer
  std::string symbol;         // with the leading underscore of C
  std::int64_t addend = 0;
};

// All addresses are those the linker gave, and lie within segments. Both throw Refusal for opcodes that are
// damaged or unknown.
[[nodiscard]] std::vector<std::uint64_t> rebases(const MachO& image);
[[nodiscard]] std::vector<Bind> binds(const MachO& image);
[[nodiscard]] std::vector<Bind> lazyBinds(const MachO& image);
}  // namespace wendle::macho
