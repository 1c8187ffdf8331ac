#pragma once

#include <string>
#include <vector>

#include "client/removal_plan.h"

namespace wendle {
// Registrations that outlive the client's files. None of these looks at a tool's exit status: a line that
// reports success means that the tool ran to its end.

// Tells the plug-in registry to ignore an extension. Throws LaunchException when pluginkit cannot be started.
// Source: pluginkit(8).
void ignoreExtension(const std::string& identifier);

// Resets every privacy permission of each identifier, one tccutil run each. One that cannot be started is
// logged and the next identifier is taken. Source: tccutil(1).
void resetPermissions(const std::vector<std::string>& identifiers);

// Runs `defaults remove` for each preference domain; failures as above. defaults(1) knows no such verb, so
// this removes nothing: the log has its lines, and the next step deletes the file.
void removeDefaults(const std::vector<std::string>& domains);

// What each of these would do. Nobody can tell beforehand whether it changes anything.
void planIgnoredExtension(RemovalPlan& plan, const std::string& identifier);
void planPermissions(RemovalPlan& plan, const std::vector<std::string>& identifiers);
void planDefaults(RemovalPlan& plan, const std::vector<std::string>& domains);
}  // namespace wendle
