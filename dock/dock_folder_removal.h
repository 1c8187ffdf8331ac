#pragma once

#include "client/removal_plan.h"

namespace wendle {
// The step "Remove dock folder": takes the client's folder tile out of the Dock's preference file and
// restarts the Dock. Without a tile, or when the Dock's preferences cannot be read, it logs so and changes
// nothing.
//
// Known limits, kept as the client's administrators know them: at most one tile is removed; when several
// match, their positions run together into one number; and a position counts only the tiles that have a URL.
//
// Blocks until the tools it runs have ended, and up to 2 seconds while another program holds the lock on the
// preferences directory. Throws LaunchException when the shell cannot be started, std::runtime_error when its
// output is no UTF-8, and std::overflow_error when the position is the least number there is.
void removeDockFolder();

// What it would do, with a warning where one of the limits shows. Blocks and throws likewise.
void planDockFolder(RemovalPlan& plan);
}  // namespace wendle
