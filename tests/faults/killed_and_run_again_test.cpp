// The uninstaller is killed while a tool runs; the next run of the same mode makes up for it.
#include <gtest/gtest.h>

#include <csignal>

#include "support/clean_run.h"

namespace wendle::test {
namespace {

mac::Snapshot withoutLogs(mac::Snapshot snapshot) {
  std::erase_if(snapshot, [](const auto& item) { return item.first.starts_with("/Users/pat/Library/Logs"); });
  return snapshot;
}

void expectSame(const mac::Snapshot& wanted, const mac::Snapshot& seen) {
  const auto [removed, added, changed] = mac::difference(withoutLogs(wanted), withoutLogs(seen));
  EXPECT_EQ(joined(removed), "") << "is gone, and should not be";
  EXPECT_EQ(joined(added), "") << "is there, and should not be";
  EXPECT_EQ(joined(changed), "") << "differs";
}

// What either of the two runs did to a process counts. Only a run that finds a tile restarts the Dock: when
// it dies before it does, nobody does.
void expectProcessesOfEither(const CleanRun& clean, std::size_t at, const RunResult& killed,
                             const RunResult& again) {
  if (commandText(clean.seen.tools[at]).find("killall") != std::string::npos) return;
  for (std::size_t i = 0; i < clean.seen.processes.size(); ++i) {
    const mac::ProcessOutcome wanted = clean.seen.processes[i];
    EXPECT_TRUE(killed.processes[i] == wanted || again.processes[i] == wanted) << "process " << i;
  }
}

class KilledRunTest : public testing::TestWithParam<std::string> {};

TEST_P(KilledRunTest, IsMadeUpForByTheNext) {
  const CleanRun clean = cleanRun(GetParam());
  for (const std::size_t at : clean.runsToFault(clean.mode == "updates" || clean.mode == "soft")) {
    SCOPED_TRACE("killed in run " + std::to_string(at) + ": " + commandText(clean.seen.tools[at]));
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac::installClient(mac);
    mac::SimulatedMac faulted = mac;
    faulted.setFault(faultAt(clean.seen.tools, at, {"", 1, mac::FaultKind::killsProgram}));
    const RunResult killed = runUninstaller(faulted, {"--" + clean.mode});
    EXPECT_EQ(killed.outcome, "signal " + std::to_string(SIGKILL));
    EXPECT_EQ(killed.tools.size(), at + 1);
    const RunResult again = runUninstaller(mac, {"--" + clean.mode});
    EXPECT_EQ(again.outcome, "exit 0");
    expectProcessesOfEither(clean, at, killed, again);
    expectSame(clean.after, mac.snapshot());
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, KilledRunTest, testing::ValuesIn(modes),
                         [](const auto& c) { return c.param; });

}  // namespace
}  // namespace wendle::test
