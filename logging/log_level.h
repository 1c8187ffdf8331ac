#pragma once

namespace wendle {

// Levels are numbers; these two are in use.
enum class LogLevel : int {
  progress = 1,  // progress and information
  failure = 4,   // a failure that a step reports in its own words and then passes over
};

}  // namespace wendle
