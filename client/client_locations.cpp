#include "client/client_locations.h"

#include "client/bundle_identifier.h"
#include "platform/standard_directories.h"

namespace wendle {
namespace {

std::string plistIn(const std::string& directory, BundleIdentifier identifier) {
  return directory + "/" + rawValue(identifier) + ".plist";
}

}  // namespace

std::string firstOr(const std::vector<std::string>& paths, const std::string& fallback) {
  return paths.empty() ? fallback : paths.front();
}

const std::string& homeDirectory() {
  static const std::string path = homeDirectoryPath();
  return path;
}

const std::string& libraryDirectory() {
  static const std::string path =
      firstOr(standardDirectoryPaths(StandardDirectory::userLibrary), homeDirectory() + "/Library");
  return path;
}

const std::string& applicationSupportDirectory() {
  static const std::string path = firstOr(standardDirectoryPaths(StandardDirectory::userApplicationSupport),
                                          libraryDirectory() + "/Application Support");
  return path;
}

const std::string& usersDirectory() {
  static const std::string path = firstOr(standardDirectoryPaths(StandardDirectory::localUsers), "/Users");
  return path;
}

const std::string& applicationsDirectory() {
  static const std::string path =
      firstOr(standardDirectoryPaths(StandardDirectory::localApplications), "/Applications");
  return path;
}

const std::string& wendleSupportDirectory() {
  static const std::string path = applicationSupportDirectory() + "/Wendle";
  return path;
}

const std::string& wendleLaunchAgentsDirectory() {
  static const std::string path = wendleSupportDirectory() + "/LaunchAgents";
  return path;
}

const std::string& containersDirectory() {
  static const std::string path = libraryDirectory() + "/Containers";
  return path;
}

const std::string& keychainsDirectory() {
  static const std::string path = libraryDirectory() + "/Keychains";
  return path;
}

const std::string& loginKeychainPath() {
  static const std::string path = keychainsDirectory() + "/login.keychain";
  return path;
}

const std::string& quickLookDirectory() {
  static const std::string path = libraryDirectory() + "/QuickLook";
  return path;
}

const std::string& quickLookGeneratorPath() {
  static const std::string path = quickLookDirectory() + "/WendleQL.qlgenerator";
  return path;
}

const std::string& launchAgentsDirectory() {
  static const std::string path = libraryDirectory() + "/LaunchAgents";
  return path;
}

const std::string& launcherLaunchAgentPath() {
  static const std::string path = plistIn(launchAgentsDirectory(), BundleIdentifier::launcher);
  return path;
}

const std::string& agentLaunchAgentPath() {
  static const std::string path = plistIn(launchAgentsDirectory(), BundleIdentifier::agent);
  return path;
}

const std::string& updaterLaunchAgentPath() {
  static const std::string path = plistIn(launchAgentsDirectory(), BundleIdentifier::updater);
  return path;
}

const std::string& assistantLaunchAgentPath() {
  static const std::string path = plistIn(launchAgentsDirectory(), BundleIdentifier::assistant);
  return path;
}

const std::string& searchExtensionLaunchAgentPath() {
  static const std::string path = plistIn(launchAgentsDirectory(), BundleIdentifier::searchExtension);
  return path;
}

const std::string& preferencesDirectory() {
  static const std::string path = libraryDirectory() + "/Preferences";
  return path;
}

const std::string& desktopPreferencesPath() {
  static const std::string path = plistIn(preferencesDirectory(), BundleIdentifier::desktop);
  return path;
}

const std::string& launcherPreferencesPath() {
  static const std::string path = plistIn(preferencesDirectory(), BundleIdentifier::launcher);
  return path;
}

const std::string& agentPreferencesPath() {
  static const std::string path = plistIn(preferencesDirectory(), BundleIdentifier::agent);
  return path;
}

const std::string& updaterPreferencesPath() {
  static const std::string path = plistIn(preferencesDirectory(), BundleIdentifier::updater);
  return path;
}

const std::string& assistantPreferencesPath() {
  static const std::string path = plistIn(preferencesDirectory(), BundleIdentifier::assistant);
  return path;
}

const std::string& searchExtensionPreferencesPath() {
  static const std::string path = plistIn(preferencesDirectory(), BundleIdentifier::searchExtension);
  return path;
}

const std::string& sharedUsersDirectory() {
  static const std::string path = usersDirectory() + "/Shared";
  return path;
}

const std::string& sharedWendleDirectory() {
  static const std::string path = sharedUsersDirectory() + "/Wendle";
  return path;
}

const std::string& vendorAppsDirectory() {
  static const std::string path = applicationsDirectory() + "/Wendle";
  return path;
}

const std::string& wendleAppPath() {
  static const std::string path = applicationsDirectory() + "/Wendle.app";
  return path;
}

std::vector<std::string> launchAgentPaths() {
  return {updaterLaunchAgentPath(), agentLaunchAgentPath(),     launcherLaunchAgentPath(),
          quickLookGeneratorPath(), assistantLaunchAgentPath(), searchExtensionLaunchAgentPath()};
}

std::vector<std::string> preferenceFilePaths() {
  return {desktopPreferencesPath(), launcherPreferencesPath(),  agentPreferencesPath(),
          updaterPreferencesPath(), assistantPreferencesPath(), searchExtensionPreferencesPath()};
}

}  // namespace wendle
