#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/property_list.h"

namespace wendle {
enum class PropertyListFormat { xml, binary };

struct PropertyListFile {
  PropertyList content;
  PropertyListFormat format = PropertyListFormat::binary;
};

// None for text that is no property list, holds a kind that PropertyList does not know, or would take
// unbounded stack or memory (see below).
[[nodiscard]] std::optional<PropertyListFile> parsePropertyList(const std::string& bytes);

[[nodiscard]] std::string serialized(const PropertyListFile& file);

inline constexpr int maxPropertyListLevels = 512;  // of arrays and dictionaries in one another

// Whether libplist reads and frees these bytes in bounded memory and stack. It goes down by recursion, and
// reads what a binary list refers to twice, twice: a few hundred bytes can stand for more than any memory
// holds. Of bytes that are no property list it may say either.
[[nodiscard]] bool isBoundedXml(std::string_view bytes);
[[nodiscard]] bool isBoundedBinary(std::string_view bytes);
}  // namespace wendle
