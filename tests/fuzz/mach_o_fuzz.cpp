// Any bytes in the place of a macOS executable, its lists of pointers and its unwind table included: it is
// read, or refused with a sentence. The seeds are a small program, with and without frame pointers.
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

void readUnwindTable(Bytes table, Processor processor) {
  std::vector<UnwoundFunction> functions;
  for (const UnwindEntry& entry : parseUnwindInfo(table))
    functions.push_back({nullptr, 1, entry.encoding, nullptr, nullptr});
  property("the list has an end", callFrames(functions, processor).size() >= 4);
}

void readFile(Bytes file) {
  const MachO image = parseMachO(file, Processor::x86_64);
  property("main is in the image", image.findSegment(image.entry, 1) == &image.text());
  for (const Section& section : image.sections) {
    property("a section is in a segment", image.findSegment(section.address, section.size) != nullptr);
  }
  for (const std::uint64_t address : rebases(image)) {
    property("a pointer can be written", image.findSegment(address, 8)->isWritable);
  }
  for (const auto& read : {binds, lazyBinds}) (void)read(image);
  const Bytes table = image.content(image.section("__unwind_info"));
  for (const Processor processor : {Processor::x86_64, Processor::arm64})
    readOrRefuse([&] { readUnwindTable(table, processor); });
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
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes input(data, size);
  readOrRefuse([&] { readFile(input); });
  readOpcodes(input);
  return 0;
}
