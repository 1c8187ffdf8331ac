#include "simulated_mac/macos_program/imports.h"

#include <unordered_map>

#include "simulated_mac/macos_program/objective_c.h"
#include "simulated_mac/macos_program/refusal.h"

namespace wendle::macho {
const void* findImport(const std::string& name) {
  static const auto table = [] {
    std::unordered_map<std::string_view, const void*> result;
    for (const Imports group :
         {fileImports(), itemFlagImports(), processImports(), cLibraryImports(), threadImports(),
          exceptionImports(), objectiveCImports(), foundationValueImports(), foundationSystemImports()}) {
      for (const Import& import : group) {
        if (!result.emplace(import.name, import.address).second)
          refuse(std::string("two functions stand for ") + import.name);
      }
    }
    return result;
  }();
  const auto found = table.find(name);
  return found != table.end() ? found->second : findClass(name);
}
}  // namespace wendle::macho
