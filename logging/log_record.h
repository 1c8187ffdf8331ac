#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "logging/logger.h"

namespace wendle {
using LogTime = std::chrono::system_clock::time_point;
using UtcTime = std::chrono::sys_time<std::chrono::milliseconds>;

// 2026-11-21T07:40:12.345Z
[[nodiscard]] std::string utcText(UtcTime time);

// Whether a terminal or a viewer may obey `character` instead of showing it: the controls (C0, DEL, C1), the
// bidirectional controls, and the line and paragraph separators.
[[nodiscard]] bool isControlCharacter(char32_t character);

// One line of printable text: a backslash and control characters are escaped (\\ \n \r \t, else \xNN for
// each byte). Bytes that are no UTF-8 stay as they are.
[[nodiscard]] std::string escapedText(std::string_view text);

// 2026-11-21T07:40:12.345Z [1] uninstaller: Unload Wendle agent - started
// One line with its line end. `text` is escaped, so that nothing a file is called can forge a record.
[[nodiscard]] std::string logRecord(LogTime time, LogLevel level, std::string_view logger,
                                    std::string_view text);

// The same for an error value: [error] stands where the level would.
[[nodiscard]] std::string errorRecord(LogTime time, std::string_view logger, std::string_view text);

// The start of a run as file names have it: 20261121T074012Z
[[nodiscard]] std::string fileNameTimeStamp(std::chrono::sys_seconds time);
}  // namespace wendle
