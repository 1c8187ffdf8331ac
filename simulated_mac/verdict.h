// What a run of the uninstaller did to an installed client, held against the table of the client's items.
#pragma once

#include "simulated_mac/client_fixture.h"

namespace wendle::mac {
struct Verdict {
  std::vector<const Item*> taken;  // on the mode's list, and done; what lies in another of these is left out
  std::vector<const Item*> kept;   // not on it, and still there; likewise
  std::vector<std::string> outside;     // touched without being on the list
  std::vector<std::string> leftBehind;  // on the list, and still there
};

// What a session with these arguments did to `mac`, which was `before` when it began. `processes` are the
// outcomes of the items that are processes, in their order; none when they were not started. The log of the
// uninstaller may be added.
[[nodiscard]] Verdict judge(const SimulatedMac& mac, const std::vector<std::string>& arguments,
                            Snapshot before, const std::vector<ProcessOutcome>& processes);
}  // namespace wendle::mac
