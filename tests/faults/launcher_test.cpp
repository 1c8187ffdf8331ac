// The uninstaller outlives the application that starts it, whether that listens or not, and lets no other one
// edit the Dock beside it.
#include <gtest/gtest.h>

#include <filesystem>

#include "simulated_mac/verdict.h"
#include "support/clean_run.h"

namespace wendle::test {
namespace {
class LauncherTest : public testing::TestWithParam<std::string> {
 protected:
  // Runs the launcher on an installed client: all goes as it does without one.
  void expectCleanRunBy(const std::string& launcher, Lines command) {
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac::installClient(mac);
    for (const std::string& word : uninstallerCommand()) command.push_back(word);
    command.push_back("--" + mode_);
    const RunResult seen = runProbe(mac, launcher, command);
    EXPECT_EQ(joined(judge(mac, {"--" + mode_}, clean_.before, seen.processes).outside), "");
    EXPECT_EQ(seen.outcome, "exit 0");
    EXPECT_EQ(joined(seen.sequence), joined(clean_.seen.sequence));
  }

  const std::string mode_ = GetParam();
  const CleanRun clean_ = cleanRun(mode_);
};

TEST_P(LauncherTest, MayDieWithItsWholeProcessGroup) {
  const std::string component = mode_ == "updates" ? ".WendleExtension" : "";
  expectCleanRunBy("launcher_probe", {"client", "com.wendle.DesktopClient" + component});
}

// Its standard output is a pipe whose reader has ended.
TEST_P(LauncherTest, MayStopListening) {
  expectCleanRunBy("/bin/bash", {"-c", R"(exec > >(:); wait $!; exec "$@")", "bash"});
}

INSTANTIATE_TEST_SUITE_P(Modes, LauncherTest, testing::ValuesIn(modes),
                         [](const auto& c) { return c.param; });

// Tools of the shell's search path try for the lock while they run; the edit lies between them.
TEST(DockLock, IsHeldFromTheSearchToTheRestart) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  for (const char* tool : {"/Users/Shared/bin/defaults", "/Users/Shared/bin/killall"}) {
    mac.addFile(tool, R"(#!/host/bin/sh
/host/usr/bin/flock -nE 7 /Users/pat/Library/Preferences /host/bin/true
echo "${0##*/} $?" >>/Users/Shared/seen
exec "/usr/bin/${0##*/}" "$@"
)");
    std::filesystem::permissions(mac.at(tool), std::filesystem::perms{0755});
  }
  const mac::SessionOptions options{.environment = {"PATH=/Users/Shared/bin:/usr/bin:/bin"}};
  EXPECT_EQ(runUninstaller(mac, {"--soft"}, options).outcome, "exit 0");
  EXPECT_EQ(mac.read("/Users/Shared/seen"), "defaults 7\nkillall 7\n");
}
}  // namespace
}  // namespace wendle::test
