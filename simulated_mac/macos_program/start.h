// What the program is started with.
#pragma once

namespace wendle::macho {
// In the form in which `main` gets it; the executable's path is the first argument.
struct Start {
  int argumentCount = 0;
  char** arguments = nullptr;
  char** environment = nullptr;
};

// Of this process, whose own first argument is the executable; as it was before GNUstep saw it.
[[nodiscard]] Start& start();
}  // namespace wendle::macho
