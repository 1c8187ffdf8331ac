#include "support/clean_run.h"

#include <filesystem>
#include <set>

namespace wendle::test {
namespace {
// Its first word, which for a shell is that of its command line.
std::string toUse(const mac::ToolRun& run) {
  const std::string& words = run.tool == "/bin/zsh" ? run.arguments.at(1) : run.arguments.at(0);
  return run.tool + " " + words.substr(0, words.find(' '));
}
}  // namespace

CleanRun cleanRun(const std::string& mode) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  const mac::Snapshot before = mac.snapshot();
  const RunResult seen = runUninstaller(mac, {"--" + mode});
  return {mode, before, mac.snapshot(), seen};
}

std::vector<std::size_t> CleanRun::runsToFault(bool isThorough) const {
  std::set<std::string> uses;
  std::vector<std::size_t> places;
  for (std::size_t at = seen.tools.size(); at-- > 0;) {
    if (uses.insert(toUse(seen.tools[at])).second || (isThorough && !isSlow())) places.push_back(at);
  }
  return {places.rbegin(), places.rend()};
}

mac::Fault faultAt(const std::vector<mac::ToolRun>& tools, std::size_t at, mac::Fault fault) {
  const auto nameAt = [&](std::size_t i) { return std::filesystem::path(tools.at(i).tool).filename(); };
  fault.tool = nameAt(at);
  fault.run = 0;
  for (std::size_t i = 0; i <= at; ++i) fault.run += nameAt(i) == fault.tool ? 1 : 0;
  return fault;
}
}  // namespace wendle::test
