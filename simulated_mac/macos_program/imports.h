// What stands for the libraries of macOS: addresses by the names under which a program imports them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace wendle::macho {
struct Import {
  const char* name;  // with the leading underscore of C
  const void* address;
};
using Imports = std::span<const Import>;

template <typename Function>
[[nodiscard]] Import provide(const char* name, Function* function) {
  return {name, reinterpret_cast<const void*>(function)};
}

// The groups; each says where its facts come from.
[[nodiscard]] Imports fileImports();
[[nodiscard]] Imports itemFlagImports();
[[nodiscard]] Imports processImports();
[[nodiscard]] Imports cLibraryImports();
[[nodiscard]] Imports threadImports();
[[nodiscard]] Imports exceptionImports();
[[nodiscard]] Imports objectiveCImports();
[[nodiscard]] Imports foundationValueImports();
[[nodiscard]] Imports foundationSystemImports();

// Null when nothing stands for it. A class of Foundation (_OBJC_CLASS_$_NSString) is GNUstep's, unless a
// group has one of its own.
[[nodiscard]] const void* findImport(const std::string& name);
}  // namespace wendle::macho
