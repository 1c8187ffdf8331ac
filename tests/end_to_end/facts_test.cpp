// What the simulated Mac claims of macOS's tools is one table: it holds here, and the page shows it.
#include <gtest/gtest.h>

#include <cstdlib>
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
  const std::string tables = ::testing::TempDir() + "ledger";
  ASSERT_EQ(std::system(("'" + source + "/simulated_mac/facts/ledger' >'" + tables + "'").c_str()), 0);
  std::stringstream table, page;
  table << std::ifstream(tables).rdbuf();
  page << std::ifstream(source + "/docs/simulated-mac.md").rdbuf();
  EXPECT_NE(page.str().find("\n\n" + table.str() + "\n"), std::string::npos)
      << "docs/simulated-mac.md has another table than simulated_mac/facts/ledger prints";
}

}  // namespace
}  // namespace wendle::test
