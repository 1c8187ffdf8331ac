// One tool of a mode runs badly once, or is away from then on. What is not its work stays as it is; what the
// log says of it stands in expected/faults.txt.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>

#include "simulated_mac/shared.h"
#include "simulated_mac/verdict.h"
#include "support/clean_run.h"

namespace wendle::test {
namespace {
using mac::FaultKind;

enum class Harm { none, inOneRun, fromThenOn };

struct Misbehaviour {
  std::string name;
  Harm harm;
  mac::Fault fault;
  // In every run; else in samples: no fault of ours was found by it in one run and not in another of the same
  // use.
  bool isThorough = false;

  friend void PrintTo(const Misbehaviour& misbehaviour, std::ostream* out) { *out << misbehaviour.name; }
};

// The shell and what it starts, all for the Dock.
bool isForDock(const mac::ToolRun& run) {
  const bool isRead = run.tool == "/usr/bin/defaults" && run.arguments.at(0) == "read";
  return isRead || std::regex_search(run.tool, std::regex("zsh|PlistBuddy|killall"));
}

// What finds a tool's work: its lines, those that depend on its answer, and the items that only it takes
// away.
std::regex toWorkPattern(const mac::ToolRun& run) {
  static const std::map<std::string, std::string> patterns{
      {"/bin/launchctl", "launchctl|Jobs.plist|job process"},
      {"/usr/bin/pluginkit", "pluginkit|Elections.plist"},
      {"/usr/bin/tccutil", "tccutil|permissions|TCC.plist"},
      {"/usr/bin/defaults", "defaults"},
      {"/usr/bin/mdfind", "mdfind|Delete Folder .*/Wendle[A-Z][a-z]+.app/|/Wendle[A-Z][a-z]+.app$"},
      {"/usr/bin/security", "security|Keychain Item|login.keychain"},
      {"/bin/rm", "/rm |emove /|WendleExtension.app"}};
  return std::regex(isForDock(run) ? "zsh|defaults|PlistBuddy|killall|[dD]ock" : patterns.at(run.tool));
}

// What tells the work of one run from that of the tool's others: part of an identifier, a path or a label.
std::string toSubject(const mac::ToolRun& run) {
  if (isForDock(run)) return "";
  if (run.tool == "/usr/bin/security") return run.arguments.at(2);
  const std::string path = std::regex_replace(run.arguments.back(), std::regex(".plist$|.app$"), "");
  return path.substr(path.find_last_of("./ ") + 1);
}

bool isStep(const std::string& line) {
  return std::regex_search(line, std::regex("^[^/`]* - (started|finished)$"));
}

Lines without(const std::regex& works, Lines lines) {
  std::erase_if(lines, [&](const auto& line) { return !isStep(line) && std::regex_search(line, works); });
  return lines;
}

// The lines of the one that the other does not have.
Lines missing(const Lines& lines, const Lines& other, const std::string& mark) {
  Lines result;
  for (const std::string& line : lines) {
    if (std::find(other.begin(), other.end(), line) == other.end()) result.push_back(mark + line);
  }
  return result;
}

class FaultedToolTest : public testing::TestWithParam<std::tuple<std::string, Misbehaviour>> {
 protected:
  RunResult runFaulted(std::size_t at) {
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    mac::installClient(mac);
    mac::Fault fault = faultAt(clean_.seen.tools, at, misbehaviour_.fault);
    // What the shell starts is read to the end of file: it takes a grandchild that lets go.
    if (fault.kind == FaultKind::leavesGrandchild && isForDock(clean_.seen.tools[at])) fault.number = 50;
    mac.setFault(fault);
    RunResult seen = runUninstaller(mac, {"--" + clean_.mode});
    const mac::Verdict verdict = judge(mac, {"--" + clean_.mode}, clean_.before, seen.processes);
    EXPECT_EQ(joined(verdict.outside), "");
    if (seen.outcome == "exit 0") expectLeftBehind(verdict.leftBehind, clean_.seen.tools[at]);
    return seen;
  }

  void expectLeftBehind(const Lines& paths, const mac::ToolRun& tool) const {
    const std::string subject = harm_ == Harm::fromThenOn ? "" : toSubject(tool);
    for (const std::string& path : paths) {
      EXPECT_TRUE(harm_ != Harm::none && path.find(subject) != std::string::npos &&
                  std::regex_search(path, toWorkPattern(tool)))
          << path << " was left behind";
    }
  }

