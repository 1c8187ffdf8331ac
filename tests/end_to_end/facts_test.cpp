// What the simulated Mac claims of macOS's tools is one table: it holds here, and the page shows it.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/run_result.h"

namespace wendle::test {
namespace {
const std::string source = SOURCE_DIRECTORY;

TEST(FactsTest, HoldInTheSimulatedMac) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  const mac::SessionResult result =
      mac.run("/bin/zsh", {"-f", "/host" + source + "/simulated_mac/facts/check"}, {});
  EXPECT_EQ(result.outcome, "exit 0") << result.out;
  EXPECT_EQ(result.err, "");
  EXPECT_NE(result.out.find(" same, 0 different, "), std::string::npos) << result.out;
}

TEST(FactsTest, StandInThePageAboutTheSimulatedMac) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  const mac::SessionResult ledger = mac.run("/bin/bash", {"/host" + source + "/simulated_mac/facts/ledger"},
                                            {.environment = {"PATH=/usr/bin:/host/usr/bin"}});
  std::stringstream page;
  page << std::ifstream(source + "/docs/simulated-mac.md").rdbuf();
  EXPECT_NE(page.str().find("\n\n" + ledger.out + "\n"), std::string::npos)
      << "docs/simulated-mac.md has another table than simulated_mac/facts/ledger prints: " << ledger.err;
}
}  // namespace
}  // namespace wendle::test
