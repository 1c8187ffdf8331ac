#include "system/keychain_items.h"

#include <array>

#include "client/client_locations.h"
#include "logging/logger.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
constexpr std::array labels{"Wendle", "WendleAgent", "WendleTeamManagement"};

static Status runSecurity(const std::string& verb, const std::string& label, const std::string& keychainPath,
                          const Stream& output = FileHandle{STDOUT_FILENO}) {
  Task task = makeConsoleTask();
  task.setStandardOutput(output);
  run(task, "/usr/bin/security", {verb, "-l", label, keychainPath});
  return terminationError(task);
}

void deleteNeededKeychainItems() {
  logStartFinish("Delete needed keychain items", [] {
    for (const char* label : labels) deleteKeychainItems(label, clientLocations().loginKeychainPath);
  });
}

void planKeychainItems(RemovalPlan& plan) {
  for (const char* label : labels) {
    const std::string& keychainPath = clientLocations().loginKeychainPath;
    if (runSecurity("find-generic-password", label, keychainPath, NullStream{}).ok()) {
      plan.add({"keychain item", label, "every generic password with this label in the login keychain"});
    }
  }
}

void deleteKeychainItems(const std::string& label, const std::string& keychainPath) {
  const std::string message = "Delete Keychain Item - " + label + " - at " + keychainPath;
  while (keychainItemExists(label, keychainPath)) {
    const Status status = runSecurity("delete-generic-password", label, keychainPath);
    if (!status.ok()) return uninstallerLogger().log(status.error(), message);
    logProgress(message + " - success");
  }
}

bool keychainItemExists(const std::string& label, const std::string& keychainPath) {
  return runSecurity("find-generic-password", label, keychainPath).ok();
}
}  // namespace wendle
