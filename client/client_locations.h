#pragma once

#include <string>
#include <vector>

#include "client/bundle_identifier.h"
#include "platform/process_environment.h"

namespace wendle {
// Every place where the client keeps files: paths without a slash at the end. Nothing need exist there.
class ClientLocations {
 public:
  const std::string libraryDirectory = standardDirectoryPath(StandardDirectory::userLibrary);

 private:
  const std::string applicationSupportDirectory =
      standardDirectoryPath(StandardDirectory::userApplicationSupport);
  const std::string usersDirectory = standardDirectoryPath(StandardDirectory::localUsers);
  const std::string applicationsDirectory = standardDirectoryPath(StandardDirectory::localApplications);
  const std::string keychainsDirectory = libraryDirectory + "/Keychains";
  const std::string quickLookDirectory = libraryDirectory + "/QuickLook";
  const std::string launchAgentsDirectory = libraryDirectory + "/LaunchAgents";
  const std::string sharedUsersDirectory = usersDirectory + "/Shared";

 public:
  // In the application support directory
  const std::string wendleSupportDirectory = applicationSupportDirectory + "/Wendle";
  const std::string wendleLaunchAgentsDirectory = wendleSupportDirectory + "/LaunchAgents";

  // In the library directory
  const std::string containersDirectory = libraryDirectory + "/Containers";
  const std::string loginKeychainPath = keychainsDirectory + "/login.keychain";
  const std::string quickLookGeneratorPath = quickLookDirectory + "/WendleQL.qlgenerator";
  const std::string launcherLaunchAgentPath = launchAgent(BundleIdentifier::launcher);
  const std::string agentLaunchAgentPath = launchAgent(BundleIdentifier::agent);
  const std::string updaterLaunchAgentPath = launchAgent(BundleIdentifier::updater);
  const std::string assistantLaunchAgentPath = launchAgent(BundleIdentifier::assistant);
  const std::string searchExtensionLaunchAgentPath = launchAgent(BundleIdentifier::searchExtension);
  const std::string preferencesDirectory = libraryDirectory + "/Preferences";
  const std::string desktopPreferencesPath = preferences(BundleIdentifier::desktop);
  const std::string launcherPreferencesPath = preferences(BundleIdentifier::launcher);
  const std::string agentPreferencesPath = preferences(BundleIdentifier::agent);
  const std::string updaterPreferencesPath = preferences(BundleIdentifier::updater);
  const std::string assistantPreferencesPath = preferences(BundleIdentifier::assistant);
  const std::string searchExtensionPreferencesPath = preferences(BundleIdentifier::searchExtension);

  // Outside the home directory
  const std::string sharedWendleDirectory = sharedUsersDirectory + "/Wendle";
  const std::string vendorAppsDirectory = applicationsDirectory + "/Wendle";
  const std::string wendleAppPath = applicationsDirectory + "/Wendle.app";

  // What the agent unloading goes through, in this order. The Quick Look generator is among them although it
  // is no launch agent.
  const std::vector<std::string> launchAgentPaths{updaterLaunchAgentPath,   agentLaunchAgentPath,
                                                  launcherLaunchAgentPath,  quickLookGeneratorPath,
                                                  assistantLaunchAgentPath, searchExtensionLaunchAgentPath};

  // The client's preference files, in the order of their removal.
  const std::vector<std::string> preferenceFilePaths{
      desktopPreferencesPath, launcherPreferencesPath,  agentPreferencesPath,
      updaterPreferencesPath, assistantPreferencesPath, searchExtensionPreferencesPath};

 private:
  std::string launchAgent(BundleIdentifier identifier) const {
    return launchAgentsDirectory + "/" + rawValue(identifier) + ".plist";
  }
  std::string preferences(BundleIdentifier identifier) const {
    return preferencesDirectory + "/" + rawValue(identifier) + ".plist";
  }
};

// Built at the first call, whichever thread makes it, and then kept for the life of the process.
[[nodiscard]] inline const ClientLocations& clientLocations() {
  static const ClientLocations locations;
  return locations;
}

// Traces of the client that no mode takes away: what the system keeps for its applications in Caches,
// HTTPStorages, Group Containers, Saved Application State, Application Scripts and the like, preferences on
// no mode's list, the installer's receipts, and the uninstaller's own logs. Paths, directory by directory,
// sorted within each; empty when nothing is there, and nothing of a directory that cannot be read.
[[nodiscard]] std::vector<std::string> findClientTraces();
}  // namespace wendle
