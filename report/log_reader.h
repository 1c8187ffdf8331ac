#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "logging/log_record.h"

namespace wendle {
// The time that `text` is, as 2026-11-21T07:40:12Z or with milliseconds as 2026-11-21T07:40:12.345Z; none for
// any other text.
[[nodiscard]] std::optional<UtcTime> parseUtcTime(std::string_view text);

enum class RecordKind { progress, failure, error };  // [1], [4], [error]

// One record of a log, as it was before its text was escaped.
struct LogRecord {
  UtcTime time;
  RecordKind kind = RecordKind::progress;
  std::string logger;
  std::string text;
};

// The record that `line`, without its line end, holds; none when it is no record.
[[nodiscard]] std::optional<LogRecord> parseLogRecord(std::string_view line);

struct LogText {
  std::vector<LogRecord> records;
  std::vector<size_t> unreadableLines;  // counted from 1: damaged, or not the log's
  bool isCutOff = false;  // the last line has no line end: its writer was stopped there; it is left out
};

// The records of a whole log; none when its first line is no record.
[[nodiscard]] std::optional<LogText> parseLog(std::string_view text);
}  // namespace wendle
