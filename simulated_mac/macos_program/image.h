// A macOS executable in this process's memory.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulated_mac/macos_program/mach_o.h"

namespace wendle::macho {
// There is one at a time, and it stays until the process ends: its code and its classes may be in use
// anywhere.
class Image {
 public:
  // Maps the half of the file that this processor runs, sets its pointers, makes its classes and unwind
  // tables known, and runs its initialisers. Throws Refusal when it cannot be run.
  [[nodiscard]] static const Image& load(const std::string& path);

  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  [[nodiscard]] const MachO& headers() const { return headers_; }

  // Where something is that the linker gave this address.
  template <typename T = std::uint8_t>
  [[nodiscard]] T* at(std::uint64_t address) const {
    return reinterpret_cast<T*>(base_ + (address - headers_.text().address));
  }

  // The elements of a section that is an array; empty when there is none.
  template <typename T>
  [[nodiscard]] std::span<T> array(std::string_view section) const {
    const Section found = headers_.section(section);
    return {at<T>(found.address), found.size / sizeof(T)};
  }

  // Calls `main` with what the program was started with, and returns its result.
  [[nodiscard]] int runMain() const;

 private:
  explicit Image(const std::string& path);
  void map();
  void setPointers();
  void bindPointers() const;
  void protect() const;
  void registerUnwindTables() const;
  [[nodiscard]] void* framesOfDwarf() const;
  void runInitialisers() const;

  std::vector<std::uint8_t> file_;
  MachO headers_;
  std::uint8_t* base_ = nullptr;  // of __TEXT
};
}  // namespace wendle::macho
