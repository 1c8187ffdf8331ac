#pragma once

#include <map>
#include <optional>
#include <string>

#include "base/property_list.h"

namespace wendle {
// The current user's preferences of one domain, another application's as well. Source: NSUserDefaults,
// initWithSuiteName:.
class UserDefaults {
 public:
  explicit UserDefaults(std::string domain) : domain_(std::move(domain)) {}

  // The value of `key`; none when the key or the whole domain is absent, or cannot be read.
  [[nodiscard]] std::optional<PropertyList> objectForKey(const std::string& key) const;

  // Sets the value of `key`; others see it after synchronize() at the latest.
  void setObject(const PropertyList& value, const std::string& key) {
    unwritten_.insert_or_assign(key, value);
  }

  // Writes what was set and keeps all other keys as they are by then. Returns whether it could be written.
  bool synchronize();

 private:
  std::string domain_;
  std::map<std::string, PropertyList> unwritten_;
};
}  // namespace wendle
