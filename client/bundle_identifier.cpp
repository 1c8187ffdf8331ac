#include "client/bundle_identifier.h"

namespace wendle {
const std::vector<BundleIdentifier>& allCases() {
  using enum BundleIdentifier;
  static const std::vector<BundleIdentifier> cases{
      desktop, agent, launcher, updater, assistant, uninstaller, agentFinderSyncExt, searchExtension};
  return cases;
}

std::string rawValue(BundleIdentifier identifier) {
  switch (identifier) {
    case BundleIdentifier::desktop:
      return "com.wendle.DesktopClient";
    case BundleIdentifier::agent:
      return "com.wendle.DesktopClient.WendleAgent";
    case BundleIdentifier::launcher:
      return "com.wendle.DesktopClient.WendleLauncher";
    case BundleIdentifier::updater:
      return "com.wendle.DesktopClient.WendleUpdater";
    case BundleIdentifier::assistant:
      return "com.wendle.DesktopClient.WendleAssistant";
    case BundleIdentifier::uninstaller:
      return "com.wendle.DesktopClient.WendleUninstaller";
    case BundleIdentifier::agentFinderSyncExt:
      return "com.wendle.DesktopClient.WendleAgent.FinderSyncExt";
    case BundleIdentifier::searchExtension:
      return "com.wendle.DesktopClient.WendleExtension";
  }
  return {};
}

std::vector<std::string> bundleIdentifierStrings(const std::vector<BundleIdentifier>& identifiers) {
  std::vector<std::string> strings;
  for (const BundleIdentifier identifier : identifiers) strings.push_back(rawValue(identifier));
  return strings;
}
}  // namespace wendle
