// Each tool of each mode runs badly once, in each of its runs.
#include <algorithm>
#include <map>
#include <set>

#include "course.h"
#include "simulated_mac/shared.h"
#include "simulated_mac/verdict.h"

namespace wendle::test {
namespace {

struct Misbehaviour {
  std::string name;
  Fault fault;

  bool isHarmless() const {
    using enum FaultKind;
    return !std::set{missing, notExecutable, exits, killed, notUtf8}.contains(fault.kind);
  }
};

// How the paths of items begin or go on that only this tool takes away.
const std::map<std::string, Lines> worksOf{{"launchctl", {"Jobs.plist: ", "job process "}},
                                           {"pluginkit", {"Elections.plist: "}},
                                           {"tccutil", {"TCC.plist: "}},
                                           {"mdfind", {".app"}},
                                           {"security", {"login.keychain: "}},
                                           {"rm", {"WendleExtension.app"}},
                                           {"zsh", {"dock.plist: Wendle", "process Dock"}},
                                           {"defaults", {"dock.plist: Wendle", "process Dock"}},
                                           {"PlistBuddy", {"dock.plist: Wendle"}},
                                           {"killall", {"process Dock"}}};

bool isWorkOf(const std::string& tool, const std::string& path) {
  const Lines& parts = worksOf.at(tool);
  return std::any_of(parts.begin(), parts.end(),
                     [&](const auto& part) { return path.find(part) != std::string::npos; });
}

std::string firstDifference(Lines wanted, Lines seen) {
  wanted.emplace_back("(end)");
  seen.emplace_back("(end)");
  const auto [w, s] = std::mismatch(wanted.begin(), wanted.end(), seen.begin(), seen.end());
  return w == wanted.end() ? "" : "wanted: " + *w + "\nseen:   " + *s;
}

class EveryToolRunTest : public testing::TestWithParam<std::tuple<std::string, Misbehaviour>> {
 protected:
  void expectCourse(std::size_t at) {
    const Misbehaviour& misbehaviour = std::get<1>(GetParam());
    Fault fault = faultAt(clean_.tools, at, misbehaviour.fault);
    // What the shell starts is read to the end of file: it takes a grandchild that lets go.
    if (fault.kind == FaultKind::leavesGrandchild && isOfShell(clean_.tools[at])) fault.number = 50;
    SimulatedMac mac = SimulatedMac::scratch();
    mac::installClient(mac);
    mac.setFault(fault);
    const RunResult seen = runUninstaller(mac, {"--" + clean_.mode});

    const Course course = courseWith(fault, at, clean_);
    EXPECT_EQ(firstDifference(course.log, seen.log), "");
    EXPECT_EQ(firstDifference(course.commands, commandsOf(toolRuns(mac))), "");
    EXPECT_EQ(seen.outcome, course.outcome);
    expectSilence(seen, fault);
    const mac::Verdict verdict = judge(mac, {"--" + clean_.mode}, clean_.before, seen.processes);
    EXPECT_EQ(joined(verdict.outside), "");
    for (const std::string& path : verdict.leftBehind) {
      EXPECT_TRUE(!misbehaviour.isHarmless() && (course.outcome != "exit 0" || isWorkOf(fault.tool, path)))
          << path;
    }
  }

  // Whatever is printed comes from the tools.
  void expectSilence(const RunResult& seen, const Fault& fault) {
    const Lines printed = mac::split(clean_.seen.out, '\n');
    std::set<std::string> ofTools(printed.begin(), printed.end());
    ofTools.insert({"", fault.text, "\xff\xfe"});
    for (const std::string& line : mac::split(seen.out + seen.err, '\n'))
      EXPECT_TRUE(ofTools.contains(line)) << line;
  }

  const CleanRun clean_ = cleanRun(std::get<0>(GetParam()));
};

TEST_P(EveryToolRunTest, ChangesOnlyWhatNeedsItsWork) {
  for (std::size_t at = 0; at < clean_.tools.size() && !HasFailure(); at += TOOL_RUN_STRIDE) {
    SCOPED_TRACE("run " + std::to_string(at) + ": " + commandsOf(clean_.tools)[at]);
    expectCourse(at);
  }
}

const std::vector<Misbehaviour> misbehaviours{
    {"Missing", {"", 1, FaultKind::missing}},
    {"NotExecutable", {"", 1, FaultKind::notExecutable}},
    {"Exits", {"", 1, FaultKind::exits, 3, "refused."}},
    {"Killed", {"", 1, FaultKind::killed, 9}},
    {"FloodsOut", {"", 1, FaultKind::floodsOut}},
    {"FloodsErr", {"", 1, FaultKind::floodsErr}},
    {"FloodsBoth", {"", 1, FaultKind::floodsBoth}},
    {"NotUtf8", {"", 1, FaultKind::notUtf8}},
    {"LeavesGrandchild", {"", 1, FaultKind::leavesGrandchild, 0}},
    {"ReadsInput", {"", 1, FaultKind::readsInput}},
};

void PrintTo(const Misbehaviour& misbehaviour, std::ostream* out) { *out << misbehaviour.name; }

INSTANTIATE_TEST_SUITE_P(Tools, EveryToolRunTest,
                         testing::Combine(testing::ValuesIn(modes), testing::ValuesIn(misbehaviours)),
                         [](const auto& c) { return std::get<0>(c.param) + std::get<1>(c.param).name; });

}  // namespace
}  // namespace wendle::test
