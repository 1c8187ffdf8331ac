#include "base/property_list.h"

namespace wendle {

const PropertyList* PropertyList::find(const std::string& key) const {
  const auto* dictionary = std::get_if<PropertyListDictionary>(&value);
  if (dictionary == nullptr) return nullptr;
  const auto found = dictionary->find(key);
  return found == dictionary->end() ? nullptr : &found->second;
}

}  // namespace wendle
