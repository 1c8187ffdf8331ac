// The uninstaller is killed while a tool runs; the next run of the same mode makes up for it.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include "support/clean_run.h"

namespace wendle::test {
namespace {
class KilledRunTest : public testing::TestWithParam<std::string> {};

TEST_P(KilledRunTest, IsMadeUpForByTheNext) {
  const CleanRun clean = cleanRun(GetParam());
  for (const std::size_t at : clean.runsToFault(false)) {
    SCOPED_TRACE("killed in run " + std::to_string(at) + ": " + commandText(clean.seen.tools[at]));
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac::installClient(mac);
    mac::SimulatedMac faulted = mac;
    faulted.setFault(faultAt(clean.seen.tools, at, {"", 1, mac::FaultKind::killsProgram}));
    const RunResult killed = runUninstaller(faulted, {"--" + clean.mode});
    EXPECT_EQ(killed.outcome, "signal " + std::to_string(SIGKILL));
    EXPECT_EQ(killed.tools.size(), at + 1);
    RunResult again = runUninstaller(mac, {"--" + clean.mode});
    EXPECT_EQ(again.outcome, "exit 0");
    for (std::size_t i = 0; i < again.processes.size(); ++i)
      again.processes[i] = std::max(again.processes[i], killed.processes[i]);  // of either run
    // Only a run that finds the tile restarts the Dock: when it dies before it does, nobody does.
    if (commandText(clean.seen.tools[at]).find("killall") == std::string::npos)
      expectItsListOnly(mac, {"--" + clean.mode}, clean.before, again);
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, KilledRunTest, testing::ValuesIn(modes),
                         [](const auto& c) { return c.param; });
}  // namespace
}  // namespace wendle::test
