#pragma once

#include <string>
#include <vector>

namespace wendle {

// Traces of the client that no mode takes away: what the system keeps for its applications in Caches,
// HTTPStorages, Group Containers, Saved Application State, Application Scripts and the like, preferences on
// no mode's list, the installer's receipts, and the uninstaller's own logs. Paths, directory by directory,
// sorted within each; empty when nothing is there, and nothing of a directory that cannot be read.
[[nodiscard]] std::vector<std::string> findClientTraces();

}  // namespace wendle
