#pragma once

#include <string>
#include <vector>

namespace wendle {

// Every place where the client keeps files. Path texts without a slash at the end, each built on first use
// and then kept for the life of the process; nothing need exist there. Safe to ask from any thread.

const std::string& homeDirectory();                // /Users/u
const std::string& libraryDirectory();             // /Users/u/Library
const std::string& applicationSupportDirectory();  // /Users/u/Library/Application Support
const std::string& usersDirectory();               // /Users
const std::string& applicationsDirectory();        // /Applications

// In the application support directory
const std::string& wendleSupportDirectory();       // .../Wendle
const std::string& wendleLaunchAgentsDirectory();  // .../Wendle/LaunchAgents

// In the library directory
const std::string& containersDirectory();      // .../Containers
const std::string& keychainsDirectory();       // .../Keychains
const std::string& loginKeychainPath();        // .../Keychains/login.keychain
const std::string& quickLookDirectory();       // .../QuickLook
const std::string& quickLookGeneratorPath();   // .../QuickLook/WendleQL.qlgenerator
const std::string& launchAgentsDirectory();    // .../LaunchAgents
const std::string& launcherLaunchAgentPath();  // .../LaunchAgents/<identifier>.plist, like the next four
const std::string& agentLaunchAgentPath();
const std::string& updaterLaunchAgentPath();
const std::string& assistantLaunchAgentPath();
const std::string& searchExtensionLaunchAgentPath();
const std::string& preferencesDirectory();    // .../Preferences
const std::string& desktopPreferencesPath();  // .../Preferences/<identifier>.plist, like the next five
const std::string& launcherPreferencesPath();
const std::string& agentPreferencesPath();
const std::string& updaterPreferencesPath();
const std::string& assistantPreferencesPath();
const std::string& searchExtensionPreferencesPath();

// Outside the home directory
const std::string& sharedUsersDirectory();   // /Users/Shared
const std::string& sharedWendleDirectory();  // /Users/Shared/Wendle
const std::string& vendorAppsDirectory();    // /Applications/Wendle
const std::string& wendleAppPath();          // /Applications/Wendle.app

// What the agent unloading goes through, in this order. The Quick Look generator is among them although it is
// no launch agent.
[[nodiscard]] std::vector<std::string> launchAgentPaths();

// The client's preference files, in the order of their removal.
[[nodiscard]] std::vector<std::string> preferenceFilePaths();

// The first of the paths the system names, or `fallback` when it names none.
[[nodiscard]] std::string firstOr(const std::vector<std::string>& paths, const std::string& fallback);

}  // namespace wendle
