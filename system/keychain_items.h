#pragma once

#include <string>

#include "client/removal_plan.h"

namespace wendle {
// The step "Delete needed keychain items": deletes the generic passwords with the client's three labels from
// the login keychain. All of these throw LaunchException when the security tool cannot be started. Source:
// security(1).
void deleteNeededKeychainItems();

// What it would do. It only asks which labels have an item: how many it does not know.
void planKeychainItems(RemovalPlan& plan);

// Deletes one item with that label after another until none is left or a deletion fails, which is logged. A
// label with no item, or a keychain that does not exist, is passed over silently.
void deleteKeychainItems(const std::string& label, const std::string& keychainPath);

// Whether that keychain holds a generic password with that label; not its service or account name.
[[nodiscard]] bool keychainItemExists(const std::string& label, const std::string& keychainPath);
}  // namespace wendle
