#include "difference.h"

namespace wendle::test {
namespace {

std::string tccutil(const std::string& component) {
  return "/usr/bin/tccutil [reset] [All] [com.wendle.DesktopClient" + component + "] exit 64";
}

Difference missingTccutil() {
  Difference c{"MissingTccutil", "soft", faults({{"tccutil"}}), {}};
  for (const char* component : {"", ".WendleAgent", ".WendleLauncher", ".WendleUpdater", ".WendleAssistant",
                                ".WendleUninstaller", ".WendleAgent.FinderSyncExt", ".WendleExtension"}) {
    const std::string permissions = "eset permissions for com.wendle.DesktopClient" + std::string(component);
    c.log.push_back({progress("R" + permissions), {progress("Failed to r" + permissions + noSuchFile)}});
    c.tools.push_back({tccutil(component), {}});
  }
  return c;
}

const std::string extensionDomain = "com.wendle.DesktopClient.WendleExtension";

INSTANTIATE_TEST_SUITE_P(
    Registrations, DifferenceTest,
    testing::ValuesIn<Difference>({
        missingTccutil(),
        {"KilledTccutil",
         "updates",
         faults({{"tccutil", 1, FaultKind::killed, 9}}),
         {},
         {{tccutil(".WendleExtension"),
           {"/usr/bin/tccutil [reset] [All] [" + extensionDomain + "] signal 9"}}}},
        {"MissingDefaults",
         "updates",
         faults({{"defaults"}}),
         {{progress("Removed defaults for " + extensionDomain),
           {progress("Failed to remove defaults for " + extensionDomain + noSuchFile)}}},
         {{"/usr/bin/defaults [remove] [" + extensionDomain + "] exit 255", {}}}},
        {"MissingPluginkit",
         "soft",
         faults({{"pluginkit"}}),
         {},
         {},
         {},
         {},
         cannotStart("/usr/bin/pluginkit"),
         progress(
             "Run `pluginkit -e ignore -i com.wendle.DesktopClient.WendleAgent.FinderSyncExt` - started")},
    }),
    nameOf);

const std::string extensionApp = library + "/Application Support/Wendle/LaunchAgents/WendleExtension.app";
const std::string rm = "/bin/rm [-rf] [" + extensionApp + "] ";

std::function<void(SimulatedMac&)> extensionAnd(const std::vector<Fault>& misbehaviour) {
  return [misbehaviour](SimulatedMac& mac) {
    mac.addBundle(extensionApp, extensionDomain);
    mac.addFile(library + "/Application Support/Wendle/LaunchAgents/Other.app");
    faults(misbehaviour)(mac);
  };
}

const std::string lastOfUpdates =
    error("Delete File - file://" + library + "/Preferences/" + extensionDomain + ".plist" + noSuchFile);
const std::string removeDefaults = "/usr/bin/defaults [remove] [" + extensionDomain + "] exit 255";
const Edit permissionsReset{tccutil(".WendleExtension"),
                            {"/usr/bin/tccutil [reset] [All] [" + extensionDomain + "] exit 0"}};

INSTANTIATE_TEST_SUITE_P(
    ExtensionApplication, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"ARemovedOne",
         "updates",
         extensionAnd({}),
         {after(lastOfUpdates, {progress("Remove " + extensionApp + " - finished")})},
         {permissionsReset, after(removeDefaults, {rm + "exit 0"})},
         {extensionApp},
         {library + "/Application Support/Wendle/LaunchAgents/Other.app"}},
        {"AFailingRm",
         "updates",
         extensionAnd({{"rm", 1, FaultKind::exits, 1}}),
         {after(lastOfUpdates, {progress("Remove " + extensionApp + " - finished")})},
         {permissionsReset, after(removeDefaults, {rm + "exit 1"})},
         {},
         {extensionApp}},
        {"MissingRm",
         "updates",
         extensionAnd({{"rm"}}),
         {after(lastOfUpdates, {failure("Failed to remove " + extensionApp + noSuchFile)})},
         {permissionsReset},
         {},
         {extensionApp}},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
