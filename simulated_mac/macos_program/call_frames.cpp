// Frame encodings are those of <mach-o/compact_unwind_encoding.h>; the tables made of them those of the Linux
// Standard Base, "Exception Frames"; register numbers those of the processors' System V and AAPCS64
// supplements.
#include "simulated_mac/macos_program/call_frames.h"

#include <array>
#include <map>

namespace wendle::macho {
namespace {
// Of DWARF's call frame instructions.
constexpr std::uint8_t defineFrame = 0x0C, savedAt = 0x80;  // savedAt + register, offset / -8
constexpr std::uint8_t absolutePointer = 0x00;

// What is known of a frame: where the caller's stack pointer is, and each register saved below it.
struct Frame {
  std::uint8_t baseRegister = 0;
  std::uint64_t baseOffset = 0;
  std::map<std::uint8_t, std::uint64_t> savedAt;  // words below the caller's stack pointer, by register
};

std::uint32_t bits(std::uint32_t encoding, unsigned shift, std::uint32_t mask) {
  return encoding >> shift & mask;
}

[[noreturn]] void refuseEncoding(std::uint32_t encoding) {
  throw Refusal("its unwind table has the encoding " + std::to_string(encoding) + ", which is unknown here");
}

namespace intel {
constexpr std::uint8_t framePointer = 6, stackPointer = 7, returnAddress = 16;
constexpr std::array<std::uint8_t, 7> registers{0, 3, 12, 13, 14, 15, 6};  // by their number in encodings

// The frame pointer is the base, and each register has a slot of its own.
Frame frameOfPointer(std::uint32_t encoding) {
  Frame frame{framePointer, 16, {{returnAddress, 1}, {framePointer, 2}}};
  for (unsigned slot = 0; slot < 5; ++slot) {
    const std::uint32_t saved = bits(encoding, 3 * slot, 7);
    if (saved > 5) refuseEncoding(encoding);
    if (saved != 0) frame.savedAt[registers[saved]] = 2 + bits(encoding, 16, 0xFF) - slot;
  }
  return frame;
}

// Which registers were pushed, and in which order, is one number: the position among all permutations.
std::vector<std::uint8_t> pushed(std::uint32_t count, std::uint32_t permutation) {
  std::vector<std::uint8_t> result, left{registers.begin() + 1, registers.end()};
  std::uint32_t weight = 1;
  for (std::uint32_t i = count; i > 1; --i) weight *= 7 - i;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (permutation / weight >= left.size()) throw Refusal("it is damaged: the registers of a frame");
    const auto chosen = left.begin() + permutation / weight;
    result.push_back(*chosen);
    left.erase(chosen);
    permutation %= weight;
    if (i + 1 < count) weight /= 5 - i;
  }
  return result;
}

// The stack pointer is the base.
Frame frameOfStack(std::uint32_t encoding) {
  const std::uint64_t words = bits(encoding, 16, 0xFF);
  const std::uint32_t count = bits(encoding, 10, 7);
  if (count > 6 || words < count + 1) refuseEncoding(encoding);
  Frame frame{stackPointer, words * 8, {{returnAddress, 1}}};
  std::uint64_t word = 1 + count;
  for (const std::uint8_t saved : pushed(count, bits(encoding, 0, 0x3FF))) frame.savedAt[saved] = word--;
  return frame;
}

std::optional<Frame> toFrame(std::uint32_t encoding) {
  switch (encoding & encodingMode) {
    case 0:
      return std::nullopt;
    case 0x01000000:
      return frameOfPointer(encoding);
    case 0x02000000:
      return frameOfStack(encoding);
    default:
      refuseEncoding(encoding);
  }
}
}  // namespace intel

namespace arm {
constexpr std::uint8_t framePointer = 29, returnAddress = 30;
// Registers are saved by pairs, in this order; the vector registers' lower halves from d8 on.
constexpr std::array<std::uint8_t, 9> pairs{19, 21, 23, 25, 27, 64 + 8, 64 + 10, 64 + 12, 64 + 14};
constexpr std::uint32_t knownPairs = 0xF1F;  // and the bit of each; those between are unused

Frame frameOfPointer(std::uint32_t encoding) {
  Frame frame{framePointer, 16, {{returnAddress, 1}, {framePointer, 2}}};
  std::uint64_t word = 3;
  for (unsigned bit = 0, pair = 0; bit < 12; ++bit) {
    if ((knownPairs >> bit & 1U) == 0) continue;
    const std::uint8_t first = pairs[pair++];
    if (bits(encoding, bit, 1) == 0) continue;
    frame.savedAt[first] = word++;
    frame.savedAt[static_cast<std::uint8_t>(first + 1)] = word++;
  }
  return frame;
}

// A function without a frame that has not even kept its return address calls nothing.
std::optional<Frame> toFrame(std::uint32_t encoding) {
  switch (encoding & encodingMode) {
    case 0:
    case 0x02000000:
    case 0x03000000:  // DWARF
      return std::nullopt;
    case 0x04000000:
      return frameOfPointer(encoding);
    default:
      refuseEncoding(encoding);
  }
}
}  // namespace arm

class Writer {
 public:
  explicit Writer(std::uint8_t returnAddress) : returnAddress_(returnAddress) {}

