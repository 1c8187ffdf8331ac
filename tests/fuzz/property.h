#pragma once

#include <cstdio>
#include <cstdlib>

namespace wendle {
// A finding, unless it holds.
inline void property(const char* sentence, bool holds) {
  if (!holds) std::fprintf(stderr, "Does not hold: %s\n", sentence), std::abort();
}
}  // namespace wendle
