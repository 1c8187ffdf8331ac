// However the uninstaller is started, and whatever its tools do with their streams, the hard mode takes its
// course.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "observed.h"
#include "simulated_mac/client_fixture.h"

namespace wendle::test {
namespace {

using mac::FaultKind;
using mac::SimulatedMac;

const std::string logs = "/Users/pat/Library/Logs";

struct Condition {
  std::string name;
  mac::SessionOptions options = {};
  std::function<void(SimulatedMac&)> arrange = [](SimulatedMac&) {};
  bool hasLog = true;

  friend void PrintTo(const Condition& condition, std::ostream* out) { *out << condition.name; }
};

std::function<void(SimulatedMac&)> every(const Lines& tools, FaultKind kind, int number = 0) {
  return [=](SimulatedMac& mac) {
    for (const std::string& tool : tools) mac.setFault({tool, mac::Fault::everyRun, kind, number});
  };
}

class ConditionTest : public testing::TestWithParam<Condition> {};

TEST_P(ConditionTest, ChangesNothingInTheSequence) {
  const Condition& condition = GetParam();
  SimulatedMac mac = SimulatedMac::scratch();
  mac::installClient(mac);
  condition.arrange(mac);
  const Observed seen = observe(mac, {"--hard"}, condition.options);

  EXPECT_EQ(seen.outcome, "exit 0");
  EXPECT_EQ(joined(seen.log), condition.hasLog ? joined(expectedLines("hard.txt", "log")) : "");
  EXPECT_EQ(joined(seen.journal), joined(expectedLines("hard.txt", "tools")));
  EXPECT_EQ(mac.read("/Users/pat/Documents/letter.txt"), "content of /Users/pat/Documents/letter.txt");
  EXPECT_FALSE(mac.exists("/Users/pat/Documents/Wendle"));  // where a link leads: no log there
}

const Lines consoleTools{"launchctl", "pluginkit", "tccutil", "mdfind", "security"};
const Lines allTools{"launchctl", "pluginkit", "tccutil",    "mdfind", "security",
                     "zsh",       "defaults",  "PlistBuddy", "killall"};

INSTANTIATE_TEST_SUITE_P(
    Hard, ConditionTest,
    testing::ValuesIn<Condition>({
        {"NoStandardInput", {.closedDescriptors = {0}}},
        {"NoStandardOutput", {.closedDescriptors = {1}}},
        {"NoStandardError", {.closedDescriptors = {2}}},
        {"NoStandardStreams", {.closedDescriptors = {0, 1, 2}}},
        {"BrokenPipesIgnored", {.ignoresBrokenPipes = true}},
        {"AllSignalsBlocked", {.blocksAllSignals = true}},
        {"FewDescriptors", {.descriptorLimit = 64}},
        {"AnotherWorkingDirectory", {.workingDirectory = "/Users/pat/Library/Containers"}},
        {"ToolsThatShoutOnOutput", {}, every(allTools, FaultKind::floodsOut, 10'000'000)},
        {"ToolsThatShoutOnError", {}, every(allTools, FaultKind::floodsErr, 10'000'000)},
        {"ToolsThatShoutOnBoth", {}, every(allTools, FaultKind::floodsBoth, 10'000'000)},
        {"ToolsThatReadTheirInput", {}, every(allTools, FaultKind::readsInput)},
        {"ToolsThatLeaveAGrandchild", {}, every(consoleTools, FaultKind::leavesGrandchild)},
        {"LogsIsALink",
         {},
         [](SimulatedMac& mac) {
           std::filesystem::remove(mac.at(logs));
           mac.addLink(logs, "/Users/pat/Documents");
         },
         false},
        {"LogsIsAFile",
         {},
         [](SimulatedMac& mac) {
           std::filesystem::remove(mac.at(logs));
           mac.addFile(logs);
         },
         false},
        {"TheLogFolderIsALink",
         {},
         [](SimulatedMac& mac) { mac.addLink(logs + "/Wendle", "/Users/pat/Documents"); },
         false},
    }),
    [](const auto& c) { return c.param.name; });

}  // namespace
}  // namespace wendle::test
