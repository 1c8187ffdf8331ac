#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace wendle {
struct PropertyList;

using PropertyListArray = std::vector<PropertyList>;
using PropertyListDictionary = std::map<std::string, PropertyList>;

// Seconds since 1 January 2001, 00:00 UTC.
struct PropertyListDate {
  double seconds = 0;
  friend bool operator==(const PropertyListDate&, const PropertyListDate&) = default;
};

struct PropertyListData {
  std::string bytes;
  friend bool operator==(const PropertyListData&, const PropertyListData&) = default;
};

// A property list as a value. Keeps the kinds apart that the system keeps apart: true is not 1, and 2.0 is
// not 2. Integers above the signed 64 bits are std::uint64_t, all others std::int64_t.
struct PropertyList {
  std::variant<std::string, std::int64_t, std::uint64_t, double, bool, PropertyListDate, PropertyListData,
               PropertyListArray, PropertyListDictionary>
      value;

  friend bool operator==(const PropertyList&, const PropertyList&) = default;

  // What a dictionary holds under `key`; null when this is no dictionary or has no such key.
  [[nodiscard]] const PropertyList* find(const std::string& key) const;

  // The text to which `keys` lead through dictionaries in one another; null when there is none.
  [[nodiscard]] const std::string* findText(std::initializer_list<const char*> keys) const;
};

// Equality as Foundation's isEqual: has it [D]: numbers are equal by their values, so that 1, 1.0 and true
// are one.
[[nodiscard]] bool isEqual(const PropertyList& left, const PropertyList& right);
}  // namespace wendle
