// The uninstaller outlives the application that starts it, and another uninstaller beside it.
#include <gtest/gtest.h>

#include <map>

#include "simulated_mac/verdict.h"
#include "support/clean_run.h"

namespace wendle::test {
namespace {

const std::map<std::string, std::string> partOfLastLine{
    {"updates", "WendleExtension"},  // its application, or its preference file when that has gone already
    {"soft", "Removal Completed"},
    {"hard", "Removal Completed"},
    {"full", "Preferences/com.wendle.DesktopClient.WendleExtension.plist"}};

// The log of each run, parted by the modes' first lines.
std::vector<Lines> logsOf(const Lines& log) {
  std::vector<Lines> logs;
  for (const std::string& line : log) {
    if (line.find("Wendle Uninstaller - started in") != std::string::npos) logs.emplace_back();
    if (!logs.empty()) logs.back().push_back(line);
  }
  return logs;
}

// What a mode writes about its steps, whatever it finds there.
Lines stepsOf(const Lines& log) {
  Lines steps = log;
  std::erase_if(steps, [](const std::string& line) {
    return line.find('/') != std::string::npos || line.find(" - ") == std::string::npos ||
           line.find("dock item") != std::string::npos || line.find(" - success") != std::string::npos;
  });
  return steps;
}

class LauncherTest : public testing::TestWithParam<std::string> {
 protected:
  // Runs the probe on an installed client; nothing outside the mode's list may be touched.
  RunResult launch(Lines command) {
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac::installClient(mac);
    for (const std::string& word : uninstallerCommand()) command.push_back(word);
    command.push_back("--" + mode_);
    RunResult seen = runProbe(mac, "launcher_probe", command);
    EXPECT_EQ(joined(judge(mac, {"--" + mode_}, clean_.before, seen.processes).outside), "");
    EXPECT_EQ(seen.outcome, "exit 0");
    return seen;
  }

  const std::string mode_ = GetParam();
  const CleanRun clean_ = cleanRun(mode_);
};

TEST_P(LauncherTest, MayDieWithItsWholeProcessGroup) {
  const std::string component = mode_ == "updates" ? ".WendleExtension" : "";
  const RunResult seen = launch({"client", "com.wendle.DesktopClient" + component});
  EXPECT_EQ(joined(seen.sequence), joined(clean_.seen.sequence));
}

TEST_P(LauncherTest, MayStartTwoAtTheSameTime) {
  const std::vector<Lines> logs = logsOf(launch({"twice"}).log);
  ASSERT_EQ(logs.size(), 2U);
  for (const Lines& log : logs) {
    EXPECT_EQ(joined(stepsOf(log)), joined(stepsOf(clean_.seen.log)));
    EXPECT_NE(log.back().find(partOfLastLine.at(mode_)), std::string::npos) << log.back();
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, LauncherTest, testing::ValuesIn(modes),
                         [](const auto& c) { return c.param; });

}  // namespace
}  // namespace wendle::test
