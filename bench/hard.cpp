// bench_hard UNINSTALLER REFERENCE ROUNDS: runs --hard and the reference script in turn, each on a fresh
// simulated Mac with an installed client. A line each: which, seconds by the clock, own processor seconds.
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "simulated_mac/client_fixture.h"
#include "simulated_mac/simulated_mac.h"

namespace {

void measure(const char* name, const std::vector<std::string>& command) {
  auto mac = wendle::mac::SimulatedMac::scratch();
  wendle::mac::installClient(mac);
  const auto result = mac.run(TIMER, command);
  std::istringstream times(result.err.substr(result.err.rfind('\n', result.err.size() - 2) + 1));
  double wall = 0;
  double processor = 0;
  if (result.outcome != "exit 0" || !(times >> wall >> processor)) {
    std::cerr << name << " ended with " << result.outcome << ": " << result.err << '\n';
    std::exit(1);
  }
  std::cout << name << ' ' << wall / 1e9 << ' ' << processor / 1e9 << std::endl;
}

}  // namespace

int main(int, char** words) {
  const std::string inMac = "/host";
  for (int round = 0; round < std::atoi(words[3]); ++round) {
    measure("ours", {inMac + words[1], "--hard"});
    measure("theirs", {inMac + "/usr/bin/zsh", inMac + words[2]});
  }
}
