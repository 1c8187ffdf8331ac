// What tests/on_a_mac does to a Mac that is thrown away, as far as a simulated one can show it: what is
// installed there, and how a run is judged.
#include <gtest/gtest.h>

#include "simulated_mac/client_fixture.h"
#include "simulated_mac/shared.h"
#include "support/clean_run.h"

namespace wendle::test {
namespace {
const std::string folder = std::string("/host") + SOURCE_DIRECTORY + "/tests/on_a_mac/";

// Runs the shell's words behind those that load the scripts; $items is the table.
mac::SessionResult runShell(mac::SimulatedMac& mac, const std::string& words) {
  const std::string load = "set -euo pipefail; scratch=/tmp items=/tmp/items; . " + folder + "places; . " +
                           folder + "client; /host" +
                           (mac::fs::canonical("/proc/self/exe").parent_path() / "client_items").string() +
                           " >$items\n";
  return mac.run("/bin/bash", {"-c", load + words},
                 {.environment = {"PATH=/usr/bin:/bin:/host/usr/bin:/host/bin"}, .startsProcesses = false});
}

// What lies in the Mac, its own lists and another user's folders aside.
Lines pathsIn(const mac::SimulatedMac& mac) {
  Lines paths;
  for (const auto& [path, entry] : mac.snapshot()) {
    if (path.find(": ") == std::string::npos && !path.starts_with("/Users/kim") && !path.starts_with("/tmp"))
      paths.push_back(path + (entry.type == mac::fs::file_type::symlink ? " -> " + entry.content : ""));
  }
  return paths;
}

// The commands that change what only macOS has, recorded.
const std::string recorders = R"(
  for command in open defaults launchctl security; do
    eval "$command() { echo $command \"\$@\" | paste -s -d ' ' | tr -s ' '; }"
  done
  mdimport() { :; }
  clang() { cat >$scratch/application; }
  pgrep() { :; }
  register=true
)";

TEST(OnAMacTest, InstallsTheClientOfTheTable) {
  mac::SimulatedMac want = mac::SimulatedMac::scratch(), seen = mac::SimulatedMac::scratch();
  mac::installClient(want);
  for (int time = 0; time < 2; ++time) {  // the next mode finds what the last one left
    const mac::SessionResult result = runShell(seen, recorders + "install_client");
    EXPECT_EQ(result.outcome + result.err, "exit 0");
    Lines done = mac::split(result.out, '\n');
    std::erase(done, "");
    expectText("on_a_mac.txt", "installed", done);
    EXPECT_EQ(joined(pathsIn(seen)), joined(pathsIn(want)));
  }
}

class JudgementTest : public testing::TestWithParam<std::string> {};

TEST_P(JudgementTest, FindsNothingInASimulatedRunAndAnyOneDifference) {
  const std::string mode = GetParam(), letter{static_cast<char>(mode[0] - 'a' + 'A')};
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  (void)runUninstaller(mac, {"--" + mode});
  const auto judge = [&](const std::string& change) {
    const std::string words = R"(
      places_of /Users/runner
      to_places_here <$(echo ~/Library/Logs/Wendle/*) >/tmp/log
      security() { /usr/bin/security "$1" "${@:4}"; }  # which knows no accounts here
      : >$scratch/started
      )" + change + "\n" + folder +
                              "compare_log /tmp/log " + mode +
                              " /Users/runner || true\neach_item judge_item " + letter;
    const mac::SessionResult result = runShell(mac, words);
    EXPECT_EQ(result.outcome + result.err, "exit 0");
    return mac::split(result.out, '\n');
  };
  EXPECT_EQ(judge(":"), Lines());
  EXPECT_EQ(judge("sed -i 5d /tmp/log").size(), 8U);  // a line of diff's, with three around it on each side
  EXPECT_EQ(judge("echo new >>/tmp/log").back(), "+new");
  EXPECT_EQ(judge("mkdir ~/Library/QuickLook/WendleQL.qlgenerator"),
            (Lines{"left behind: bundle /Users/pat/Library/QuickLook/WendleQL.qlgenerator"}));
  EXPECT_EQ(judge("rm ~/Library/QuickLook/WendleQL.qlgenerator -rf; rm ~/Documents/letter.txt"),
            (Lines{"gone, and on no list: file /Users/pat/Documents/letter.txt"}));
}

INSTANTIATE_TEST_SUITE_P(Modes, JudgementTest, testing::ValuesIn(modes),
                         [](const auto& mode) { return mode.param; });

TEST(OnAMacTest, RefusesAnythingButAMacThatIsThrownAway) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  const mac::Snapshot before = mac.snapshot();
  const auto refusal = [&](const std::string& words) {
    const mac::SessionResult result = runShell(mac, "uname() { echo $system; }; export -f uname; export " +
                                                        words + "; " + folder + "run_modes /bin/rm $items");
    EXPECT_EQ(result.outcome, "exit 2");
    return result.err;
  };
  EXPECT_NE(refusal("system=Linux CI=true WENDLE_THROWAWAY_MAC=yes").find("this is for a Mac"),
            std::string::npos);
  for (const char* words :
       {"system=Darwin", "system=Darwin CI=true", "system=Darwin WENDLE_THROWAWAY_MAC=yes"})
    EXPECT_NE(refusal(words).find("only CI=true and"), std::string::npos);
  EXPECT_NE(refusal("system=Darwin CI=true WENDLE_THROWAWAY_MAC=yes").find("it needs two programs"),
            std::string::npos);
  EXPECT_EQ(joined(mac::difference(before, mac.snapshot()).removed), "");
}
}  // namespace
}  // namespace wendle::test
