#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

#include "base/property_list.h"

namespace wendle {
// Never nil: bytes that are no UTF-8 are read as ISO Latin 1, which knows every byte.
[[nodiscard]] NSString* toNSString(std::string_view text);

// Empty for nil.
[[nodiscard]] std::string toUtf8(NSString* text);

// Both ways keep every kind and value: what went there and back is equal.

[[nodiscard]] id toFoundation(const PropertyList& list);

// None for an object that is no property list, or holds one that is none; none for nil.
[[nodiscard]] std::optional<PropertyList> toPropertyList(id object);
}  // namespace wendle
