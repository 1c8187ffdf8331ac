#include "logging/log_record.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace wendle {
namespace {

std::string formatted(LogTime time, const char* format) {
  const std::time_t seconds =
      std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
  std::tm utc{};
  ::gmtime_r(&seconds, &utc);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &utc)};
}

std::string withMilliseconds(LogTime time) {
  const auto inSecond = time - std::chrono::floor<std::chrono::seconds>(time);
  const auto count = std::chrono::duration_cast<std::chrono::milliseconds>(inSecond).count();
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03dZ", static_cast<int>(count));
  return formatted(time, "%Y-%m-%dT%H:%M:%S") + fraction.data();
}

std::string record(LogTime time, std::string_view kind, std::string_view logger, std::string_view text) {
  std::string line = withMilliseconds(time);
  line.append(" [")
      .append(kind)
      .append("] ")
      .append(logger)
      .append(": ")
      .append(escapedText(text))
      .append("\n");
  return line;
}

}  // namespace

std::string escapedText(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '\\') {
      result += "\\\\";
    } else if (character == '\n') {
      result += "\\n";
    } else if (character == '\r') {
      result += "\\r";
    } else if (character == '\t') {
      result += "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      result += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
    } else {
      result += character;
    }
  }
  return result;
}

std::string logRecord(LogTime time, LogLevel level, std::string_view logger, std::string_view text) {
  return record(time, std::to_string(static_cast<int>(level)), logger, text);
}

std::string errorRecord(LogTime time, std::string_view logger, std::string_view text) {
  return record(time, "error", logger, text);
}

std::string fileNameTimeStamp(LogTime time) { return formatted(time, "%Y%m%dT%H%M%SZ"); }

}  // namespace wendle
