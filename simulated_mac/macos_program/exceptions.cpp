// Exceptions. The program's C++ library, which is inside it, raises them and finds its handlers through these
// functions of the "C++ ABI for Itanium: Exception Handling", level I, which macOS's unwinder and GCC's have
// in common. GCC's takes the frames down, the program's own by the tables that were made from its
// __unwind_info.
#include <unwind.h>

#include "simulated_mac/macos_program/imports.h"

namespace wendle::macho {
Imports exceptionImports() {
  static const Import imports[] = {
      provide("__Unwind_RaiseException", _Unwind_RaiseException),
      provide("__Unwind_Resume", _Unwind_Resume),
      provide("__Unwind_DeleteException", _Unwind_DeleteException),
      provide("__Unwind_GetIP", _Unwind_GetIP),
      provide("__Unwind_SetIP", _Unwind_SetIP),
      provide("__Unwind_SetGR", _Unwind_SetGR),
      provide("__Unwind_GetRegionStart", _Unwind_GetRegionStart),
      provide("__Unwind_GetLanguageSpecificData", _Unwind_GetLanguageSpecificData),
  };
  return imports;
}
}  // namespace wendle::macho
