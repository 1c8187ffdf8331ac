#include "system/registrations.h"

#include "logging/logger.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
// One run of a tool for one item, and the line that says it took place or could not.
static void runForItem(const std::string& executable, const std::vector<std::string>& arguments,
                       const std::string& done, const std::string& failed) {
  Task task = makeConsoleTask();
  const Status status = runAndReturnError(task, executable, arguments);
  logProgress(status.ok() ? done : failed + ": " + describe(status.error()));
}

void ignoreExtension(const std::string& identifier) {
  const std::string commandText = "Run `pluginkit -e ignore -i " + identifier + "`";
  logProgress(commandText + " - started");
  Task task = makeConsoleTask();
  run(task, "/usr/bin/pluginkit", {"-e", "ignore", "-i", identifier});
  logProgress(commandText + " - success");
}

void resetPermissions(const std::vector<std::string>& identifiers) {
  for (const std::string& identifier : identifiers) {
    runForItem("/usr/bin/tccutil", {"reset", "All", identifier}, "Reset permissions for " + identifier,
               "Failed to reset permissions for " + identifier);
  }
}

void removeDefaults(const std::vector<std::string>& domains) {
  for (const std::string& domain : domains) {
    runForItem("/usr/bin/defaults", {"remove", domain}, "Removed defaults for " + domain,
               "Failed to remove defaults for " + domain);
  }
}

void planIgnoredExtension(RemovalPlan& plan, const std::string& identifier) {
  plan.ask("the plug-in registry ignores " + identifier);
}

void planPermissions(RemovalPlan& plan, const std::vector<std::string>& identifiers) {
  for (const std::string& identifier : identifiers)
    plan.ask("the privacy permissions of " + identifier + " are reset");
}

void planDefaults(RemovalPlan& plan, const std::vector<std::string>& domains) {
  for (const std::string& domain : domains) plan.ask("the preference domain " + domain + " is removed");
}
}  // namespace wendle
