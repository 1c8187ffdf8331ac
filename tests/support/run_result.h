// Runs the executables under test on a simulated Mac. They are those beside the tests' own, or those in the
// directory that WENDLE_EXECUTABLES names, which may be macOS's.
#pragma once

#include "simulated_mac/simulated_mac.h"
#include "support/expected_text.h"

namespace wendle::test {
// What one run of an executable showed.
struct RunResult {
  std::string outcome;
  Lines log;  // times, process numbers and the platform's errno numbers made equal; what a folder walk found
              // sorted: disks differ in order
  Lines journal;   // /bin/launchctl [unload] [-w] [/Users/pat/...] exit 0
  Lines sequence;  // both in one order, the runs of tools marked by "> "
  std::vector<mac::ToolRun> tools;
  std::string out, err;
  std::vector<mac::ProcessOutcome> processes;
};

// The tool's path and its arguments, as in `RunResult::journal`; not how it ended.
[[nodiscard]] std::string commandText(const mac::ToolRun& run);

[[nodiscard]] RunResult runUninstaller(mac::SimulatedMac& mac, const Lines& arguments,
                                       const mac::SessionOptions& options = {});
[[nodiscard]] RunResult runReport(mac::SimulatedMac& mac, const Lines& arguments,
                                  const mac::SessionOptions& options = {.startsProcesses = false});

// Runs a program of the tests' own, which lies beside them.
[[nodiscard]] RunResult runProbe(mac::SimulatedMac& mac, const std::string& probe, const Lines& arguments);

// The words by which a program in the Mac starts them.
[[nodiscard]] Lines uninstallerCommand();
[[nodiscard]] Lines reportCommand();

// Nothing but what is on the mode's list was touched, and all that is on it was done.
void expectItsListOnly(const mac::SimulatedMac& mac, const Lines& arguments, const mac::Snapshot& before,
                       const RunResult& seen);

// The two parts of a sequence, as `RunResult` has them.
[[nodiscard]] Lines logIn(const Lines& sequence);
[[nodiscard]] Lines journalIn(const Lines& sequence);

// Whether every run takes long, with sanitizers or on macOS's executable: tests of very many then take
// samples.
[[nodiscard]] bool isSlow();
}  // namespace wendle::test
