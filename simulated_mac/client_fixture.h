// An installed client with everything around it, and what each mode may do to it: one table says both.
#pragma once

#include "app/modes.h"
#include "simulated_mac/simulated_mac.h"

namespace wendle::mac {

// One line of the table in client_items.inc. It covers all below its place, except what another item covers.
struct Item {
  std::string kind, place, detail;
  std::string why;      // why a mode that does not take it away leaves it
  std::string family;   // `place` as the table gives it, for one of several alike
  std::string letters;  // of the modes that take it away, all of it (an election: that change it): -SHF

  [[nodiscard]] bool isRemovedBy(Mode mode) const;

  // Its key in a snapshot; processes, which no snapshot holds, have one alike.
  [[nodiscard]] std::string snapshotPath() const;
};

[[nodiscard]] const std::vector<Item>& clientItems();
void installClient(SimulatedMac& mac);
void installItems(SimulatedMac& mac, const std::vector<Item>& items);

}  // namespace wendle::mac
