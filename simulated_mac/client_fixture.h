// An installed client with everything around it, and what each mode may do to it: one table says both.
#pragma once

#include "simulated_mac/simulated_mac.h"

namespace wendle::mac {

enum Mode : unsigned { noMode = 0, updatesMode = 1, softMode = 2, hardMode = 4, fullMode = 8 };

// The mode that a command line selects: its first recognised switch.
[[nodiscard]] Mode selectedMode(const std::vector<std::string>& arguments);

// One line of the table in client_items.inc. It covers all below its place, except what another item covers.
struct Item {
  std::string kind, place, detail;
  std::string why;              // why a mode that does not take it away leaves it
  std::string family;           // `place` as the table gives it, for one of several alike
  unsigned removedBy = noMode;  // the modes that take it away, all of it (an election: that change it)

  // Its key in a snapshot; processes, which no snapshot holds, have one alike.
  [[nodiscard]] std::string snapshotPath() const;
};

[[nodiscard]] const std::vector<Item>& clientItems();
void installClient(SimulatedMac& mac);
void installItems(SimulatedMac& mac, const std::vector<Item>& items);

}  // namespace wendle::mac