  // Some tools are started without a way to tell that they cannot be; and the shell's answer must be UTF-8.
  bool endsTheRun(const mac::ToolRun& tool) const {
    if (misbehaviour_.fault.kind == FaultKind::notUtf8) return isForDock(tool);
    const std::regex startedWithoutError("pluginkit|mdfind|security|zsh");
    return harm_ == Harm::fromThenOn && std::regex_search(tool.tool, startedWithoutError);
  }

  // The sequence goes on to its end, or from the tool's run to the line that says why not.
  void expectSequence(RunResult seen, std::size_t at) const {
    const mac::ToolRun& tool = clean_.seen.tools[at];
    const std::regex works = harm_ == Harm::none ? std::regex("no line") : toWorkPattern(tool);
    Lines wanted = without(works, clean_.seen.sequence);
    EXPECT_EQ(seen.outcome, endsTheRun(tool) ? "signal 6" : "exit 0");
    if (endsTheRun(tool)) {
      EXPECT_GE(seen.tools.size(), at);
      EXPECT_TRUE(seen.sequence.back().starts_with("[1] module: Ended by an uncaught exception: "));
      seen.sequence.pop_back();
      wanted.resize(without(works, seen.sequence).size());
    }
    EXPECT_EQ(joined(without(works, seen.sequence)), joined(wanted));
  }

  // Whatever is printed comes from the tools.
  void expectSilence(const RunResult& seen) const {
    const Lines own{"", "refused.", "\xff\xfe"};
    const Lines tools = mac::split(clean_.seen.out, '\n');
    const Lines printed = mac::split(seen.out + seen.err, '\n');
    EXPECT_EQ(joined(missing(missing(printed, tools, ""), own, "")), "");
  }

  const Misbehaviour misbehaviour_ = std::get<1>(GetParam());
  const Harm harm_ = misbehaviour_.harm;
  const CleanRun clean_ = cleanRun(std::get<0>(GetParam()));
};

TEST_P(FaultedToolTest, ChangesOnlyWhatNeedsItsWork) {
  const std::vector<std::size_t> samples = clean_.runsToFault(false);
  Lines changes;
  for (const std::size_t at : clean_.runsToFault(misbehaviour_.isThorough)) {
    const std::string command = commandText(clean_.seen.tools[at]);
    // rm alone has the launcher's input, which does not end.
    if (misbehaviour_.fault.kind == FaultKind::readsInput && command.starts_with("/bin/rm")) continue;
    SCOPED_TRACE("run " + std::to_string(at) + ": " + command);
    const RunResult seen = runFaulted(at);
    expectSequence(seen, at);
    expectSilence(seen);
    if (HasFailure()) return;
    if (std::count(samples.begin(), samples.end(), at) == 0) continue;
    changes.push_back(command + ": " + seen.outcome);
    if (seen.outcome == "exit 0") mac::append(changes, missing(clean_.seen.sequence, seen.sequence, "- "));
    mac::append(changes, missing(seen.sequence, clean_.seen.sequence, "+ "));
  }
  if (harm_ != Harm::none) expectText("faults.txt", clean_.mode + " " + misbehaviour_.name, changes);
}

std::string toName(const testing::TestParamInfo<FaultedToolTest::ParamType>& info) {
  return std::get<0>(info.param) + std::get<1>(info.param).name;
}

// These two modes use all tools between them.
INSTANTIATE_TEST_SUITE_P(
    Tools, FaultedToolTest,
    testing::Combine(
        testing::Values("updates", "soft"),
        testing::Values(Misbehaviour{"Missing", Harm::fromThenOn, {"", 1, FaultKind::missing}},
                        Misbehaviour{"Exits", Harm::inOneRun, {"", 1, FaultKind::exits, 3, "refused."}, true},
                        Misbehaviour{"NotUtf8", Harm::inOneRun, {"", 1, FaultKind::notUtf8}},
                        Misbehaviour{"NotExecutable", Harm::fromThenOn, {"", 1, FaultKind::notExecutable}},
                        Misbehaviour{"Killed", Harm::inOneRun, {"", 1, FaultKind::killed, 9}},
                        Misbehaviour{"Floods", Harm::none, {"", 1, FaultKind::floods}},
                        Misbehaviour{"LeavesGrandchild", Harm::none, {"", 1, FaultKind::leavesGrandchild, 0}},
                        Misbehaviour{"ReadsInput", Harm::none, {"", 1, FaultKind::readsInput}})),
    toName);
}  // namespace
}  // namespace wendle::test
