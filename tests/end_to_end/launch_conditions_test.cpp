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

}  // namespace
}  // namespace wendle::test
