// bench_hard UNINSTALLER REFERENCE ROUNDS: runs --hard and the reference script in turn, each on a fresh
// simulated Mac with an installed client, and sees to it that either did all of the work and nothing else.
// A line each: which, seconds by the clock, own processor seconds.
// bench_hard calls UNINSTALLER: the system calls of --hard itself, as `strace -c` counts them.
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "simulated_mac/client_fixture.h"
#include "simulated_mac/simulated_mac.h"
#include "simulated_mac/verdict.h"

namespace {
using namespace wendle::mac;

void measure(const char* name, const std::vector<std::string>& command) {
  SimulatedMac mac = SimulatedMac::scratch();
  installClient(mac);
  const Snapshot before = mac.snapshot();
  const SessionResult result = mac.run(TIMER, command);
  std::istringstream times(result.err.substr(result.err.rfind('\n', result.err.size() - 2) + 1));
  double wall = 0;
  double processor = 0;
  if (result.outcome != "exit 0" || !(times >> wall >> processor)) {
    std::cerr << name << " ended with " << result.outcome << ": " << result.err << '\n';
    std::exit(1);
  }
  const Verdict verdict = judge(mac, {"--hard"}, before, result.processes);
  for (const auto* wrong : {&verdict.leftBehind, &verdict.outside}) {
    for (const std::string& path : *wrong) {
      std::cerr << name << (wrong == &verdict.outside ? " touched " : " left ") << path << '\n';
    }
    if (!wrong->empty()) std::exit(1);
  }
  std::cout << name << ' ' << wall / 1e9 << ' ' << processor / 1e9 << std::endl;
}

void countCalls(const std::string& uninstaller) {
  SimulatedMac mac = SimulatedMac::scratch();
  installClient(mac);
  const std::string table = "/Users/Shared/calls";
  const SessionResult result = mac.run("/usr/bin/strace", {"-c", "-o", table, uninstaller, "--hard"});
  if (result.outcome != "exit 0") std::cerr << result.err;
  std::cout << mac.read(table);
}
}  // namespace

int main(int count, char** words) {
  const std::string inMac = "/host";
  if (count == 3 && std::string_view(words[1]) == "calls") return countCalls(inMac + words[2]), 0;
  if (count != 4) return 2;
  for (int round = 0; round < std::atoi(words[3]); ++round) {
    measure("ours", {inMac + words[1], "--hard"});
    measure("theirs", {inMac + "/usr/bin/zsh", inMac + words[2]});
  }
}
