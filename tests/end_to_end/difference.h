#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "observed.h"

namespace wendle::test {

using mac::Fault;
using mac::FaultKind;
using mac::SimulatedMac;

// `lines` with each line that equals the first of a pair replaced by the lines of the second.
using Edit = std::pair<std::string, Lines>;
using Edits = std::vector<Edit>;

// One thing differs from a Mac without the client, or one tool misbehaves: which lines of the log and which
// tool runs differ then, in a list of edits; no other line may.
struct Difference {
  std::string name;
  std::string mode;
  std::function<void(SimulatedMac&)> arrange;
  Edits log;
  Edits tools = {};
  Lines gone = {};         // what was arranged and must not be there afterwards
  Lines kept = {};         // and what must be
  std::string cause = {};  // of an abnormal end, which cuts the log and the tool runs short
  std::string lastLogLine = {};
  std::string lastTool = {};  // none when no tool ran at all

  friend void PrintTo(const Difference& difference, std::ostream* out) { *out << difference.name; }
};

class DifferenceTest : public testing::TestWithParam<Difference> {};

inline std::string nameOf(const testing::TestParamInfo<Difference>& info) { return info.param.name; }

inline const std::string home = "/Users/pat";
inline const std::string library = home + "/Library";
inline const std::string noSuchFile =
    R"(: Error Domain=NSPOSIXErrorDomain Code=2 "No such file or directory")";

inline std::string progress(const std::string& text) { return "[1] uninstaller: " + text; }
inline std::string failure(const std::string& text) { return "[4] uninstaller: " + text; }
inline std::string error(const std::string& text) { return "[error] uninstaller: " + text; }
inline std::string cannotStart(const std::string& tool) {
  return "launch path not accessible: " + tool + noSuchFile;
}

Edit after(const std::string& line, Lines added);
Edit before(const std::string& line, Lines added);

std::function<void(SimulatedMac&)> faults(const std::vector<Fault>& faults);

}  // namespace wendle::test
