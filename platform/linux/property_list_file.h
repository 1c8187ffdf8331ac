#pragma once

#include <optional>
#include <string>

#include "base/property_list.h"

namespace wendle {

enum class PropertyListFormat { xml, binary };

struct PropertyListFile {
  PropertyList content;
  PropertyListFormat format = PropertyListFormat::binary;
};

// None for text that is no property list, holds a kind that PropertyList does not know, or would take
// unbounded stack or memory (platform/linux/property_list_bounds.h).
[[nodiscard]] std::optional<PropertyListFile> parsePropertyList(const std::string& bytes);

[[nodiscard]] std::string serialized(const PropertyListFile& file);

}  // namespace wendle
