// However the uninstaller is started, and though it can keep no log, the hard mode runs all its steps.
#include <gtest/gtest.h>

#include <filesystem>

#include "simulated_mac/client_fixture.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
void expectSequence(mac::SimulatedMac& mac, const Lines& log, const mac::SessionOptions& options = {}) {
  mac::installClient(mac);
  const RunResult seen = runUninstaller(mac, {"--hard"}, options);
  EXPECT_EQ(seen.outcome, "exit 0");
  EXPECT_EQ(joined(seen.log), joined(log));
  EXPECT_EQ(joined(seen.journal), joined(journalIn(expectedLines("hard.txt", "run"))));
}

TEST(LaunchConditions, ChangeNothingInTheSequence) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  expectSequence(mac, logIn(expectedLines("hard.txt", "run")),
                 {.closesStandardStreams = true,
                  .ignoresBrokenPipes = true,
                  .blocksAllSignals = true,
                  .descriptorLimit = 32,
                  .workingDirectory = "/Users/pat/Library/Containers"});
}

TEST(LaunchConditions, NeedNoPlaceForALog) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.addFile("/Users/pat/Library/Logs", "no folder");
  expectSequence(mac, {});
  EXPECT_EQ(mac.read("/Users/pat/Library/Logs"), "no folder");
}

// The launcher's shell holds a file open while the uninstaller runs, and a tool leaves a process behind. An
// empty HOME is none.
TEST(LaunchConditions, HandNoDescriptorOfTheLauncherToATool) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.addFile("/etc/passwd", "pat:x:501:20::/Users/pat:/bin/zsh\n");
  mac.setFault({"pluginkit", 1, mac::FaultKind::leavesGrandchild, 0});
  const std::string script = R"(isHeld() { /host/bin/ls -l /proc/[0-9]*/fd 2>&1 | grep -q 'Shared/held$'; }
    exec 9>/Users/Shared/held; isHeld && echo held
    HOME= "$@"; exec 9>&-; isHeld || echo released)";
  Lines command{"-c", script, "sh"};
  for (const std::string& word : uninstallerCommand()) command.push_back(word);
  command.push_back("--updates");
  const mac::SessionResult seen = mac.run("/bin/sh", command);
  EXPECT_EQ(seen.outcome + "\n" + seen.out, "exit 0\nheld\nreleased\n");
  EXPECT_EQ(seen.log.size(), logIn(expectedLines("bare.txt", "updates")).size());
}
}  // namespace
}  // namespace wendle::test
