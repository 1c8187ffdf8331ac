#include "support/clean_run.h"

#include <filesystem>

#include "simulated_mac/shared.h"

namespace wendle::test {

CleanRun cleanRun(const std::string& mode) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  const mac::Snapshot before = mac.snapshot();
  const RunResult seen = runUninstaller(mac, {"--" + mode});
  return {mode, before, mac.snapshot(), seen, toolRuns(mac)};
}

std::vector<mac::ToolRun> toolRuns(const mac::SimulatedMac& mac) {
  return mac::readJournal(mac.at(mac::journalFolder));
}

std::string nameOf(const mac::ToolRun& run) { return std::filesystem::path(run.tool).filename(); }

Lines commandsOf(const std::vector<mac::ToolRun>& runs) {
  Lines lines;
  for (const mac::ToolRun& run : runs) lines.push_back(commandOf(run));
  return lines;
}

mac::Fault faultAt(const std::vector<mac::ToolRun>& tools, std::size_t at, mac::Fault fault) {
  fault.tool = nameOf(tools.at(at));
  fault.run = 0;
  for (std::size_t i = 0; i <= at; ++i) fault.run += nameOf(tools[i]) == fault.tool ? 1 : 0;
  return fault;
}

bool isOfShell(const mac::ToolRun& run) {
  const std::string name = nameOf(run);
  const bool isRead = name == "defaults" && run.arguments.at(0) == "read";
  return isRead || name == "zsh" || name == "PlistBuddy" || name == "killall";
}

}  // namespace wendle::test
