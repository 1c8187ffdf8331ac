#pragma once

#import <Foundation/Foundation.h>

#include <optional>

#include "base/property_list.h"

namespace wendle {

// Both ways keep every kind and value: what went there and back is equal.

[[nodiscard]] id foundationObject(const PropertyList& list);

// None for an object that is no property list, or holds one that is none; none for nil.
[[nodiscard]] std::optional<PropertyList> propertyListOf(id object);

}  // namespace wendle
