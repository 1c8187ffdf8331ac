#pragma once

#include <optional>

#include "base/property_list.h"
#include "platform/file_url.h"

namespace wendle {

// Data that finds the item again after it was moved. None when the item does not exist. Source: NSURL,
// bookmarkDataWithOptions: with no options, no resource values and no base URL.
[[nodiscard]] std::optional<PropertyListData> bookmarkData(const FileUrl& item);

}  // namespace wendle
