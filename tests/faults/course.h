#pragma once

#include <gtest/gtest.h>

#include "support/clean_run.h"

namespace wendle::test {

using mac::Fault;
using mac::FaultKind;
using mac::SimulatedMac;

// What a run looks like in which one tool runs badly once (or is away from there on), worked out from a clean
// run: all that does not depend on that tool's work stays as it is.
struct Course {
  Lines log, commands;
  std::string outcome;
};
[[nodiscard]] Course courseWith(const Fault& fault, std::size_t at, const CleanRun& clean);

}  // namespace wendle::test
