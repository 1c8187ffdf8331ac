#pragma once

#include <string>
#include <vector>

#include "base/unique_fd.h"
#include "logging/log_record.h"

namespace wendle {

// The folder with one log file for each run of one system: <library>/Logs/Wendle. A link in the place of
// `Logs`, `Wendle` or a log file is never followed: then there is no log.
class LogFolder {
 public:
  static constexpr size_t filesKept = 10;

  LogFolder(std::string libraryDirectory, std::string system);

  [[nodiscard]] std::string path() const { return libraryDirectory_ + "/Logs/Wendle"; }

  // Makes the file of the run that began at `start`, and the folder where it is missing; mode 0600 and 0700.
  // A file that this user's run of the same second and process number has left is continued.
  // Not open when the file cannot be made.
  [[nodiscard]] UniqueFd createFile(LogTime start) const;

  // The names of the log files of this system, newest first; empty when there is no folder. Other names are
  // left out.
  [[nodiscard]] std::vector<std::string> sortedNames() const;

  // Removes all log files but `filesKept`: that of the run that began at `start`, whatever the others' names
  // say of the clock, and the newest others. Removes nothing else in the folder.
  void removeOldFiles(LogTime start) const;

 private:
  enum class IfMissing { make, giveUp };
  [[nodiscard]] UniqueFd open(IfMissing ifMissing) const;
  [[nodiscard]] std::string ownName(LogTime start) const;
  [[nodiscard]] bool isLogFileName(std::string_view name) const;

  std::string libraryDirectory_;
  std::string system_;
};

}  // namespace wendle
