#include "simulated_mac/macos_program/fixups.h"

#include <utility>

namespace wendle::macho {
namespace {
constexpr const char* what = "its list of pointers to be set";
constexpr std::uint64_t pointerSize = 8;

// A position in an opcode list, and the address in the image that the opcodes move.
class Opcodes {
 public:
  Opcodes(const MachO& image, Bytes bytes) : image_(image), bytes_(bytes) {}

  [[nodiscard]] bool isAtEnd() const { return position_ == bytes_.size(); }

  std::uint8_t byte() { return valueAt<std::uint8_t>(bytes_, position_++, what); }

  std::uint64_t uleb() { return readUleb(bytes_, position_); }

  std::int64_t sleb() {
    const std::size_t start = position_;
    const std::uint64_t value = uleb();
    const std::size_t bits = 7 * (position_ - start);
    const bool isNegative = bits < 64 && (bytes_[position_ - 1] & 0x40U) != 0;
    return static_cast<std::int64_t>(isNegative ? value | ~std::uint64_t{0} << bits : value);
  }

  std::string text() {
    std::string result;
    while (const std::uint8_t next = byte()) result.push_back(static_cast<char>(next));
    return result;
  }

  void moveTo(std::size_t segment, std::uint64_t offset) {
    if (segment >= image_.segments.size()) throw Refusal("it is damaged: a pointer in no segment");
    address_ = image_.segments[segment].address + offset;
  }
  void move(std::uint64_t offset) { address_ += offset; }

  // The pointer here, and on to the next.
  std::uint64_t takePointer() {
    const Segment* segment = image_.findSegment(address_, pointerSize);
    if (segment == nullptr || !segment->isWritable) {
      throw Refusal("it is damaged: a pointer to be set lies in no writable segment");
    }
    (void)part(segment->content, address_ - segment->address, pointerSize, "a pointer to be set");
    // However the opcodes jump, no more pointers than the file has room for.
    if (++count_ > image_.fileSize / pointerSize) throw Refusal("it is damaged: too many pointers to be set");
    return std::exchange(address_, address_ + pointerSize);
  }

 private:
  const MachO& image_;
  Bytes bytes_;
  std::size_t position_ = 0;
  std::uint64_t address_ = 0, count_ = 0;
};

[[noreturn]] void refuseOpcode(const char* list, std::uint8_t opcode) {
  throw Refusal(std::string("it has a ") + list + " opcode " + std::to_string(opcode) +
                ", which is unknown here");
}

void checkType(std::uint8_t type) {
  if (type != 1)
    throw Refusal("it has a pointer of type " + std::to_string(type) + ", which is unknown here");
}

std::vector<Bind> readBinds(const MachO& image, Bytes list, bool isLazy) {
  std::vector<Bind> result;
  Opcodes opcodes(image, list);
  Bind bind;
  const auto take = [&](std::uint64_t skip) {
    bind.address = opcodes.takePointer();
    result.push_back(bind);
    opcodes.move(skip);
  };
  while (!opcodes.isAtEnd()) {
    const std::uint8_t byte = opcodes.byte(), operand = byte & 0x0FU;
    switch (byte & 0xF0U) {
      case 0x00:  // done; in the lazy list, where each pointer has its own opcodes, the end of one
        if (!isLazy) return result;
        break;
      case 0x10:  // which library; there is one list of what stands for all of them
      case 0x30:
        break;
      case 0x20:
        (void)opcodes.uleb();
        break;
      case 0x40:
        bind.symbol = opcodes.text();
        break;
      case 0x50:
        checkType(operand);
        break;
      case 0x60:
        bind.addend = opcodes.sleb();
        break;
      case 0x70:
        opcodes.moveTo(operand, opcodes.uleb());
        break;
      case 0x80:
        opcodes.move(opcodes.uleb());
        break;
      case 0x90:
        take(0);
        break;
      case 0xA0:
        take(0);
        opcodes.move(opcodes.uleb());
        break;
      case 0xB0:
        take(operand * pointerSize);
        break;
      case 0xC0: {
        const std::uint64_t count = opcodes.uleb(), skip = opcodes.uleb();
        for (std::uint64_t i = 0; i < count; ++i) take(skip);
        break;
      }
      default:
        refuseOpcode("binding", byte);
    }
  }
  if (!isLazy && !list.empty()) throw Refusal("it is damaged: its list of pointers to be bound has no end");
  return result;
}
}  // namespace

std::vector<std::uint64_t> rebases(const MachO& image) {
  std::vector<std::uint64_t> result;
  Opcodes opcodes(image, image.rebases);
  const auto take = [&](std::uint64_t count, std::uint64_t skip) {
    for (std::uint64_t i = 0; i < count; ++i) {
      result.push_back(opcodes.takePointer());
      opcodes.move(skip);
    }
  };
  while (!opcodes.isAtEnd()) {
    const std::uint8_t byte = opcodes.byte(), operand = byte & 0x0FU;
    switch (byte & 0xF0U) {
      case 0x00:
        return result;
      case 0x10:
        checkType(operand);
        break;
      case 0x20:
        opcodes.moveTo(operand, opcodes.uleb());
        break;
      case 0x30:
        opcodes.move(opcodes.uleb());
        break;
      case 0x40:
        opcodes.move(operand * pointerSize);
        break;
      case 0x50:
        take(operand, 0);
        break;
      case 0x60:
        take(opcodes.uleb(), 0);
        break;
      case 0x70:
        take(1, opcodes.uleb());
        break;
      case 0x80: {
        const std::uint64_t count = opcodes.uleb(), skip = opcodes.uleb();
        take(count, skip);
        break;
      }
      default:
        refuseOpcode("rebasing", byte);
    }
  }
  if (!image.rebases.empty()) throw Refusal("it is damaged: its list of pointers to be moved has no end");
  return result;
}

std::vector<Bind> binds(const MachO& image) { return readBinds(image, image.binds, false); }
std::vector<Bind> lazyBinds(const MachO& image) { return readBinds(image, image.lazyBinds, true); }
}  // namespace wendle::macho
