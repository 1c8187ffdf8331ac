#pragma once

#include <gtest/gtest.h>

#include "observed.h"
#include "simulated_mac/client_fixture.h"

namespace wendle::test {

using mac::Fault;
using mac::FaultKind;
using mac::SimulatedMac;

inline const Lines modes{"updates", "soft", "hard", "full"};

// One undisturbed run of a mode on an installed client.
struct CleanRun {
  std::string mode;
  mac::Snapshot before, after;
  Observed seen;
  std::vector<mac::ToolRun> tools;
};
[[nodiscard]] CleanRun cleanRun(const std::string& mode);

// The runs of tools that the last session in `mac` wrote down.
[[nodiscard]] std::vector<mac::ToolRun> toolRuns(const SimulatedMac& mac);

// launchctl, for /bin/launchctl
[[nodiscard]] std::string nameOf(const mac::ToolRun& run);
[[nodiscard]] Lines commandsOf(const std::vector<mac::ToolRun>& runs);

// The same fault in the run `at` of `tools`.
[[nodiscard]] Fault faultAt(const std::vector<mac::ToolRun>& tools, std::size_t at, Fault fault);

// Whether the product starts the run `at` through the shell, as it does for the Dock; or it is the shell.
[[nodiscard]] bool isOfShell(const mac::ToolRun& run);

// What a run looks like in which one tool runs badly once (or is away from there on), worked out from a clean
// run: all that does not depend on that tool's work stays as it is.
struct Course {
  Lines log, commands;
  std::string outcome;
};
[[nodiscard]] Course courseWith(const Fault& fault, std::size_t at, const CleanRun& clean);

}  // namespace wendle::test
