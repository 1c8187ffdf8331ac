#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "base/text.h"
#include "logging/log_record.h"
#include "report/run_report.h"

namespace wendle {
namespace {

std::string secondsText(std::chrono::milliseconds duration) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(duration.count()) / 1000);
  return text.data();
}

std::string section(const std::string& heading, const std::vector<std::string>& lines) {
  std::string text = heading + ": " + (lines.empty() ? "nothing" : std::to_string(lines.size())) + "\n";
  for (const std::string& line : lines) text += "  " + escapedText(line) + "\n";
  return text;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const std::string_view before = text;
    const auto character = takeUtf8Character(text);
    if (!character) {
      result += "\\ufffd";
      text.remove_prefix(1);
    } else if (*character == '"' || *character == '\\') {
      (result += '\\') += before.front();
    } else if (isControlCharacter(*character)) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(*character));
      result += escape.data();
    } else {
      result.append(before.substr(0, before.size() - text.size()));
    }
  }
  return result + "\"";
}

template <typename Items, typename Render>
std::string array(const Items& items, Render render) {
  std::string text = "[";
  for (const auto& item : items) text.append(text.size() > 1 ? ", " : "").append(render(item));
  return text + "]";
}

std::string asJsonObject(const FailedItem& failed) {
  return "{\"item\": " + quoted(failed.item) + ", \"cause\": " + quoted(failed.cause) + "}";
}

}  // namespace

std::string asSentence(const RunReport& report) {
  return report.mode + " took " + secondsText(report.duration) +
         " seconds: " + std::to_string(report.removed.size()) + " removed, " +
         std::to_string(report.notThere.size()) + " not there, " + std::to_string(report.failed.size()) +
         " failed; it " + (report.reachedEnd ? "reached" : "did not reach") + " its last line.";
}

std::string asText(const RunReport& report) {
  std::string text = report.mode + ", started " + utcText(report.start) + "\n";
  text += section("Removed", report.removed);
  text += section("Not there", report.notThere);
  text += section("Tools that ran to their end", report.toolsRun);
  std::vector<std::string> failures;
  for (const auto& [item, cause] : report.failed)
    failures.push_back(cause.empty() ? item : item + ": " + cause);
  text += section("Failed", failures);
  return text + asSentence(report) + "\n";
}

std::string asJson(const RunReport& report, const ReportedLog& log) {
  std::string text = "{\"schema\": 1, \"uninstallerVersion\": " + quoted(UNINSTALLER_VERSION);
  text += ", \"user\": " + quoted(log.user) + ", \"log\": " + quoted(log.path);
  text += ", \"mode\": " + quoted(report.mode);
  text += ", \"started\": " + quoted(utcText(report.start));
  text += ", \"seconds\": " + secondsText(report.duration);
  text += ", \"removed\": " + array(report.removed, quoted);
  text += ", \"notThere\": " + array(report.notThere, quoted);
  text += ", \"toolsRun\": " + array(report.toolsRun, quoted);
  text += ", \"failed\": " + array(report.failed, asJsonObject);
  text += std::string(", \"reachedEnd\": ") + (report.reachedEnd ? "true" : "false");
  return text + "}\n";
}

}  // namespace wendle
