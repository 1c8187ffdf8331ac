#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "app/modes.h"

namespace wendle {

enum class Question { run, preview, leftovers, help, version };

// What wendle-uninstall-report was asked.
struct CommandLine {
  Question question = Question::run;
  bool wantsJson = false;
  bool wantsRootPaths = false;                        // of a preview
  std::optional<Mode> mode;                           // of a preview
  std::string since;                                  // of a run: as it was given
  std::optional<std::chrono::sys_seconds> sinceTime;  // and the time that it means
  std::string process;                                // of a run: digits; empty for any
  bool wantsRecheck = false;                          // of a run
  std::string file;                                   // of a run: its log; empty for the newest
  std::string mistake;  // what is wrong with the words, as a sentence; empty for nothing
};

// The question in `words`, which are the arguments without the program's name.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& words);

// What --help prints.
extern const char* const reportUsage;

}  // namespace wendle
