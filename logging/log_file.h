#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "base/unique_fd.h"
#include "logging/log_record.h"
#include "logging/logger.h"

namespace wendle {
// The directory with one log file for each run of one system: <library>/Logs/Wendle. A link in the place of
// `Logs`, `Wendle` or a log file is never followed: then there is no log.
class LogDirectory {
 public:
  static constexpr size_t filesKept = 10;

  LogDirectory(std::string libraryDirectory, std::string system);

  [[nodiscard]] std::string path() const { return libraryDirectory_ + "/Logs/Wendle"; }

  // Makes the file of the run that began at `start`, and the directory where it is missing; mode 0600 and
  // 0700. A file that this user's run of the same second and process number has left is continued. Not open
  // when the file cannot be made.
  [[nodiscard]] UniqueFd createFile(LogTime start) const;

  // The names of the log files of this system, newest first; empty when there is no directory. Other names
  // are left out.
  [[nodiscard]] std::vector<std::string> sortedNames() const;

  // Removes all log files but `filesKept`: that of the run that began at `start`, whatever the others' names
  // say of the clock, and the newest others. Removes nothing else in the directory.
  void removeOldFiles(LogTime start) const;

 private:
  enum class IfMissing { create, giveUp };
  [[nodiscard]] UniqueFd open(IfMissing ifMissing) const;
  [[nodiscard]] std::string ownName(LogTime start) const;
  [[nodiscard]] bool isLogFileName(std::string_view name) const;

  std::string libraryDirectory_;
  std::string system_;
};

// The log file of one run, made with its first record: no record, no file. Each record is one write(2).
// A log that cannot be written stops nothing: its records are lost. One of which a part was written, as on a
// full disk, stays a line of its own.
class LogFile : public LogDestination {
 public:
  LogFile(LogDirectory directory, LogTime start);

  void write(std::string_view record) override;

 private:
  LogDirectory directory_;
  LogTime start_;
  std::once_flag created_;
  UniqueFd file_;
  bool isWithinLine_ = false;
};
}  // namespace wendle
