#include "system/keychain_items.h"

#include <array>

#include "client/client_locations.h"
#include "logging/uninstaller_logger.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
namespace {

constexpr std::array labels{"Wendle", "WendleAgent", "WendleTeamManagement"};

std::optional<Error> runSecurity(const std::string& verb, const std::string& label,
                                 const std::string& keychainPath,
                                 const Stream& output = FileHandle{STDOUT_FILENO}) {
  Task task = makeConsoleTask();
  task.setStandardOutput(output);
  task.setExecutable("/usr/bin/security");
  task.setArguments({verb, "-l", label, keychainPath});
  task.launch();
  task.waitUntilExit();
  return terminationError(task);
}

}  // namespace

void deleteNeededKeychainItems() {
  uninstallerLogger().log(LogLevel::progress, "Delete needed keychain items - started");
  for (const char* label : labels) {
    deleteKeychainItems(label, clientLocations().loginKeychainPath);
  }
  uninstallerLogger().log(LogLevel::progress, "Delete needed keychain items - finished");
}

void planKeychainItems(RemovalPlan& plan) {
  for (const char* label : labels) {
    if (!runSecurity("find-generic-password", label, clientLocations().loginKeychainPath, NullStream{})) {
      plan.add({"keychain item", label, "every generic password with this label in the login keychain"});
    }
  }
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
