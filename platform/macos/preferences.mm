#include "platform/preferences.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_values.h"

namespace wendle {
namespace {

NSUserDefaults* defaultsForDomain(const std::string& domain) {
  return [[NSUserDefaults alloc] initWithSuiteName:toNSString(domain)];
}

}  // namespace

std::optional<PropertyList> UserDefaults::objectForKey(const std::string& key) const {
  if (const auto found = unwritten_.find(key); found != unwritten_.end()) return found->second;
  @autoreleasepool {
    return toPropertyList([defaultsForDomain(domain_) objectForKey:toNSString(key)]);
  }
}

void UserDefaults::setObject(const PropertyList& value, const std::string& key) {
  unwritten_.insert_or_assign(key, value);
}

bool UserDefaults::synchronize() {
  @autoreleasepool {
    NSUserDefaults* defaults = defaultsForDomain(domain_);
    for (const auto& [key, value] : unwritten_) {
      [defaults setObject:toFoundation(value) forKey:toNSString(key)];
    }
    if (![defaults synchronize]) return false;
    unwritten_.clear();
    return true;
  }
}

}  // namespace wendle
