// What wendle-uninstall-report says of what would go, and of what is left.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "end_to_end/report_answers.h"
#include "simulated_mac/client_fixture.h"
#include "simulated_mac/shared.h"
#include "support/clean_run.h"

namespace wendle::test {
namespace {
const mac::ProcessPlan secondExtension{.name = "WendleExtension",
                                       .identifier = "com.wendle.DesktopClient.WendleExtension"};

// The processes that a run in this mode ends or asks to quit, the Dock's aside, by their identifiers. Each
// agent's job has one; of agent and extension another one was started by hand.
std::multiset<std::string> processesEndedBy(mac::SimulatedMac& mac, const std::string& mode) {
  const RunResult seen = runUninstaller(mac, {mode});
  std::multiset<std::string> identifiers;
  auto outcome = seen.processes.begin();
  const auto count = [&](const std::string& identifier) {
    if (*outcome++ != mac::ProcessOutcome::leftAlone && identifier != "com.apple.dock")
      identifiers.insert(identifier);
  };
  for (const mac::Item& item : mac::clientItems()) {
    if (item.kind.ends_with("process")) count(item.detail);
  }
  count(secondExtension.identifier);
  return identifiers;
}

class ProcessesTest : public testing::TestWithParam<std::string> {};

TEST_P(ProcessesTest, AreNamedOnceWhenARunEndsThem) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  mac.addProcess(secondExtension);
  std::multiset<std::string> named;
  const json preview = ask(mac, {"preview", GetParam(), "--json"}, true);
  for (const json& item : preview.at("items")) {
    const std::string label = item.value("label", "");
    if (item.at("kind") == "process") named.insert(label.substr(0, label.find(',')));
  }
  EXPECT_EQ(named, processesEndedBy(mac, "--" + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Modes, ProcessesTest, testing::ValuesIn(modes),
                         [](const auto& mode) { return mode.param; });

// The limits of the Dock's step: positions of several tiles run together, a tile without a URL does not
// count.
TEST(PreviewTest, WarnsWhenAnotherTileWouldGo) {
  const std::string wendle = "file:///Users/pat/Wendle/";
  Lines warnings;
  const auto tiles = [&](const Lines& urls) {
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    for (const std::string& url : urls) mac.addDockTile("<" + url + ">", url);
    const json preview = ask(mac, {"preview", "--soft", "--json"});
    for (const std::string warning : preview.at("warnings")) warnings.push_back(warning);
    return labels(preview, "Dock tile");
  };
  EXPECT_EQ(tiles({wendle}), std::set{"<" + wendle + ">"});
  EXPECT_EQ(tiles({"", wendle}), std::set<std::string>{"<>"});
  EXPECT_EQ(tiles({wendle, wendle}), std::set<std::string>{});
  expectText("preview.txt", "warnings", warnings);
}

// The shell that deletes a tile reads the home directory's path without quotes.
TEST(PreviewTest, NamesTheTileOfAHomeThatIsOneWordToTheShell) {
  if (uninstallerCommand().size() > 1) GTEST_SKIP() << "macos_program knows one home directory";
  for (const auto& [home, tiles] : {std::pair{"/Users/jörg", 1U}, {"/Users/j rg", 0U}}) {
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac.addDockTile("Wendle", "file:///Users/pat/Wendle/");
    mac.addFile(std::string(home) + "/Library/Preferences/com.apple.dock.plist", mac.read(mac::dockFile));
    const RunResult seen =
        runReport(mac, {"preview", "--soft", "--json"}, {.environment = {std::string("HOME=") + home}});
    EXPECT_EQ(labels(json::parse(seen.out), "Dock tile").size(), tiles) << seen.out;
  }
}

TEST(PreviewTest, IsReadableAndEscaped) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  const std::string preferences = mac::home + "/Library/Preferences/com.wendle.DesktopClient";
  mac.addFile("/Applications/Wendle/a\nb", std::string(12'345, 'x'));
  mac.addFile(preferences + ".plist", "four");
  mac.addLink(preferences + ".WendleAgent.plist", "/nowhere");
  mac.addBundle("/Volumes/Backup/Wendle\nAgent.app", "com.wendle.DesktopClient.WendleAgent");
  mac.addKeychainItem("Wendle");
  mac.addDockTile("Wendle", "file:///Users/pat/Wendle/");
  const auto setMode = [&](unsigned mode) {
    std::filesystem::permissions(mac.at("/Applications/Wendle"), std::filesystem::perms{mode});
  };
  setMode(0500);
  for (const Lines& question : {Lines{"preview", "--hard"}, {"leftovers"}})
    expectText("preview.txt", question.front(), mac::split(runReport(mac, question).out, '\n'));
  setMode(0700);
}

// Its root cannot be opened, and yet that is not why it stays.
TEST(PreviewTest, CallsNobodyForAVolumeThatIsClosed) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  const mac::SessionOptions options{
      .mounts = {"--perms", "0000", "--tmpfs", "/Applications/Wendle.app/Drive"}, .startsProcesses = false};
  const json preview = json::parse(runReport(mac, {"preview", "--hard", "--json"}, options).out);
  EXPECT_NE(preview.at("items").at(0).value("because", "").find("busy"), std::string::npos) << preview;
  EXPECT_EQ(runReport(mac, {"preview", "--hard", "--needs-root"}, options).out, "");
}

TEST(LeftoversTest, NameWhatIsStillThereAndWhatNoModeTakesAway) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  for (const char* trace :
       {"Application Scripts/com.wendle.DesktopClient", "Caches/com.wendle.DesktopClient",
        "Cookies/com.wendle.DesktopClient.cookies", "Group Containers/TEAM.com.wendle.DesktopClient.shared",
        "HTTPStorages/com.wendle.DesktopClient",
        "Preferences/com.wendle.DesktopClient.WendleUninstaller.plist",
        "Preferences/ByHost/com.wendle.DesktopClient.F00D.plist", "WebKit/com.wendle.DesktopClient",
        "Saved Application State/com.wendle.DesktopClient.savedState", "Caches/com.wendle.DesktopClientX",
        "Caches/Xcom.wendle.DesktopClient"})  // the names of the last two only resemble
    mac.addFile(mac::home + "/Library/" + trace);
  mac.addFile("/var/db/receipts/com.wendle.DesktopClient.bom");
  const auto expectTraces = [&](const std::string& outcome, const std::string& section) {
    const RunResult seen = runReport(mac, {"leftovers", "--json"});
    EXPECT_EQ(seen.outcome, outcome);
    expectText("preview.txt", section, json::parse(seen.out).at("traces"));
  };
  expectTraces("exit 1", "traces beside the client");
  EXPECT_EQ(runUninstaller(mac, {"--full"}).outcome, "exit 0");
  expectTraces("exit 0", "traces of the client");
}

TEST(PreviewTest, IsNoneWhenAToolIsMissing) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.setFault({"mdfind", 1, mac::FaultKind::missing});
  const RunResult seen = runReport(mac, {"preview", "--soft"});
  EXPECT_EQ(seen.outcome + seen.out, "exit 2");
}
}  // namespace
}  // namespace wendle::test
