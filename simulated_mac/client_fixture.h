// An installed client with everything around it, in a simulated Mac.
#pragma once

#include "simulated_mac/client_items.h"
#include "simulated_mac/simulated_mac.h"

namespace wendle::mac {
void installClient(SimulatedMac& mac);
void installItems(SimulatedMac& mac, const std::vector<Item>& items);
}  // namespace wendle::mac
