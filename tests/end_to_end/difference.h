#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "support/run_result.h"

namespace wendle::test {

using mac::home;
using mac::SimulatedMac;

// `lines` with each line that equals the first of a pair replaced by the lines of the second.
using Edit = std::pair<std::string, Lines>;
using Edits = std::vector<Edit>;

// One thing differs from a Mac without the client: which lines of the log and which tool runs differ then, in
// a list of edits; no other line may.
struct Difference {
  std::string name;
  std::string mode;
  std::function<void(SimulatedMac&)> arrange;
  Edits log;
  Edits tools = {};
  Lines gone = {};  // what was arranged and must not be there afterwards
  Lines kept = {};  // and what must be

  friend void PrintTo(const Difference& difference, std::ostream* out) { *out << difference.name; }
};

class DifferenceTest : public testing::TestWithParam<Difference> {};

inline std::string nameOf(const testing::TestParamInfo<Difference>& info) { return info.param.name; }

inline std::string progress(const std::string& text) { return "[1] uninstaller: " + text; }

Edit after(const std::string& line, Lines added);

}  // namespace wendle::test
