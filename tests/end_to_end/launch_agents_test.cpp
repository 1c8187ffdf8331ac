#include "difference.h"

namespace wendle::test {
namespace {

const std::string agent = "com.wendle.DesktopClient.WendleAgent";
const std::string agentPlist = library + "/LaunchAgents/" + agent + ".plist";
const std::string unloadStarted = progress("Unload Wendle agent - started");
const std::string pluginkit =
    "/usr/bin/pluginkit [-e] [ignore] [-i] [com.wendle.DesktopClient.WendleAgent.FinderSyncExt] exit 0";

void addAgent(SimulatedMac& mac) { mac.addLaunchAgent(agent); }

std::function<void(SimulatedMac&)> agentAnd(const std::vector<Fault>& misbehaviour) {
  return [misbehaviour](SimulatedMac& mac) {
    addAgent(mac);
    faults(misbehaviour)(mac);
  };
}

Lines unloaded(const std::string& path, const std::string& url) {
  const std::string unload = "Run `launchctl unload -w " + path + "` - ";
  const std::string remove = "Run `launchctl remove " + path + "` - ";
  return {progress(unload + "started"), progress(unload + "success"), progress(remove + "started"),
          progress(remove + "success"), progress("Delete File - " + url + " - success")};
}

Lines notStarted(const std::string& cause) {
  const std::string unload = "un `launchctl unload -w " + agentPlist + "`";
  const std::string remove = "Run `launchctl remove " + agentPlist + "`";
  return {progress("R" + unload + " - started"), error("Failed to r" + unload + cause),
          progress(remove + " - started"), error(remove + cause),
          progress("Delete File - file://" + agentPlist + " - success")};
}

Lines launchctlRuns(const std::string& path, const std::string& unload, const std::string& remove) {
  return {"/bin/launchctl [unload] [-w] [" + path + "] " + unload,
          "/bin/launchctl [remove] [" + path + "] " + remove};
}

const std::string generator = library + "/QuickLook/WendleQL.qlgenerator";

INSTANTIATE_TEST_SUITE_P(
    LaunchAgents, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"OneAgent",
         "soft",
         addAgent,
         {after(unloadStarted, unloaded(agentPlist, "file://" + agentPlist))},
         {before(pluginkit, launchctlRuns(agentPlist, "exit 0", "exit 3"))},
         {agentPlist}},
        {"AGeneratorBundle",
         "updates",
         [](SimulatedMac& mac) { mac.addBundle(generator, "com.wendle.ql"); },
         {after(unloadStarted, unloaded(generator, "file://" + generator + "/"))},
         {before(pluginkit, launchctlRuns(generator, "exit 0", "exit 3"))},
         {generator}},
        {"FailingAndKilledLaunchctl",
         "soft",
         agentAnd({{"launchctl", 1, FaultKind::exits, 5}, {"launchctl", 2, FaultKind::killed, 9}}),
         {after(unloadStarted, unloaded(agentPlist, "file://" + agentPlist))},
         {before(pluginkit, launchctlRuns(agentPlist, "exit 5", "signal 9"))},
         {agentPlist}},
        {"MissingLaunchctl",
         "soft",
         agentAnd({{"launchctl"}}),
         {after(unloadStarted, notStarted(noSuchFile))},
         {},
         {agentPlist}},
        {"LaunchctlThatIsNotExecutable",
         "soft",
         agentAnd({{"launchctl", 1, FaultKind::notExecutable}}),
         {after(unloadStarted,
                notStarted(R"(: Error Domain=NSPOSIXErrorDomain Code=13 "Permission denied")"))},
         {},
         {agentPlist}},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
