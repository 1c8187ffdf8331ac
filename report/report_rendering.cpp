#include <array>
#include <cstdio>

#include "logging/log_record.h"
#include "report/json.h"
#include "report/run_report.h"

namespace wendle {
static std::string secondsText(std::chrono::milliseconds duration) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(duration.count()) / 1000);
  return text.data();
}

static std::string countedSection(const std::string& heading, const std::vector<std::string>& lines) {
  std::string text = heading + ": " + (lines.empty() ? "nothing" : std::to_string(lines.size())) + "\n";
  for (const std::string& line : lines) text += "  " + escapedText(line) + "\n";
  return text;
}

static std::string failedJson(const FailedItem& failed) {
  return JsonObject().add("item", failed.item).add("cause", failed.cause).text();
}

std::string asSentence(const RunReport& report) {
  return report.mode + " took " + secondsText(report.duration) +
         " seconds: " + std::to_string(report.removed.size()) + " removed, " +
         std::to_string(report.notThere.size()) + " not there, " + std::to_string(report.failed.size()) +
         " failed; it " + (report.reachedEnd ? "reached" : "did not reach") + " its last line.";
}

std::string asText(const RunReport& report) {
  std::string text = report.mode + ", started " + utcText(report.start) + "\n";
  text += countedSection("Removed", report.removed);
  text += countedSection("Not there", report.notThere);
  text += countedSection("Tools that ran to their end", report.toolsRun);
  std::vector<std::string> failures;
  for (const auto& [item, cause] : report.failed)
    failures.push_back(cause.empty() ? item : item + ": " + cause);
  text += countedSection("Failed", failures);
  if (report.removedLater) text += countedSection("Removed later", *report.removedLater);
  return text + asSentence(report) + "\n";
}

std::string asJson(const RunReport& report, const ReportedLog& log) {
  JsonObject object = answerObject();
  object.add("user", log.user)
      .add("log", log.path)
      .add("mode", report.mode)
      .add("started", utcText(report.start))
      .addNumber("seconds", secondsText(report.duration))
      .addArray("removed", report.removed, jsonText)
      .addArray("notThere", report.notThere, jsonText)
      .addArray("toolsRun", report.toolsRun, jsonText)
      .addArray("failed", report.failed, failedJson);
  if (report.removedLater) object.addArray("removedLater", *report.removedLater, jsonText);
  return object.add("reachedEnd", report.reachedEnd).text() + "\n";
}
}  // namespace wendle
