#pragma once

#include <stdexcept>
#include <string>

namespace wendle::macho {
// What the loader does not do, in one sentence for the user.
struct Refusal : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// For code that the program itself calls, where nothing may be thrown: prints the sentence and ends the
// process with status 2.
[[noreturn]] void refuse(const std::string& sentence) noexcept;
}  // namespace wendle::macho
