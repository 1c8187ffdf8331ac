#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/error.h"

namespace wendle {
using Texts = std::vector<std::string>;

inline void PrintTo(const Status& status, std::ostream* out) {
  *out << (status.ok() ? "success" : describe(status.error()));
}

// What `function` makes of each of `inputs`, in their order.
template <typename Function>
auto each(Function function, const Texts& inputs) {
  std::vector<decltype(function(inputs.front()))> results;
  for (const std::string& input : inputs) results.push_back(function(input));
  return results;
}

// Expects that `function` makes `want` of every one of `inputs`.
template <typename Want, typename Function>
void expectAll(const Want& want, Function function, const Texts& inputs) {
  for (const std::string& input : inputs) EXPECT_EQ(function(input), want) << testing::PrintToString(input);
}
}  // namespace wendle
