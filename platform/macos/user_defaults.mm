#include "platform/user_defaults.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_property_list.h"
#include "platform/macos/foundation_text.h"

namespace wendle {
namespace {

NSUserDefaults* defaultsOf(const std::string& domain) {
  return [[NSUserDefaults alloc] initWithSuiteName:foundationText(domain)];
}

}  // namespace

std::optional<PropertyList> UserDefaults::objectForKey(const std::string& key) const {
  if (const auto found = unwritten_.find(key); found != unwritten_.end()) return found->second;
  @autoreleasepool {
    return propertyListOf([defaultsOf(domain_) objectForKey:foundationText(key)]);
  }
}

void UserDefaults::setObject(const PropertyList& value, const std::string& key) {
  unwritten_.insert_or_assign(key, value);
}

bool UserDefaults::synchronize() {
  @autoreleasepool {
    NSUserDefaults* defaults = defaultsOf(domain_);
    for (const auto& [key, value] : unwritten_) {
      [defaults setObject:foundationObject(value) forKey:foundationText(key)];
    }
    if (![defaults synchronize]) return false;
    unwritten_.clear();
    return true;
  }
}

}  // namespace wendle
