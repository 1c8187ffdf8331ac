#include "app/modes.h"

#include <algorithm>

#include "client/application_bundles.h"
#include "client/bundle_identifier.h"
#include "client/client_locations.h"
#include "client/client_removal.h"
#include "dock/dock_folder_removal.h"
#include "logging/logger.h"
#include "processes/process_termination.h"
#include "system/keychain_items.h"
#include "system/launch_agents.h"
#include "system/registrations.h"

namespace wendle {
namespace {

// What a step does, and what it would do.
struct Step {
  void (*run)();
  void (*plan)(RemovalPlan& plan);
};

std::vector<std::string> everyIdentifier() { return bundleIdentifierStrings(allCases()); }
std::vector<std::string> searchExtension() {
  return bundleIdentifierStrings({BundleIdentifier::searchExtension});
}
const std::vector<std::string> searchExtensionApps{"WendleExtension"};

constexpr Step wendleApp{
    [] {
      logStartFinish("Remove Wendle.app", [] {
        deleteItem(FileUrl::fileUrlWithPath(clientLocations().wendleAppPath), deleteFolderPrefix);
      });
    },
    [](RemovalPlan& plan) { plan.addPath(clientLocations().wendleAppPath, "the client"); }};

constexpr Step launchAgents{unloadLaunchAgents, planLaunchAgents};

constexpr Step finderSyncExtension{
    [] {
      logStartFinish("Ignore FinderSyncExtension for removal",
                     [] { ignoreExtension(rawValue(BundleIdentifier::agentFinderSyncExt)); });
    },
    [](RemovalPlan& plan) { planIgnoredExtension(plan, rawValue(BundleIdentifier::agentFinderSyncExt)); }};

constexpr Step permissions{[] { resetPermissions(everyIdentifier()); },
                           [](RemovalPlan& plan) { planPermissions(plan, everyIdentifier()); }};

constexpr Step processes{killWendleProcesses, planProcessTermination};

constexpr Step dockFolder{removeDockFolder, planDockFolder};

constexpr Step instancesOutsideExceptions{
    [] { logStartFinish("Remove instances of Wendle w/ exceptions", removeInstancesWithExceptions); },
    planInstancesWithExceptions};

constexpr Step everyInstance{[] { logStartFinish("Remove all instances of Wendle", removeAllInstances); },
                             planAllInstances};

constexpr Step vendorApps{[] {
                            logStartFinish("Remove vendor apps directory", [] {
                              deleteItem(FileUrl::fileUrlWithPath(clientLocations().vendorAppsDirectory),
                                         deleteFolderPrefix);
                            });
                          },
                          [](RemovalPlan& plan) {
                            plan.addPath(clientLocations().vendorAppsDirectory, "the vendor's applications");
                          }};

constexpr Step containers{removeFolderContainers, planFolderContainers};

constexpr Step keychainItems{deleteNeededKeychainItems, planKeychainItems};

constexpr Step clientFolders{removeClientFolders, planClientFolders};

constexpr Step goodbye{[] { logProgress("Removal Completed - 😔 Sorry to see you go. 😔"); },
                       [](RemovalPlan&) {}};

constexpr Step legacyProcesses{[] { killWendleLegacyProcesses(searchExtension()); },
                               [](RemovalPlan& plan) { planLegacyProcesses(plan, searchExtension()); }};

constexpr Step searchExtensionPermissions{
    [] { resetPermissions(searchExtension()); },
    [](RemovalPlan& plan) { planPermissions(plan, searchExtension()); }};

constexpr Step searchExtensionDefaults{[] { removeDefaults(searchExtension()); },
                                       [](RemovalPlan& plan) { planDefaults(plan, searchExtension()); }};

constexpr Step searchExtensionPreferences{
    [] {
      deleteItem(FileUrl::fileUrlWithPath(clientLocations().searchExtensionPreferencesPath),
                 deleteFilePrefix);
    },
    [](RemovalPlan& plan) {
      plan.addPath(clientLocations().searchExtensionPreferencesPath, "the search extension's preferences");
    }};

constexpr Step searchExtensionApp{[] { removeLaunchAgentApps(searchExtensionApps); },
                                  [](RemovalPlan& plan) { planLaunchAgentApps(plan, searchExtensionApps); }};

// The full mode has no closing line.
std::vector<Step> modeSteps(Mode mode) {
  switch (mode) {
    case Mode::updates:
      return {legacyProcesses,         launchAgents,
              finderSyncExtension,     searchExtensionPermissions,
              searchExtensionDefaults, searchExtensionPreferences,
              searchExtensionApp};
    case Mode::soft:
      return {
          launchAgents, finderSyncExtension, permissions,   processes, dockFolder, instancesOutsideExceptions,
          containers,   keychainItems,       clientFolders, goodbye};
    case Mode::hard:
      return {wendleApp,
              launchAgents,
              finderSyncExtension,
              permissions,
              processes,
              dockFolder,
              instancesOutsideExceptions,
              vendorApps,
              containers,
              keychainItems,
              clientFolders,
              goodbye};
    case Mode::full:
      return {wendleApp,     launchAgents, finderSyncExtension, permissions,   processes,    dockFolder,
              everyInstance, vendorApps,   containers,          keychainItems, clientFolders};
  }
  return {};
}

const ModeSwitch& switchEntry(Mode mode) { return *std::ranges::find(modeSwitches, mode, &ModeSwitch::mode); }

}  // namespace

std::string modeSwitch(Mode mode) { return std::string(switchEntry(mode).argument); }

std::optional<Mode> chosenMode(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    for (const ModeSwitch& modeSwitch : modeSwitches) {
      if (argument == modeSwitch.argument) return modeSwitch.mode;
    }
  }
  return std::nullopt;
}

void runSteps(Mode mode) {
  logProgress("Wendle Uninstaller - started in " + std::string(switchEntry(mode).nameInLog) + " mode");
  for (const Step& step : modeSteps(mode)) step.run();
}

RemovalPlan planMode(Mode mode) {
  RemovalPlan plan;
  for (const Step& step : modeSteps(mode)) step.plan(plan);
  return plan;
}

}  // namespace wendle
