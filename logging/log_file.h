#pragma once

#include <mutex>

#include "logging/log_destination.h"
#include "logging/log_folder.h"

namespace wendle {

// The log file of one run, made with its first record: no record, no file. Each record is one write(2).
// A log that cannot be written stops nothing: its records are lost. One of which a part was written, as on a
// full disk, stays a line of its own.
class LogFile : public LogDestination {
 public:
  LogFile(LogFolder folder, LogTime start);

  void write(std::string_view record) override;

 private:
  LogFolder folder_;
  LogTime start_;
  std::once_flag created_;
  UniqueFd file_;
  bool isWithinLine_ = false;
};

}  // namespace wendle
