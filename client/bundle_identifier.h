#pragma once

#include <string>
#include <vector>

namespace wendle {
// The client's components.
enum class BundleIdentifier {
  desktop,
  agent,
  launcher,
  updater,
  assistant,
  uninstaller,
  agentFinderSyncExt,
  searchExtension,
};

// In declaration order, which others can see: permissions are reset in it.
[[nodiscard]] const std::vector<BundleIdentifier>& allCases();

// The identifier as the system knows it: com.wendle.DesktopClient.WendleAgent
[[nodiscard]] std::string rawValue(BundleIdentifier identifier);

// The strings of `identifiers`, in the same order, duplicates kept.
[[nodiscard]] std::vector<std::string> bundleIdentifierStrings(
    const std::vector<BundleIdentifier>& identifiers);
}  // namespace wendle
