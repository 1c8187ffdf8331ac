#include "base/property_list.h"

#include <cmath>

namespace wendle {
constexpr double twoTo63 = 9223372036854775808.0;

// A whole number becomes an integer, whatever kind it was; a double beyond 64 bits stays one.
static PropertyList withWholeNumbersAsIntegers(PropertyList list) {
  if (const auto* flag = std::get_if<bool>(&list.value)) return {std::int64_t{*flag}};
  if (const auto* number = std::get_if<double>(&list.value); number && std::trunc(*number) == *number) {
    if (-twoTo63 <= *number && *number < twoTo63) return {static_cast<std::int64_t>(*number)};
    if (twoTo63 <= *number && *number < 2 * twoTo63) return {static_cast<std::uint64_t>(*number)};
  } else if (auto* array = std::get_if<PropertyListArray>(&list.value)) {
    for (PropertyList& element : *array) element = withWholeNumbersAsIntegers(std::move(element));
  } else if (auto* dictionary = std::get_if<PropertyListDictionary>(&list.value)) {
    for (auto& [key, entry] : *dictionary) entry = withWholeNumbersAsIntegers(std::move(entry));
  }
  return list;
}

const PropertyList* PropertyList::find(const std::string& key) const {
  const auto* dictionary = std::get_if<PropertyListDictionary>(&value);
  if (dictionary == nullptr) return nullptr;
  const auto found = dictionary->find(key);
  return found == dictionary->end() ? nullptr : &found->second;
}

const std::string* PropertyList::findText(std::initializer_list<const char*> keys) const {
  const PropertyList* list = this;
  for (const char* key : keys) list = list == nullptr ? nullptr : list->find(key);
  return list == nullptr ? nullptr : std::get_if<std::string>(&list->value);
}

bool isEqual(const PropertyList& left, const PropertyList& right) {
  return withWholeNumbersAsIntegers(left) == withWholeNumbersAsIntegers(right);
}
}  // namespace wendle
