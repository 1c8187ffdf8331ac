#include "processes/process_termination.h"

#include <array>

#include "client/bundle_identifier.h"
#include "logging/logger.h"
#include "platform/running_applications.h"

namespace wendle {
namespace {
struct Component {
  const char* name;
  BundleIdentifier identifier;
};

constexpr std::array components{
    Component{"Agent", BundleIdentifier::agent},
    Component{"Desktop", BundleIdentifier::desktop},
    Component{"Launcher", BundleIdentifier::launcher},
    Component{"Assistant", BundleIdentifier::assistant},
    Component{"Extension", BundleIdentifier::searchExtension},
};

void planProcesses(RemovalPlan& plan, const std::string& identifier, const char* why) {
  for (const RunningApplication& application : runningApplicationsWithBundleIdentifier(identifier)) {
    plan.addProcess(identifier, application.processIdentifier(), why);
  }
}
}  // namespace

void terminateRunningApplicationsWithBundleIdentifier(const std::string& identifier) {
  for (const RunningApplication& application : runningApplicationsWithBundleIdentifier(identifier)) {
    application.terminate();
  }
}

void killWendleProcesses() {
  logStartFinish("Kill Wendle processes", [] {
    for (const Component& component : components) {
      logProgress("Killing " + std::string(component.name) + " process");
      terminateRunningApplicationsWithBundleIdentifier(rawValue(component.identifier));
    }
  });
}

void killWendleLegacyProcesses(const std::vector<std::string>& bundleIdentifiers) {
  for (const std::string& identifier : bundleIdentifiers) {
    logProgress("Killing process with bundle identifier - " + identifier);
    for (const RunningApplication& application : runningApplicationsWithBundleIdentifier(identifier)) {
      application.forceTerminate();
    }
  }
  logProgress("Kill Wendle legacy processes - finished");
}

void planProcessTermination(RemovalPlan& plan) {
  for (const Component& component : components) {
    planProcesses(plan, rawValue(component.identifier), "is asked to quit; it may refuse");
  }
}

void planLegacyProcesses(RemovalPlan& plan, const std::vector<std::string>& bundleIdentifiers) {
  for (const std::string& identifier : bundleIdentifiers) planProcesses(plan, identifier, "is killed");
}
}  // namespace wendle
