#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "report/log_reader.h"

namespace wendle {
struct FailedItem {
  std::string item;
  std::string cause;
};

// What the log of one run says became of everything. Items are file URLs, or what the log calls them.
struct RunReport {
  std::string mode;  // as its switch: --hard
  UtcTime start;
  std::chrono::milliseconds duration{};
  std::vector<std::string> removed;
  std::vector<std::string>
      notThere;  // looked for and absent; what the run itself had removed before is left out
  std::vector<std::string>
      toolsRun;                    // ran to their end, whatever they achieved: their exit status is ignored
  std::vector<FailedItem> failed;  // each with its cause
  std::optional<std::vector<std::string>> removedLater;  // by recheck(): not deleted, and gone by now
  // The run wrote its last line. With --updates that line may be followed by the search extension's
  // application, whose line is written when it is gone: a run that ended while rm was at it looks complete.
  bool reachedEnd = false;

  // Whether all went well: nothing failed, and the run reached its end. A missing item is no failure.
  [[nodiscard]] bool isGood() const { return failed.empty() && reachedEnd; }
};

// Where a report was read from.
struct ReportedLog {
  std::string path;
  std::string user;  // its owner's name, or the owner's number when it has no name
};

// None when the records are not those of a run: the first line names a mode.
[[nodiscard]] std::optional<RunReport> makeReport(const LogText& log);

// Looks at the disk for each item that could not be deleted, and moves those that are not there any more from
// `failed` to `removedLater`. A link counts as itself; what this user may not look at stays.
void recheck(RunReport& report);

// The run in one sentence, without a line end.
[[nodiscard]] std::string asSentence(const RunReport& report);

// For people: the lists, with line ends. What an item is called is escaped as in the log.
[[nodiscard]] std::string asText(const RunReport& report);

// One JSON object (RFC 8259), with a line end. Control characters as isControlCharacter() has them are
// escaped; bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string asJson(const RunReport& report, const ReportedLog& log);
}  // namespace wendle
