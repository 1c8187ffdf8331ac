#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/removal_plan.h"

namespace wendle {
// `updates` deletes the search extension's application and preferences, kills it, and resets its permissions;
// deletes all launch agents of the client, after unloading them, with its Quick Look generator; and has its
// Finder Sync extension ignored. `hard` takes the client out, but keeps copies on other volumes, in build
// directories and in backups; `full` deletes those too; `soft` keeps the vendor's applications directory as
// well.
enum class Mode { soft, hard, updates, full };

struct ModeSwitch {
  std::string_view argument;  // on the command line, to the letter
  Mode mode;
  std::string_view nameInLog;
};

inline constexpr std::array<ModeSwitch, 4> modeSwitches{{{"--soft", Mode::soft, "keep applications"},
                                                         {"--hard", Mode::hard, "uninstall completely"},
                                                         {"--updates", Mode::updates, "updates"},
                                                         {"--full", Mode::full, "full"}}};

[[nodiscard]] std::string modeSwitch(Mode mode);  // --hard
[[nodiscard]] std::string startLine(Mode mode);   // what the log of a run begins with

// The mode of the first of `arguments` that is exactly a mode switch; none when there is none. The
// executable's path, the first element, is looked at like the others.
[[nodiscard]] std::optional<Mode> chosenMode(const std::vector<std::string>& arguments);

// Runs a mode of the shared uninstaller to its end: on macOS of AFXWendleUninstaller's [R].
void runMode(Mode mode);

// Runs the mode: its start line, then its steps one after another. No step reports a failure here: each logs
// its own, and the next one runs whatever happened. Throws what nothing is meant to catch (LaunchException,
// no memory).
void runSteps(Mode mode);

// What a run of the mode by this process's user would do now. Changes nothing and logs nothing; starts tools
// that only read. Throws LaunchException when one of them cannot be started.
[[nodiscard]] RemovalPlan planMode(Mode mode);
}  // namespace wendle
