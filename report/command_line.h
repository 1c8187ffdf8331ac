#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "app/modes.h"

namespace wendle {
enum class Command { run, preview, leftovers, help, version };

// What wendle-uninstall-report is to do.
struct CommandLine {
  Command command = Command::run;
  bool wantsJson = false;
  bool wantsRootPaths = false;                        // of a preview
  std::optional<Mode> mode;                           // of a preview
  std::string since;                                  // of a run: as it was given
  std::optional<std::chrono::sys_seconds> sinceTime;  // and the time that it means
  std::string process;                                // of a run: digits; empty for any
  bool wantsRecheck = false;                          // of a run
  std::string file;                                   // of a run: its log; empty for the newest
  std::string error;  // what is wrong with the arguments, as a sentence; empty for nothing
};

// The command line in `arguments`, which are those without the program's name.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments);

// What --help prints.
extern const char* const reportUsage;
}  // namespace wendle
