#pragma once

#include <array>
#include <string>
#include <string_view>

#include "client/removal_plan.h"

namespace wendle {

enum class Mode { soft, hard, updates, full };

struct ModeSwitch {
  std::string_view argument;  // on the command line, to the letter
  Mode mode;
  std::string_view nameInLog;  // the log of a run begins: Wendle Uninstaller - started in NAME mode
};

inline constexpr std::array<ModeSwitch, 4> modeSwitches{{{"--soft", Mode::soft, "keep applications"},
                                                         {"--hard", Mode::hard, "uninstall completely"},
                                                         {"--updates", Mode::updates, "updates"},
                                                         {"--full", Mode::full, "full"}}};

[[nodiscard]] std::string modeSwitch(Mode mode);  // --hard

// Runs the mode: its start line, then its steps one after another. No step reports a failure here: each logs
// its own, and the next one runs whatever happened. Throws what nothing is meant to catch (LaunchException,
// no memory).
void runSteps(Mode mode);

// What a run of the mode by this process's user would do now. Changes nothing and logs nothing; starts tools
// that only read. Throws LaunchException when one of them cannot be started.
[[nodiscard]] RemovalPlan planMode(Mode mode);

}  // namespace wendle
