#include "app/modes.h"

#include <algorithm>
#include <array>

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
// What a step does, what it would do, and the modes that take it, as bits.
struct Step {
  unsigned modes;
  void (*run)();
  void (*plan)(RemovalPlan& plan);
};

constexpr unsigned bit(Mode mode) { return 1U << static_cast<unsigned>(mode); }
constexpr unsigned updates = bit(Mode::updates);
constexpr unsigned soft = bit(Mode::soft);
constexpr unsigned hard = bit(Mode::hard);
constexpr unsigned full = bit(Mode::full);

std::vector<std::string> everyIdentifier() { return bundleIdentifierStrings(allCases()); }
std::vector<std::string> searchExtension() {
  return bundleIdentifierStrings({BundleIdentifier::searchExtension});
}
const std::vector<std::string> searchExtensionApps{"WendleExtension"};

// All steps, in the one order that every mode keeps. The full mode has no closing line.
constexpr std::array steps{
    Step{updates, [] { killWendleLegacyProcesses(searchExtension()); },
         [](RemovalPlan& plan) { planLegacyProcesses(plan, searchExtension()); }},
    Step{hard | full,
         [] {
           logStartFinish("Remove Wendle.app",
                          [] { deleteItem(clientLocations().wendleAppPath, deleteFolderPrefix); });
         },
         [](RemovalPlan& plan) { plan.addPath(clientLocations().wendleAppPath, "the client"); }},
    Step{updates | soft | hard | full, unloadLaunchAgents, planLaunchAgents},
    Step{updates | soft | hard | full,
         [] {
           logStartFinish("Ignore FinderSyncExtension for removal",
                          [] { ignoreExtension(rawValue(BundleIdentifier::agentFinderSyncExt)); });
         },
         [](RemovalPlan& plan) {
           planIgnoredExtension(plan, rawValue(BundleIdentifier::agentFinderSyncExt));
         }},
    Step{soft | hard | full, [] { resetPermissions(everyIdentifier()); },
         [](RemovalPlan& plan) { planPermissions(plan, everyIdentifier()); }},
    Step{soft | hard | full, killWendleProcesses, planProcessTermination},
    Step{soft | hard | full, removeDockFolder, planDockFolder},
    Step{soft | hard,
         [] { logStartFinish("Remove instances of Wendle w/ exceptions", removeInstancesWithExceptions); },
         planInstancesWithExceptions},
    Step{full, [] { logStartFinish("Remove all instances of Wendle", removeAllInstances); },
         planAllInstances},
    Step{hard | full,
         [] {
           logStartFinish("Remove vendor apps directory",
                          [] { deleteItem(clientLocations().vendorAppsDirectory, deleteFolderPrefix); });
         },
         [](RemovalPlan& plan) {
           plan.addPath(clientLocations().vendorAppsDirectory, "the vendor's applications");
         }},
    Step{soft | hard | full, removeFolderContainers, planFolderContainers},
    Step{soft | hard | full, deleteNeededKeychainItems, planKeychainItems},
    Step{soft | hard | full, removeClientFolders, planClientFolders},
    Step{soft | hard, [] { logProgress("Removal Completed - 😔 Sorry to see you go. 😔"); },
         [](RemovalPlan&) {}},
    Step{updates, [] { resetPermissions(searchExtension()); },
         [](RemovalPlan& plan) { planPermissions(plan, searchExtension()); }},
    Step{updates, [] { removeDefaults(searchExtension()); },
         [](RemovalPlan& plan) { planDefaults(plan, searchExtension()); }},
    Step{updates, [] { deleteItem(clientLocations().searchExtensionPreferencesPath, deleteFilePrefix); },
         [](RemovalPlan& plan) {
           plan.addPath(clientLocations().searchExtensionPreferencesPath,
                        "the search extension's preferences");
         }},
    Step{updates, [] { removeLaunchAgentApps(searchExtensionApps); },
         [](RemovalPlan& plan) { planLaunchAgentApps(plan, searchExtensionApps); }},
};

const ModeSwitch& switchEntry(Mode mode) { return *std::ranges::find(modeSwitches, mode, &ModeSwitch::mode); }
}  // namespace

std::string modeSwitch(Mode mode) { return std::string(switchEntry(mode).argument); }

std::optional<Mode> chosenMode(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    const auto* found = std::ranges::find(modeSwitches, argument, &ModeSwitch::argument);
    if (found != modeSwitches.end()) return found->mode;
  }
  return std::nullopt;
}

std::string startLine(Mode mode) {
  return "Wendle Uninstaller - started in " + std::string(switchEntry(mode).nameInLog) + " mode";
}

void runSteps(Mode mode) {
  logProgress(startLine(mode));
  for (const Step& step : steps) {
    if ((step.modes & bit(mode)) != 0) step.run();
  }
}

RemovalPlan planMode(Mode mode) {
  RemovalPlan plan;
  for (const Step& step : steps) {
    if ((step.modes & bit(mode)) != 0) step.plan(plan);
  }
  return plan;
}
}  // namespace wendle
