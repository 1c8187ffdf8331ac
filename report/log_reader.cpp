#include "report/log_reader.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text.h"

namespace wendle {
static int numberAt(std::string_view text, size_t position, size_t length) {
  int number = 0;
  std::from_chars(text.data() + position, text.data() + position + length, number);
  return number;
}

static std::optional<UtcTime> takeTime(std::string_view& line) {
  const std::string_view text = line.substr(0, line.find(' '));
  line.remove_prefix(std::min(line.size(), text.size() + 1));
  return parseUtcTime(text);
}

static std::optional<RecordKind> takeKind(std::string_view& line) {
  constexpr std::array<std::pair<std::string_view, RecordKind>, 3> kinds{
      {{"[1] ", RecordKind::progress}, {"[4] ", RecordKind::failure}, {"[error] ", RecordKind::error}}};
  for (const auto& [text, kind] : kinds) {
    if (!line.starts_with(text)) continue;
    line.remove_prefix(text.size());
    return kind;
  }
  return std::nullopt;
}

// The character that an escape sequence stands for, taken off `text`, which begins behind the backslash.
static std::optional<char> takeEscaped(std::string_view& text) {
  constexpr std::string_view letters = "\\nrt";
  constexpr std::string_view meanings = "\\\n\r\t";
  if (text.empty()) return std::nullopt;
  if (const size_t known = letters.find(text.front()); known != std::string_view::npos) {
    text.remove_prefix(1);
    return meanings[known];
  }
  if (text.size() < 3 || text.front() != 'x') return std::nullopt;
  unsigned char byte = 0;
  const auto [end, failure] = std::from_chars(text.data() + 1, text.data() + 3, byte, 16);
  if (failure != std::errc() || end != text.data() + 3) return std::nullopt;
  text.remove_prefix(3);
  return static_cast<char>(byte);
}

static std::optional<std::string> unescaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const char first = text.front();
    text.remove_prefix(1);
    if (first != '\\') {
      result += first;
    } else if (const auto meant = takeEscaped(text)) {
      result += *meant;
    } else {
      return std::nullopt;
    }
  }
  return result;
}

std::optional<UtcTime> parseUtcTime(std::string_view text) {
  const bool hasMilliseconds = hasForm(text, "0000-00-00T00:00:00.000Z");
  if (!hasMilliseconds && !hasForm(text, "0000-00-00T00:00:00Z")) return std::nullopt;
  using namespace std::chrono;
  const year_month_day date(year(numberAt(text, 0, 4)), month(static_cast<unsigned>(numberAt(text, 5, 2))),
                            day(static_cast<unsigned>(numberAt(text, 8, 2))));
  const hours hour(numberAt(text, 11, 2));
  const minutes minute(numberAt(text, 14, 2));
  const seconds second(numberAt(text, 17, 2));
  if (!date.ok() || hour >= days(1) || minute >= hours(1) || second > minutes(1)) return std::nullopt;
  const milliseconds fraction(hasMilliseconds ? numberAt(text, 20, 3) : 0);
  return sys_days(date) + hour + minute + second + fraction;
}

std::optional<LogRecord> parseLogRecord(std::string_view line) {
  const auto time = takeTime(line);
  const auto kind = time ? takeKind(line) : std::nullopt;
  const size_t colon = line.find(": ");
  if (!kind || colon == std::string_view::npos) return std::nullopt;
  auto text = unescaped(line.substr(colon + 2));
  if (!text) return std::nullopt;
  return LogRecord{*time, *kind, std::string(line.substr(0, colon)), std::move(*text)};
}

std::optional<LogText> parseLog(std::string_view text) {
  LogText log;
  for (size_t line = 1; !text.empty(); ++line) {
    const size_t end = text.find('\n');
    log.isCutOff = end == std::string_view::npos;
    if (log.isCutOff) break;
    if (auto record = parseLogRecord(text.substr(0, end))) {
      log.records.push_back(std::move(*record));
    } else if (line == 1) {
      return std::nullopt;
    } else {
      log.unreadableLines.push_back(line);
    }
    text.remove_prefix(end + 1);
  }
  if (log.records.empty()) return std::nullopt;
  return log;
}
}  // namespace wendle
