#include "system/keychain_items.h"

#include "client/client_locations.h"
#include "logging/uninstaller_logger.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
namespace {

std::optional<Error> runSecurity(const std::string& verb, const std::string& label,
                                 const std::string& keychainPath) {
  Task task = makeConsoleTask();
  task.setExecutable("/usr/bin/security");
  task.setArguments({verb, "-l", label, keychainPath});
  task.launch();
  task.waitUntilExit();
  return terminationError(task);
}

}  // namespace

void deleteNeededKeychainItems() {
  uninstallerLogger().log(LogLevel::progress, "Delete needed keychain items - started");
  for (const char* label : {"Wendle", "WendleAgent", "WendleTeamManagement"}) {
    deleteKeychainItems(label, loginKeychainPath());
  }
  uninstallerLogger().log(LogLevel::progress, "Delete needed keychain items - finished");
}

void deleteKeychainItems(const std::string& label, const std::string& keychainPath) {
  const std::string message = "Delete Keychain Item - " + label + " - at " + keychainPath;
  while (keychainItemExists(label, keychainPath)) {
    if (const auto error = runSecurity("delete-generic-password", label, keychainPath)) {
      return uninstallerLogger().log(*error, message);
    }
    uninstallerLogger().log(LogLevel::progress, message + " - success");
  }
}

bool keychainItemExists(const std::string& label, const std::string& keychainPath) {
  return !runSecurity("find-generic-password", label, keychainPath);
}

}  // namespace wendle
