#pragma once

#include <string>
#include <vector>

#include "simulated_mac/simulated_mac.h"

namespace wendle::test {

// Whole sequences, a line each, so that a missing, an extra and a misplaced line all fail.
using Lines = std::vector<std::string>;

// What one run of the real executable, or of another program, showed.
struct Observed {
  std::string outcome;
  Lines log;  // times and process numbers taken out; what a folder walk found sorted: disks differ in order
  Lines journal;  // /bin/launchctl [unload] [-w] [/Users/pat/...] exit 0
  std::string out, err;
  std::vector<mac::Fate> fates;
};

// The tool's path and its arguments, as in `Observed::journal`; not how it ended.
[[nodiscard]] std::string commandOf(const mac::ToolRun& run);

[[nodiscard]] Observed observe(mac::SimulatedMac& mac, const std::vector<std::string>& arguments,
                               const mac::SessionOptions& options = {},
                               const std::string& program = UNINSTALLER);

// Nothing but what is on the mode's list was touched, and all that is on it was done.
void expectItsListOnly(const mac::SimulatedMac& mac, const std::vector<std::string>& arguments,
                       const mac::Snapshot& before, const Observed& seen);

// The lines of a file in `expected/` between "== SECTION" and the next such line.
[[nodiscard]] Lines expectedLines(const std::string& file, const std::string& section);

[[nodiscard]] std::string joined(const Lines& lines);

}  // namespace wendle::test
