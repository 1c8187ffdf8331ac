#include "simulated_mac/macos_program/image.h"

#include <sys/mman.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "simulated_mac/macos_program/call_frames.h"
#include "simulated_mac/macos_program/fixups.h"
#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/objective_c.h"
#include "simulated_mac/macos_program/start.h"

extern "C" void registerFrames(void** lists) asm("__register_frame_table");  // of GCC's unwinder

namespace wendle::macho {
namespace {
const Image* loadedImage = nullptr;

std::vector<std::uint8_t> readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file || bytes.empty()) throw Refusal("it cannot be read");
  return bytes;
}

int protection(const Segment& segment) {
  const bool isWritable = segment.isWritable && !segment.isConstant;
  return PROT_READ | (isWritable ? PROT_WRITE : 0) | (segment.isExecutable ? PROT_EXEC : 0);
}

// dyld_stub_binder, the function to which the pointers of functions that nothing stands for still lead. What
// is on the stack was put there by the image's section __stub_helper: the place of the function in the list
// of lazy binds.
extern "C" [[noreturn]] void refuseLazyBind(std::uint64_t offset) {
  MachO list = loadedImage->headers();
  list.lazyBinds = list.lazyBinds.subspan(offset);
  refuse("nothing stands for " + lazyBinds(list).at(0).symbol + ", which the program calls");
}

extern "C" void stubBinder();
#if defined(__x86_64__)
asm(".globl stubBinder\n stubBinder: movq 8(%rsp), %rdi\n andq $-16, %rsp\n call refuseLazyBind");
#elif defined(__aarch64__)
asm(".globl stubBinder\n stubBinder: ldr x0, [sp]\n bl refuseLazyBind");
#endif
}  // namespace

const Image& Image::load(const std::string& path) {
  if (loadedImage == nullptr) loadedImage = new Image(path);
  return *loadedImage;
}

Image::Image(const std::string& path) : file_(readFile(path)), headers_(parseMachO(file_, hostProcessor)) {
  loadedImage = this;
  map();
  setPointers();
  registerObjectiveC(*this);
  protect();
  registerUnwindTables();
  runInitialisers();
}

// Anywhere: a macOS executable is position-independent.
void Image::map() {
  const std::uint64_t start = headers_.text().address;
  const std::size_t size = headers_.endAddress() - start;
  void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw Refusal("there is no memory for it");
  base_ = static_cast<std::uint8_t*>(memory);
  for (const Segment& segment : headers_.segments) {
    if (segment.address >= start)
      std::copy(segment.content.begin(), segment.content.end(), at(segment.address));
  }
}

void Image::setPointers() {
  const std::uint64_t slide = reinterpret_cast<std::uint64_t>(base_) - headers_.text().address;
  for (const std::uint64_t address : rebases(headers_)) *at<std::uint64_t>(address) += slide;
  bindPointers();
}

// As dyld does it: a function that does not exist is told of when it is called, anything else at once.
void Image::bindPointers() const {
  for (const Bind& bind : binds(headers_)) {
    const void* found = bind.symbol == "dyld_stub_binder" ? reinterpret_cast<const void*>(stubBinder)
                                                          : findImport(bind.symbol);
    if (found == nullptr) throw Refusal("nothing stands for " + bind.symbol + ", which it needs");
    *at<const char*>(bind.address) = static_cast<const char*>(found) + bind.addend;
  }
  for (const Bind& bind : lazyBinds(headers_)) {
    if (const void* found = findImport(bind.symbol)) *at<const void*>(bind.address) = found;
  }
}

void Image::protect() const {
  for (const Segment& segment : headers_.segments) {
    if (segment.address < headers_.text().address || segment.size == 0) continue;
    if (::mprotect(at(segment.address), segment.size, protection(segment)) != 0) {
      throw Refusal("its segment " + segment.name + " does not fit this system's pages");
    }
  }
}

void Image::registerUnwindTables() const {
  const Section table = headers_.section("__unwind_info");
  if (table.size == 0) return;
  std::vector<UnwoundFunction> functions;
  const auto place = [&](std::uint32_t offset) {
    const bool isInside = headers_.findSegment(headers_.text().address + offset, sizeof(void*)) != nullptr;
    if (!isInside) throw Refusal("it is damaged: its unwind table leads out of it");
    return offset == 0 ? nullptr : base_ + offset;
  };
  for (const UnwindEntry& entry : parseUnwindInfo(headers_.content(table))) {
    const auto* const personality = reinterpret_cast<const void* const*>(place(entry.personalityPointer));
    functions.push_back({base_ + entry.start, entry.end - entry.start, entry.encoding,
                         place(entry.exceptionTable), personality == nullptr ? nullptr : *personality});
  }
  // Both lists at once: of two that it gets one after the other, the unwinder asks only the one that begins
  // closer to a function. It keeps them.
  static std::vector<std::uint8_t> frames;
  static std::array<void*, 3> lists{};
  frames = callFrames(functions, hostProcessor);
  lists = {frames.data(), framesOfDwarf(), nullptr};
  registerFrames(lists.data());
}

// The image's section __eh_frame; null when there is none. Zeroes must follow it, which end the list.
void* Image::framesOfDwarf() const {
  const Section found = headers_.section("__eh_frame");
  if (found.size == 0) return nullptr;
  const std::uint64_t end = found.address + found.size;
  const Segment* rest = headers_.findSegment(end, sizeof(std::uint32_t));
  if (rest == nullptr || *at<std::uint32_t>(end) != 0) throw Refusal("its section __eh_frame has no end");
  return at(found.address);
}

void Image::runInitialisers() const {
  using Initialiser = void (*)(int, char**, char**, char**);
  for (const Initialiser initialise : array<const Initialiser>("__mod_init_func")) {
    initialise(start().argumentCount, start().arguments, start().environment, start().arguments);
  }
}

int Image::runMain() const {
  using Main = int (*)(int, char**, char**, char**);
  const auto main = reinterpret_cast<Main>(at(headers_.entry));
  return main(start().argumentCount, start().arguments, start().environment, start().arguments);
}
}  // namespace wendle::macho
