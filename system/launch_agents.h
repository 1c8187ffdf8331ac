#pragma once

#include <string>

#include "client/removal_plan.h"

namespace wendle {
// The step "Unload Wendle agent": of each of the client's launchAgentPaths that exists, launchctl unloads and
// removes the job, and the item is deleted. An absent one is passed over silently. Source: launchctl(1), the
// legacy verbs.
void unloadLaunchAgents();

// What it would do.
void planLaunchAgents(RemovalPlan& plan);

// Each runs launchctl once. "success" in the log means that launchctl ran to its end: it reports success on
// failure [D].
void unloadLaunchAgent(const std::string& path);
void removeLaunchAgent(const std::string& path);
}  // namespace wendle
