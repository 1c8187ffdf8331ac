// One processor's half of a macOS executable, as its headers describe it. Nothing is mapped here: any bytes
// may be given, and what cannot be run is a Refusal.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulated_mac/macos_program/bytes.h"

namespace wendle::macho {
enum class Processor : std::uint32_t { x86_64 = 0x01000007, arm64 = 0x0100000C };

#if defined(__x86_64__)
inline constexpr Processor hostProcessor = Processor::x86_64;
#elif defined(__aarch64__)
inline constexpr Processor hostProcessor = Processor::arm64;
#endif

struct Segment {
  std::string name;
  std::uint64_t address = 0, size = 0;  // in memory, where the linker put it
  Bytes content;                        // of the file; what memory holds beyond it is zero
  bool isWritable = false, isExecutable = false;
  bool isConstant = false;  // read-only as soon as its pointers are set
};

struct Section {
  std::string name;
  std::uint64_t address = 0, size = 0;
};

struct MachO {
  std::vector<Segment> segments;  // by ascending addresses; opcodes name them by their index
  std::vector<Section> sections;  // each within a segment
  Bytes rebases, binds, lazyBinds;
  std::uint64_t entry = 0;     // the address of `main`
  std::uint64_t fileSize = 0;  // of this half

  // All but __PAGEZERO, where nothing may be.
  [[nodiscard]] const Segment* findSegment(std::uint64_t address, std::uint64_t size) const;
  [[nodiscard]] const Segment& text() const;       // __TEXT, the first; it begins with the headers
  [[nodiscard]] std::uint64_t endAddress() const;  // behind the last segment
  [[nodiscard]] Section section(std::string_view name) const;  // empty when there is none
  [[nodiscard]] Bytes content(const Section& section) const;   // as the file has it
};

// The half for `processor`; `file` is a universal file, or holds that half alone, and must outlive the
// result. Throws Refusal when there is no such half, or something in it that the loader does not know.
[[nodiscard]] MachO parseMachO(Bytes file, Processor processor);
}  // namespace wendle::macho
