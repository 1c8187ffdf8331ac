#pragma once

#include <string>
#include <vector>

#include "simulated_mac/client_fixture.h"
#include "support/run_result.h"

namespace wendle::test {

inline const Lines modes{"updates", "soft", "hard", "full"};

// One undisturbed run of a mode on an installed client.
struct CleanRun {
  std::string mode;
  mac::Snapshot before, after;
  RunResult seen;
  std::vector<mac::ToolRun> tools;
};
[[nodiscard]] CleanRun cleanRun(const std::string& mode);

// The runs of tools that the last session in `mac` wrote down.
[[nodiscard]] std::vector<mac::ToolRun> toolRuns(const mac::SimulatedMac& mac);

// launchctl, for /bin/launchctl
[[nodiscard]] std::string nameOf(const mac::ToolRun& run);
[[nodiscard]] Lines commandsOf(const std::vector<mac::ToolRun>& runs);

// The same fault in the run `at` of `tools`.
[[nodiscard]] mac::Fault faultAt(const std::vector<mac::ToolRun>& tools, std::size_t at, mac::Fault fault);

// Whether the product starts the run `at` through the shell, as it does for the Dock; or it is the shell.
[[nodiscard]] bool isOfShell(const mac::ToolRun& run);

}  // namespace wendle::test
