#include "app/wendle_uninstaller.h"

#include <algorithm>
#include <string>

#include "app/modes.h"
#include "client/application_bundles.h"
#include "client/bundle_identifier.h"
#include "client/client_locations.h"
#include "client/client_removal.h"
#include "client/item_deletion.h"
#include "dock/dock_folder_removal.h"
#include "logging/issues_reporter.h"
#include "logging/logger_configurator.h"
#include "logging/uninstaller_logger.h"
#include "processes/process_termination.h"
#include "system/keychain_items.h"
#include "system/launch_agents.h"
#include "system/registrations.h"

namespace wendle {
namespace {

void note(const std::string& line) { uninstallerLogger().log(LogLevel::progress, line); }

// Runs `step` between the two lines that a mode writes around it.
template <typename Step>
void announced(const std::string& name, Step step) {
  note(name + " - started");
  step();
  note(name + " - finished");
}

void deleteFolder(const std::string& path) { deleteItem(FileUrl::fileUrlWithPath(path), deleteFolderPrefix); }

void removeWendleApp() {
  announced("Remove Wendle.app", [] { deleteFolder(wendleAppPath()); });
}

void removeVendorApps() {
  announced("Remove vendor apps directory", [] { deleteFolder(vendorAppsDirectory()); });
}

void ignoreFinderSyncExtension() {
  announced("Ignore FinderSyncExtension for removal",
            [] { ignoreExtension(rawValue(BundleIdentifier::agentFinderSyncExt)); });
}

void removeInstancesOutsideExceptions() {
  announced("Remove instances of Wendle w/ exceptions", removeInstancesWithExceptions);
}

void removeEveryInstance() { announced("Remove all instances of Wendle", removeAllInstances); }

// The stretch that the soft, hard and full modes share before the instances.
void detachFromSystem() {
  unloadLaunchAgents();
  ignoreFinderSyncExtension();
  resetPermissions(bundleIdentifierStrings(allCases()));
  killWendleProcesses();
  removeDockFolder();
}

// And the one at their end.
void removeUserData() {
  removeFolderContainers();
  deleteNeededKeychainItems();
  removeClientFolders();
}

void noteStart(Mode mode) {
  const auto* found = std::find_if(modeSwitches.begin(), modeSwitches.end(),
                                   [mode](const ModeSwitch& each) { return each.mode == mode; });
  note("Wendle Uninstaller - started in " + std::string(found->nameInLog) + " mode");
}

void sayGoodbye() { note("Removal Completed - 😔 Sorry to see you go. 😔"); }

}  // namespace

WendleUninstaller::WendleUninstaller() {
  IssuesReporter& reporter = IssuesReporter::sharedInstance();
  reporter.setMessageLogger(
      [](const std::string& message) { Logger::module().log(LogLevel::progress, message); });
  reporter.setSortedLogFilesProvider(LoggerFileManager::getSortedLogFiles);
  reporter.enableReporter();
}

void WendleUninstaller::runInUpdatesMode() {
  const auto searchExtension = bundleIdentifierStrings({BundleIdentifier::searchExtension});
  noteStart(Mode::updates);
  killWendleLegacyProcesses(searchExtension);
  unloadLaunchAgents();
  ignoreFinderSyncExtension();
  resetPermissions(searchExtension);
  removeDefaults(searchExtension);
  deleteItem(FileUrl::fileUrlWithPath(searchExtensionPreferencesPath()), deleteFilePrefix);
  removeLaunchAgentApps({"WendleExtension"});
}

void WendleUninstaller::runInSoftMode() {
  noteStart(Mode::soft);
  detachFromSystem();
  removeInstancesOutsideExceptions();
  removeUserData();
  sayGoodbye();
}

void WendleUninstaller::runInHardMode() {
  noteStart(Mode::hard);
  removeWendleApp();
  detachFromSystem();
  removeInstancesOutsideExceptions();
  removeVendorApps();
  removeUserData();
  sayGoodbye();
}

// Without the closing line.
void WendleUninstaller::runInFullMode() {
  noteStart(Mode::full);
  removeWendleApp();
  detachFromSystem();
  removeEveryInstance();
  removeVendorApps();
  removeUserData();
}

}  // namespace wendle
