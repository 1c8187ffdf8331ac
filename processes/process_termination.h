#pragma once

#include <string>
#include <vector>

#include "client/removal_plan.h"

namespace wendle {
// Of applications, as NSRunningApplication lists them. None running is fine; a refusal is not reported.

// Asks every running application with that identifier to quit, in the registry's order, and returns at once:
// one may still run, or refuse.
void terminateRunningApplicationsWithBundleIdentifier(const std::string& identifier);

// The step "Kill Wendle processes": asks five components to quit, the agent first. The updater, the
// uninstaller and the Finder Sync extension are left running.
void killWendleProcesses();

// Kills every running application with one of these identifiers, without asking it.
void killWendleLegacyProcesses(const std::vector<std::string>& bundleIdentifiers);

// What the last two would do.
void planProcessTermination(RemovalPlan& plan);
void planLegacyProcesses(RemovalPlan& plan, const std::vector<std::string>& bundleIdentifiers);
}  // namespace wendle
