#include "logging/log_record.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "base/text.h"

namespace wendle {
static std::string formatted(std::chrono::sys_seconds time, const char* format) {
  const std::time_t seconds = time.time_since_epoch().count();
  std::tm utc{};
  ::gmtime_r(&seconds, &utc);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &utc)};
}

static std::string record(LogTime time, std::string_view kind, std::string_view logger,
                          std::string_view text) {
  std::string line = utcText(std::chrono::floor<std::chrono::milliseconds>(time));
  line.append(" [")
      .append(kind)
      .append("] ")
      .append(logger)
      .append(": ")
      .append(escapedText(text))
      .append("\n");
  return line;
}

static std::string escapeSequence(std::string_view bytes) {
  constexpr std::string_view characters = "\\\n\r\t";
  constexpr std::string_view letters = "\\nrt";
  if (const size_t known = characters.find(bytes); known != std::string_view::npos) {
    return {'\\', letters[known]};
  }
  constexpr std::string_view digits = "0123456789abcdef";
  std::string sequence;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    sequence += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
  }
  return sequence;
}

std::string utcText(UtcTime time) {
  const auto second = std::chrono::floor<std::chrono::seconds>(time);
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03dZ", static_cast<int>((time - second).count()));
  return formatted(second, "%Y-%m-%dT%H:%M:%S") + fraction.data();
}

bool isControlCharacter(char32_t character) {
  const auto isIn = [=](char32_t first, char32_t last) { return character >= first && character <= last; };
  return character < 0x20 || isIn(0x7F, 0x9F) || character == 0x61C || isIn(0x200E, 0x200F) ||
         isIn(0x2028, 0x202E) || isIn(0x2066, 0x2069);
}

std::string escapedText(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::string_view rest = text;
    const auto character = takeUtf8Character(text);
    if (!character) text.remove_prefix(1);
    const std::string_view bytes = rest.substr(0, rest.size() - text.size());
    const bool isEscaped = character && (*character == '\\' || isControlCharacter(*character));
    result += isEscaped ? escapeSequence(bytes) : std::string(bytes);
  }
  return result;
}

std::string logRecord(LogTime time, LogLevel level, std::string_view logger, std::string_view text) {
  return record(time, std::to_string(static_cast<int>(level)), logger, text);
}

std::string errorRecord(LogTime time, std::string_view logger, std::string_view text) {
  return record(time, "error", logger, text);
}

std::string fileNameTimeStamp(std::chrono::sys_seconds time) { return formatted(time, "%Y%m%dT%H%M%SZ"); }
}  // namespace wendle
