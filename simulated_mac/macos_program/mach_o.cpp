// Structures and numbers are those of <mach-o/loader.h> and <mach-o/fat.h>.
#include "simulated_mac/macos_program/mach_o.h"

#include <algorithm>
#include <set>
#include <utility>

namespace wendle::macho {
namespace {
constexpr std::uint32_t universalMagic = 0xCAFEBABE, magic64 = 0xFEEDFACF;
constexpr std::uint32_t executableFile = 2;  // MH_EXECUTE
constexpr std::uint64_t maxImageSize = std::uint64_t{1} << 30U;
constexpr const char* guard = "__PAGEZERO";
constexpr const char* linkerData = "its list of pointers to be set";

// Of load commands; dyld refuses a program with one that it does not know when this bit is set.
constexpr std::uint32_t mustBeKnown = 0x80000000;
enum Command : std::uint32_t {
  segment64 = 0x19,
  functionStarts = 0x26,
  dyldInfo = 0x80000022,
  mainEntry = 0x80000028
};

struct Header {
  std::uint32_t magic, processor, subtype, fileType, commandCount, commandBytes, flags, reserved;
};

struct UniversalPart {
  std::uint32_t processor, subtype, offset, size, alignment;  // all with the most significant byte first
};

struct SegmentCommand {
  std::uint32_t command, commandSize;
  char name[16];
  std::uint64_t address, size, fileOffset, fileSize;
  std::uint32_t maxProtection, protection, sectionCount, flags;
};

struct SectionHeader {
  char name[16], segmentName[16];
  std::uint64_t address, size;
  std::uint32_t offset, alignment, relocationOffset, relocationCount, flags, reserved[3];
};

struct DyldInfoCommand {
  std::uint32_t command, commandSize, rebaseOffset, rebaseSize, bindOffset, bindSize, weakOffset, weakSize,
      lazyOffset, lazySize, exportOffset, exportSize;
};

// Every processor of its kind runs these; others want instructions that a few have (x86_64h, arm64e).
constexpr std::uint32_t everyIntel = 3, everyArm = 0, subtypeMask = 0x00FFFFFF;

// Code, data, and what the loader prepares; with a blank on both sides. Another section may want something of
// it: a variable for each thread, a class to be told that it was loaded.
constexpr std::string_view knownSections =
    " __text __stubs __stub_helper __const __cstring __literals __literal4 __literal8 __literal16 __data"
    " __bss __common __got __la_symbol_ptr __gcc_except_tab __unwind_info __eh_frame __mod_init_func"
    " __cfstring __objc_imageinfo __objc_classlist __objc_catlist __objc_selrefs __objc_classrefs"
    " __objc_superrefs __objc_data __objc_const __objc_ivar __objc_methname __objc_methtype"
    " __objc_classname ";

template <std::size_t size>
std::string toText(const char (&field)[size]) {
  return {field, std::find(field, field + size, '\0')};
}

std::uint32_t bigEndian(std::uint32_t number) { return __builtin_bswap32(number); }

bool runsOn(Processor wanted, std::uint32_t processor, std::uint32_t subtype) {
  const std::uint32_t every = wanted == Processor::x86_64 ? everyIntel : everyArm;
  return processor == static_cast<std::uint32_t>(wanted) && (subtype & subtypeMask) == every;
}

Bytes halfFor(Bytes file, Processor processor) {
  if (file.size() < sizeof(Header)) throw Refusal("it is no macOS executable");
  if (bigEndian(valueAt<std::uint32_t>(file, 0, "")) != universalMagic) return file;
  const std::uint32_t count = bigEndian(valueAt<std::uint32_t>(file, 4, ""));
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto found = valueAt<UniversalPart>(file, 8 + i * sizeof(UniversalPart), "its table of halves");
    if (!runsOn(processor, bigEndian(found.processor), bigEndian(found.subtype))) continue;
    return part(file, bigEndian(found.offset), bigEndian(found.size), "a half");
  }
  throw Refusal("it has no half for this processor");
}

class Parser {
 public:
  explicit Parser(Bytes half) : half_(half) {}

  MachO parse(Processor processor) {
    const auto header = valueAt<Header>(half_, 0, "the header");
    if (header.magic != magic64) throw Refusal("it is no macOS executable");
    if (!runsOn(processor, header.processor, header.subtype)) {
      throw Refusal("it is for another processor than this one");
    }
    if (header.fileType != executableFile) throw Refusal("it is a Mach-O file, but no executable");
    Bytes commands = part(half_, sizeof header, header.commandBytes, "the list of load commands");
    for (std::uint32_t i = 0; i < header.commandCount; ++i) {
      const auto size = valueAt<std::uint32_t>(commands, 4, "a load command");
      if (size < 8) throw Refusal("it is damaged: a load command without a size");
      readCommand(part(commands, 0, size, "a load command"));
      commands = commands.subspan(size);
    }
    finish();
    return image_;
  }

 private:
  void readCommand(Bytes command) {
    const auto kind = valueAt<std::uint32_t>(command, 0, "");
    if (kind == segment64) readSegment(command);
    if (kind == dyldInfo) readDyldInfo(valueAt<DyldInfoCommand>(command, 0, linkerData));
    if (kind == functionStarts) readFunctionStarts(command);
    if (kind == mainEntry) entryOffset_ = valueAt<std::uint64_t>(command, 8, "the address of main");
    if ((kind & mustBeKnown) != 0 && kind != dyldInfo && kind != mainEntry) {
      throw Refusal("its load command " + std::to_string(kind & ~mustBeKnown) +
                    ", which dyld must know, is unknown here");
    }
  }

