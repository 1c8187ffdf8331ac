// Each mode on an installed client, with everything around it: the whole log, every tool run, all that was
// printed, what is left on disk and in the system's lists, and which processes live.
#include <gtest/gtest.h>

#include <regex>

#include "simulated_mac/client_fixture.h"
#include "simulated_mac/shared.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
class ModeTest : public testing::TestWithParam<const char*> {};

TEST_P(ModeTest, RemovesExactlyItsListFromAnInstalledClient) {
  const std::string mode = GetParam();
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  const mac::Snapshot before = mac.snapshot();
  const RunResult seen = runUninstaller(mac, {"--" + mode});

  EXPECT_EQ(seen.outcome, "exit 0");
  expectText(mode + ".txt", "run", seen.sequence);
  expectText(mode + ".txt", "printed", mac::split(seen.out, '\n'));
  EXPECT_EQ(seen.err, "");
  expectItsListOnly(mac, {"--" + mode}, before, seen);
}

TEST_P(ModeTest, RunsAllItsStepsWithoutAClient) {
  const std::string mode = GetParam();
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.addDockTile("Downloads", "file:///Users/pat/Downloads/");
  mac.addKeychainItem("Other");
  const mac::Snapshot before = mac.snapshot();
  const RunResult seen = runUninstaller(mac, {"--" + mode});

  EXPECT_EQ(seen.outcome, "exit 0");
  expectText("bare.txt", mode, seen.sequence);
  const mac::SnapshotDifference difference = mac::difference(before, mac.snapshot());
  EXPECT_EQ(joined(difference.removed) + joined(difference.changed), "");
}

INSTANTIATE_TEST_SUITE_P(Modes, ModeTest, testing::Values("updates", "soft", "hard", "full"),
                         [](const auto& mode) { return std::string(mode.param); });

// What a run says when `path` holds a mount point, or is one.
std::string busyLine(const std::string& kind, const std::string& path) {
  return "[error] uninstaller: Delete " + kind + " - file://" + path +
         ": Error Domain=NSPOSIXErrorDomain Code=16 \"Device or resource busy\"";
}

// A drive is mounted in an item of every kind and in another vendor's container, a file over a preference
// file.
TEST(VolumesTest, StayWhereTheyAreMountedAndTheRestOfTheItemGoes) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  mac.addFile("/Volumes/Drive/file", "kept");
  const std::string drive = mac.at("/Volumes/Drive");
  const std::string library = mac::home + "/Library/", agent = "com.wendle.DesktopClient.WendleAgent";
  const std::string app = "/Applications/Wendle.app/",
                    preferences = library + "Preferences/" + agent + ".plist";
  const Lines items{app,
                    mac::home + "/Applications/WendleAgent.app/",
                    "/Applications/Wendle/",
                    library + "Containers/" + agent + "/",
                    library + "Application%20Support/Wendle/",
                    "/Users/Shared/Wendle/"};
  mac::SessionOptions options{.mounts = {"--bind", drive + "/file", preferences}};
  const auto mount = [&](const std::string& item) {
    const Lines words{"--tmpfs", item + "Drive", "--bind", drive, item + "Drive/com.wendle.kept"};
    options.mounts.insert(options.mounts.end(), words.begin(), words.end());
  };
  mount(library + "Containers/com.fabrikam.Notes/");
  Lines want;
  for (const std::string& item : items) {
    mount(std::regex_replace(item, std::regex("%20"), " "));
    want.push_back(busyLine("Folder", item));
  }
  want.push_back(busyLine("Folder", app));  // deleted once more
  want.push_back(busyLine("File", preferences));

  Lines log = runUninstaller(mac, {"--full"}, options).log;
  std::erase_if(log, [](const std::string& line) { return line.find(" Code=16 ") == std::string::npos; });
  EXPECT_EQ(joined(log), joined(want));
  EXPECT_EQ(mac.read("/Volumes/Drive/file"), "kept");
  for (const char* rest : {"Contents", "Drive/com.wendle.kept"}) EXPECT_FALSE(mac.exists(app + rest));
}

// Desktop applications, one of which refuses to quit, the extension, and components that are left alone. The
// tool itself carries the extension's identifier, as when the extension has started it.
std::vector<mac::ProcessOutcome> processOutcomesIn(const std::string& mode) {
  const std::string desktop = "com.wendle.DesktopClient";
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.addProcess({.name = "Wendle", .identifier = desktop, .stubborn = true});
  mac.addProcess({.name = "Wendle", .identifier = desktop});
  for (const char* component :
       {"WendleExtension", "WendleUpdater", "WendleAgent.FinderSyncExt", "WendleUninstaller"}) {
    mac.addProcess({.name = component, .identifier = desktop + "." + component});
  }
  mac.addProcess({.name = "Wendle", .identifier = desktop + "X"});
  const RunResult seen =
      runUninstaller(mac, {mode}, {.environment = {"__CFBundleIdentifier=" + desktop + ".WendleExtension"}});
  EXPECT_EQ(seen.outcome, "exit 0");
  return seen.processes;
}

TEST(ProcessesTest, AreAskedToQuitAndOnlyTheExtensionIsKilledInUpdatesMode) {
  using enum mac::ProcessOutcome;
  const std::vector<mac::ProcessOutcome> asked{refused,   quit,      quit,     leftAlone,
                                               leftAlone, leftAlone, leftAlone};
  EXPECT_EQ(processOutcomesIn("--soft"), asked);
  EXPECT_EQ(processOutcomesIn("--full"), asked);
  EXPECT_EQ(processOutcomesIn("--updates"),
            (std::vector<mac::ProcessOutcome>{leftAlone, leftAlone, killed, leftAlone, leftAlone, leftAlone,
                                              leftAlone}));
}

TEST(CommandLineTest, RunsTheFirstModeItNames) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.addDockTile("Downloads", "file:///Users/pat/Downloads/");
  const RunResult seen =
      runUninstaller(mac, {"-x", "", "soft", "--full=1", "--updates", "--updates", "--soft", "--full"});
  EXPECT_EQ(seen.outcome, "exit 0");
  EXPECT_EQ(joined(seen.sequence), joined(expectedLines("bare.txt", "updates")));
}

TEST(CommandLineTest, LeavesNoTraceWhenItNamesNone) {
  for (const Lines& arguments :
       {Lines{}, {"--FULL"}, {"full", "-full", "--full ", " --full", "--full=1", "--hard--soft"}}) {
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac::installClient(mac);
    const mac::Snapshot before = mac.snapshot();
    const RunResult seen = runUninstaller(mac, arguments);
    expectItsListOnly(mac, arguments, before, seen);
    EXPECT_FALSE(mac.exists("/Users/pat/Library/Logs/Wendle"));
    EXPECT_EQ(seen.outcome + joined(seen.sequence) + seen.out + seen.err, "exit 0");
  }
}
}  // namespace
}  // namespace wendle::test
