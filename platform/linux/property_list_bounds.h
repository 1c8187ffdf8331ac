#pragma once

#include <string_view>

namespace wendle {

inline constexpr int maxPropertyListLevels = 512;  // of arrays and dictionaries in one another

// Whether libplist reads and frees these bytes in bounded memory and stack. It goes down by recursion, and
// reads what a binary list refers to twice, twice: a few hundred bytes can stand for more than any memory
// holds. Of bytes that are no property list it may say either.
[[nodiscard]] bool isBoundedXml(std::string_view bytes);
[[nodiscard]] bool isBoundedBinary(std::string_view bytes);

}  // namespace wendle
