#pragma once

#include <optional>
#include <string>

#include "base/property_list.h"
#include "platform/file_url.h"

namespace wendle {

// Data that finds the item again after it was moved. None when the item does not exist. Source: NSURL,
// bookmarkDataWithOptions: with no options, no resource values and no base URL.
[[nodiscard]] std::optional<PropertyListData> bookmarkData(const FileUrl& item);

// A random identifier in its 36-character text form, upper case: 68753A44-4D6F-1226-9C60-0050E4C00067.
// Source: NSUUID. Throws std::system_error where the system has no random numbers to give.
[[nodiscard]] std::string makeUniqueIdentifier();

}  // namespace wendle