  void readSegment(Bytes bytes) {
    const auto command = valueAt<SegmentCommand>(bytes, 0, "a segment");
    Segment& segment = image_.segments.emplace_back();
    segment.name = toText(command.name);
    segment.address = command.address;
    segment.size = command.size;
    segment.content = part(half_, command.fileOffset, command.fileSize, "a segment");
    if (command.fileSize != 0 &&
        command.fileOffset < std::exchange(contentEnd_, command.fileOffset + command.fileSize)) {
      throw Refusal("it is damaged: the content of segment " + segment.name);
    }
    segment.isWritable = (command.protection & 2U) != 0;
    segment.isExecutable = (command.protection & 4U) != 0;
    segment.isConstant = (command.flags & 0x10U) != 0;  // SG_READ_ONLY
    if (segment.content.size() > segment.size || segment.address + segment.size < segment.address) {
      throw Refusal("it is damaged: the size of segment " + segment.name);
    }
    if (bytes.size() != sizeof command + std::uint64_t{command.sectionCount} * sizeof(SectionHeader)) {
      throw Refusal("it is damaged: the number of sections in segment " + segment.name);
    }
    for (std::uint64_t i = 0; i < command.sectionCount; ++i) {
      readSection(valueAt<SectionHeader>(bytes, sizeof command + i * sizeof(SectionHeader), "a section"));
    }
  }

  void readSection(const SectionHeader& header) {
    const std::string name = toText(header.name);
    if (knownSections.find(" " + name + " ") == std::string_view::npos) {
      throw Refusal("it has a section " + name + ", which is unknown here");
    }
    image_.sections.push_back({name, header.address, header.size});
  }

  // Numbers that tell how far each function is from the one before it.
  void readFunctionStarts(Bytes command) {
    const auto place = valueAt<std::uint32_t>(command, 8, "its list of functions");
    const auto size = valueAt<std::uint32_t>(command, 12, "its list of functions");
    const Bytes list = part(half_, place, size, "its list of functions");
    std::uint64_t offset = 0;
    for (std::size_t position = 0; position < list.size();) {
      const std::uint64_t distance = readUleb(list, position);
      if (distance == 0) break;
      functions_.insert(offset += distance);
    }
  }

  void readDyldInfo(const DyldInfoCommand& info) {
    image_.rebases = part(half_, info.rebaseOffset, info.rebaseSize, linkerData);
    image_.binds = part(half_, info.bindOffset, info.bindSize, linkerData);
    image_.lazyBinds = part(half_, info.lazyOffset, info.lazySize, linkerData);
    const bool isInOrder =
        info.bindOffset >= std::uint64_t{info.rebaseOffset} + info.rebaseSize &&
        (info.lazySize == 0 || info.lazyOffset >= std::uint64_t{info.bindOffset} + info.bindSize);
    if (!isInOrder) throw Refusal(std::string("it is damaged: ") + linkerData);
    if (info.weakSize != 0) throw Refusal("it binds symbols weakly, which is unknown here");
  }

  // What only all load commands together tell.
  void finish() {
    if (!entryOffset_ || !image_.text().isExecutable) throw Refusal("it is damaged: it has no main");
    if (!functions_.empty() && !functions_.contains(*entryOffset_))
      throw Refusal("it is damaged: main is none of its functions");
    const Segment& text = image_.text();
    std::uint64_t end = 0;
    for (const Segment& segment : image_.segments) {
      if (segment.address < (segment.name == guard ? end : std::max(end, text.address))) {
        throw Refusal("it is damaged: the place of segment " + segment.name);
      }
      end = segment.address + segment.size;
    }
    std::uint64_t sectionEnd = 0;
    for (const Section& section : image_.sections) {
      if (section.address < sectionEnd || image_.findSegment(section.address, section.size) == nullptr) {
        throw Refusal("it is damaged: the place of section " + section.name);
      }
      sectionEnd = section.address + section.size;
    }
    if (end - text.address > maxImageSize || *entryOffset_ >= text.size) {
      throw Refusal("it is damaged: the size of segment __TEXT");
    }
    image_.entry = text.address + *entryOffset_;
    image_.fileSize = half_.size();
  }

  Bytes half_;
  MachO image_;
  std::uint64_t contentEnd_ = 0;  // in the file, of the last segment
  std::optional<std::uint64_t> entryOffset_;
  std::set<std::uint64_t> functions_;  // by their offsets, as that of main
};
}  // namespace

const Segment* MachO::findSegment(std::uint64_t address, std::uint64_t size) const {
  for (const Segment& segment : segments) {
    const std::uint64_t offset = address - segment.address;
    if (segment.name == guard) continue;
    if (address >= segment.address && offset <= segment.size && size <= segment.size - offset)
      return &segment;
  }
  return nullptr;
}

const Segment& MachO::text() const {
  for (const Segment& segment : segments) {
    if (segment.name == "__TEXT") return segment;
  }
  throw Refusal("it is damaged: it has no segment __TEXT");
}

std::uint64_t MachO::endAddress() const {
  return segments.empty() ? 0 : segments.back().address + segments.back().size;
}

Section MachO::section(std::string_view name) const {
  for (const Section& section : sections) {
    if (section.name == name) return section;
  }
  return {};
}

Bytes MachO::content(const Section& section) const {
  const Segment* segment = findSegment(section.address, section.size);
  if (segment == nullptr) return {};
  return part(segment->content, section.address - segment->address, section.size, "a section");
}

MachO parseMachO(Bytes file, Processor processor) {
  return Parser(halfFor(file, processor)).parse(processor);
}
}  // namespace wendle::macho
