// What the simulated Mac claims of macOS's tools is one table: it holds here, and the page shows it.
#include <gtest/gtest.h>

#include <cstdio>
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
  FILE* ledger = ::popen(("'" + source + "/simulated_mac/facts/ledger'").c_str(), "r");
  ASSERT_NE(ledger, nullptr);
  std::string table;
  for (int c = std::fgetc(ledger); c != EOF; c = std::fgetc(ledger)) table += static_cast<char>(c);
  EXPECT_EQ(::pclose(ledger), 0);
  std::stringstream page;
  page << std::ifstream(source + "/docs/simulated-mac.md").rdbuf();
  EXPECT_NE(page.str().find("\n\n" + table + "\n"), std::string::npos)
      << "docs/simulated-mac.md has another table than simulated_mac/facts/ledger prints";
}

}  // namespace
}  // namespace wendle::test
