// The uninstaller is killed while a tool runs; the next run of the same mode makes up for it.
#include <csignal>

#include "course.h"

namespace wendle::test {
namespace {

// Each test takes every N-th tool run, so that they can run side by side.
constexpr std::size_t shares = 4;

class KilledRunTest : public testing::TestWithParam<std::tuple<std::string, std::size_t>> {};

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

// A session in which the program is killed while it waits for the run `at`.
RunResult killAt(SimulatedMac mac, std::size_t at, const CleanRun& clean) {
  mac.setFault(faultAt(clean.tools, at, {"", 1, FaultKind::killsProgram}));
  RunResult killed = runUninstaller(mac, {"--" + clean.mode});
  EXPECT_EQ(killed.outcome, "signal " + std::to_string(SIGKILL));
  EXPECT_EQ(toolRuns(mac).size(), at + 1);
  return killed;
}

// What either of the two runs did to a process counts. Only a run that finds a tile restarts the Dock: when
// it dies before it does, nobody does.
void expectFatesOfEither(const CleanRun& clean, std::size_t at,
                         const std::vector<mac::ProcessOutcome>& killed,
                         const std::vector<mac::ProcessOutcome>& again) {
  if (commandsOf(clean.tools)[at].find("killall") != std::string::npos) return;
  for (std::size_t i = 0; i < clean.seen.processes.size(); ++i) {
    const mac::ProcessOutcome wanted = clean.seen.processes[i];
    EXPECT_TRUE(killed[i] == wanted || again[i] == wanted) << "process " << i;
  }
}

TEST_P(KilledRunTest, IsMadeUpForByTheNext) {
  const auto& [mode, share] = GetParam();
  const CleanRun clean = cleanRun(mode);
  for (std::size_t at = share; at < clean.tools.size() && !HasFailure(); at += shares * TOOL_RUN_STRIDE) {
    SCOPED_TRACE("killed in run " + std::to_string(at) + ": " + commandsOf(clean.tools)[at]);
    SimulatedMac mac = SimulatedMac::scratch();
    mac::installClient(mac);
    const RunResult killed = killAt(mac, at, clean);
    const RunResult again = runUninstaller(mac, {"--" + mode});
    EXPECT_EQ(again.outcome, "exit 0");
    expectFatesOfEither(clean, at, killed.processes, again.processes);
    expectSame(clean.after, mac.snapshot());
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, KilledRunTest,
                         testing::Combine(testing::ValuesIn(modes), testing::Range<std::size_t>(0, shares)),
                         [](const auto& c) {
                           return std::get<0>(c.param) + std::to_string(std::get<1>(c.param));
                         });

}  // namespace
}  // namespace wendle::test
