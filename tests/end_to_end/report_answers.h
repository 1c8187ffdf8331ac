// Questions to wendle-uninstall-report, and what its answers hold.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "support/run_result.h"

namespace wendle::test {
using nlohmann::json;

inline json ask(mac::SimulatedMac& mac, const Lines& question, bool startsProcesses = false) {
  const RunResult seen = runReport(mac, question, {.startsProcesses = startsProcesses});
  EXPECT_EQ(seen.err, "");
  return json::parse(seen.out);
}

// What a preview calls its items of a kind: keychain items, Dock tiles.
inline std::set<std::string> labels(const json& preview, const std::string& kind) {
  std::set<std::string> found;
  for (const json& item : preview.at("items")) {
    if (item.at("kind") == kind) found.insert(std::string(item.at("label")));
  }
  return found;
}
}  // namespace wendle::test
