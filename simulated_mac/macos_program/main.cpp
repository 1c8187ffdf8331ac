// macos_program EXECUTABLE [ARGUMENT...]: runs a macOS executable in this process. Its exit status is the
// executable's; 2, with a sentence, when the executable cannot be run. To be used inside a simulated Mac
// only.
#include <cstdlib>

#include "simulated_mac/macos_program/image.h"
#include "simulated_mac/macos_program/objective_c.h"
#include "simulated_mac/macos_program/start.h"

namespace wendle::macho {
static const Image& loadOrRefuse() {
  if (start().argumentCount < 1) refuse("the path of a macOS executable is needed");
  const std::string path = start().arguments[0];
  try {
    startFoundation();
    return Image::load(path);
  } catch (const Refusal& refusal) {
    refuse(path + " cannot be run: " + refusal.what());
  }
}
}  // namespace wendle::macho

// What the program throws must find its own handlers: nothing here catches it.
int main() { std::exit(wendle::macho::loadOrRefuse().runMain()); }
