// The table in client_items.inc: what an installed client consists of, with everything around it, and what
// each mode may do to it. The simulated Mac is built and judged by it, and a real one that is thrown away
// afterwards.
#pragma once

#include <string>
#include <vector>

#include "app/modes.h"

namespace wendle::mac {
// One line of the table. It covers all below its place, except what another item covers.
struct Item {
  std::string kind, place, detail;
  std::string why;      // why a mode that does not take it away leaves it
  std::string family;   // `place` as the table gives it, for one of several alike
  std::string letters;  // of the modes that take it away, all of it (an election: that change it): -SHF

  [[nodiscard]] bool isRemovedBy(Mode mode) const;
};

[[nodiscard]] const std::vector<Item>& clientItems();
}  // namespace wendle::mac
