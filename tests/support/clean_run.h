#pragma once

#include "simulated_mac/client_fixture.h"
#include "support/run_result.h"

namespace wendle::test {
inline const Lines modes{"updates", "soft", "hard", "full"};

// One run without faults of a mode on an installed client.
struct CleanRun {
  std::string mode;
  mac::Snapshot before, after;
  RunResult seen;

  // The places in `seen.tools` at which to set a fault: all of them, or only the last for each use of a tool,
  // such as launchctl's unload. Where a run is slow it is always the latter.
  [[nodiscard]] std::vector<std::size_t> runsToFault(bool isThorough) const;
};
[[nodiscard]] CleanRun cleanRun(const std::string& mode);

// The same fault in the run `at` of `tools`.
[[nodiscard]] mac::Fault faultAt(const std::vector<mac::ToolRun>& tools, std::size_t at, mac::Fault fault);
}  // namespace wendle::test
