#pragma once

#include <string_view>

namespace wendle {

// Somewhere records go.
class LogDestination {
 public:
  LogDestination() = default;
  LogDestination(const LogDestination&) = delete;
  LogDestination& operator=(const LogDestination&) = delete;
  virtual ~LogDestination() = default;

  // Takes one whole record, its line end included. Never fails towards the caller; called from any thread.
  virtual void write(std::string_view record) = 0;
};

}  // namespace wendle