  void add(const UnwoundFunction& function, const Frame& frame) {
    const std::size_t common = commonPart(function.personality);
    const std::size_t start = beginRecord();
    number(static_cast<std::uint32_t>(bytes_.size() - common));
    number(reinterpret_cast<std::uint64_t>(function.start));
    number(function.size);
    bytes_.push_back(8);
    number(reinterpret_cast<std::uint64_t>(function.exceptionTable));
    bytes_.insert(bytes_.end(), {defineFrame, frame.baseRegister});
    uleb(frame.baseOffset);
    for (const auto& [saved, words] : frame.savedAt) {
      bytes_.push_back(saved < 0x40 ? savedAt + saved : 0x05);  // in one byte, or the extended instruction
      if (saved >= 0x40) uleb(saved);
      uleb(words);
    }
    endRecord(start);
  }

  std::vector<std::uint8_t> finish() {
    number(std::uint32_t{0});
    return std::move(bytes_);
  }

 private:
  // What functions with the same personality function have in common.
  std::size_t commonPart(const void* personality) {
    if (const auto found = commonParts_.find(personality); found != commonParts_.end()) return found->second;
    const std::size_t start = beginRecord();
    number(std::uint32_t{0});
    bytes_.insert(bytes_.end(), {1, 'z', 'P', 'L', 'R', '\0'});
    bytes_.insert(bytes_.end(), {1, 0x78, returnAddress_, 11});  // units of 1 and -8 bytes; the length of:
    bytes_.push_back(absolutePointer);
    number(reinterpret_cast<std::uint64_t>(personality));
    bytes_.insert(bytes_.end(), {absolutePointer, absolutePointer});
    endRecord(start);
    return commonParts_[personality] = start;
  }

  std::size_t beginRecord() {
    const std::size_t start = bytes_.size();
    number(std::uint32_t{0});
    return start;
  }

  void endRecord(std::size_t start) {
    while (bytes_.size() % 8 != 4) bytes_.push_back(0);  // no instruction
    const auto length = static_cast<std::uint32_t>(bytes_.size() - start - 4);
    std::memcpy(&bytes_[start], &length, sizeof length);
  }

  template <typename T>
  void number(T value) {
    const auto* const first = reinterpret_cast<const std::uint8_t*>(&value);
    bytes_.insert(bytes_.end(), first, first + sizeof value);
  }

  void uleb(std::uint64_t value) {
    for (; value >= 0x80; value >>= 7U) bytes_.push_back(static_cast<std::uint8_t>(value | 0x80U));
    bytes_.push_back(static_cast<std::uint8_t>(value));
  }

  std::uint8_t returnAddress_;
  std::vector<std::uint8_t> bytes_;
  std::map<const void*, std::size_t> commonParts_;
};
}  // namespace

bool isDescribedByDwarf(std::uint32_t encoding, Processor processor) {
  return (encoding & encodingMode) == (processor == Processor::arm64 ? 0x03000000U : 0x04000000U);
}

std::vector<std::uint8_t> callFrames(const std::vector<UnwoundFunction>& functions, Processor processor) {
  const bool isArm = processor == Processor::arm64;
  Writer writer(isArm ? arm::returnAddress : intel::returnAddress);
  for (const UnwoundFunction& function : functions) {
    if (isDescribedByDwarf(function.encoding, processor)) continue;
    const auto frame = (isArm ? arm::toFrame : intel::toFrame)(function.encoding);
    if (frame) writer.add(function, *frame);
  }
  return writer.finish();
}
}  // namespace wendle::macho
