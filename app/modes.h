#pragma once

#include <array>
#include <string_view>

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

}  // namespace wendle
