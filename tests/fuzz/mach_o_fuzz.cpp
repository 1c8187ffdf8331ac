// Any bytes in the place of a macOS executable's headers, of its lists of pointers and of its unwind table:
// each is read, or refused with a sentence.
#include <array>

#include "property.h"
#include "simulated_mac/macos_program/call_frames.h"
#include "simulated_mac/macos_program/fixups.h"
#include "simulated_mac/macos_program/mach_o.h"
#include "simulated_mac/macos_program/unwind_info.h"

namespace {

using namespace wendle::macho;
using wendle::property;

template <typename Read>
void readOrRefuse(Read read) {
  try {
    read();
  } catch (const Refusal& refusal) {
    property("a refusal is a sentence", *refusal.what() != '\0');
  }
}

void readFile(Bytes file) {
  readOrRefuse([&] {
    const MachO image = parseMachO(file, Processor::x86_64);
    property("main is in the image", image.segmentOf(image.entry, 1) == &image.text());
    for (const Section& section : image.sections) {
      property("a section is in a segment", image.segmentOf(section.address, section.size) != nullptr);
    };
    for (const std::uint64_t address : rebases(image)) {
      property("a pointer can be written", image.segmentOf(address, 8)->isWritable);
    };
  });
}

// Behind a header that says what the input is: load commands for this processor.
void readCommands(Bytes commands) {
  const std::array<std::uint32_t, 8> header{
      0xFEEDFACF, 0x01000007, 3, 2, 4, static_cast<std::uint32_t>(commands.size())};
  std::vector<std::uint8_t> file(sizeof header);
  std::memcpy(file.data(), header.data(), sizeof header);
  file.insert(file.end(), commands.begin(), commands.end());
  readFile(file);
}

bool isInData(std::uint64_t address) { return address >= 0x2000 && address <= 0x3000 - 8; }

void readOpcodes(Bytes opcodes) {
  static const std::vector<std::uint8_t> content(4096);
  MachO image;
  image.segments = {{"__TEXT", 0x1000, 0x1000, content, false, true, false},
                    {"__DATA", 0x2000, 0x2000, content, true, false, false}};
  image.fileSize = 2 * content.size();
  image.rebases = image.binds = image.lazyBinds = opcodes;
  readOrRefuse([&] {
    for (const std::uint64_t address : rebases(image))
      property("a pointer is in the data", isInData(address));
  });
  for (const auto& read : {binds, lazyBinds}) {
    readOrRefuse([&] {
      for (const Bind& bind : read(image)) property("a bind is in the data", isInData(bind.address));
    });
  }
}

void readUnwindTable(Bytes table, Processor processor) {
  readOrRefuse([&] {
    std::vector<UnwoundFunction> functions;
    for (const UnwindEntry& entry : parseUnwindInfo(table))
      functions.push_back({nullptr, 1, entry.encoding, nullptr, nullptr});
    property("the list has an end", callFrames(functions, processor).size() >= 4);
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes input(data, size);
  readFile(input);
  readCommands(input);
  readOpcodes(input);
  for (const Processor processor : {Processor::x86_64, Processor::arm64}) readUnwindTable(input, processor);
  return 0;
}
