#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>

#include "base/text.h"
#include "logging/log_record.h"
#include "property.h"
#include "report/run_report.h"

using namespace wendle;

static bool isOneLine(const std::string& text) {
  const auto isControl = [](char byte) { return byte >= 0 && byte < ' '; };
  return std::count_if(text.begin(), text.end(), isControl) == 1 && text.ends_with('\n');
}

static std::string takeRecord(FuzzedDataProvider& from) {
  const LogTime time(std::chrono::milliseconds(from.ConsumeIntegral<uint32_t>()) * 1000);
  const auto level = from.PickValueInArray({LogLevel::progress, LogLevel::failure});
  const std::string text = from.PickValueInArray({"", "Delete File - ", "Run `", "Failed to "}) +
                           from.ConsumeRandomLengthString(64) +
                           from.PickValueInArray({"", " - success", "` - success"});
  std::string line = logRecord(time, level, "uninstaller", text);
  property("a record is one line without DEL", isOneLine(line) && line.find(0x7F) == std::string::npos);
  const auto read = parseLogRecord(line.substr(0, line.size() - 1));
  property("a record reads as it was written", read && read->time == time && read->text == text);
  return line;
}

static void checkReport(const std::string& text) {
  const auto log = parseLog(text);
  const auto report = log ? makeReport(*log) : std::nullopt;
  if (!report || asText(*report).empty()) return;
  const std::string json = asJson(*report, {"/a.log", "pat"});
  property("JSON is one line of UTF-8", isUtf8(json) && isOneLine(json));
  const auto isFailure = [](const LogRecord& record) { return record.kind == RecordKind::failure; };
  const auto failures = std::count_if(log->records.begin(), log->records.end(), isFailure);
  property("no failure is passed over", std::ssize(report->failed) >= failures);
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, size_t size) {
  checkReport(std::string(bytes, bytes + size));
  FuzzedDataProvider from(bytes, size);
  std::string log = logRecord({}, LogLevel::progress, "x", "Wendle Uninstaller - started in full mode");
  while (from.remaining_bytes() > 0)
    log += from.ConsumeIntegral<uint8_t>() > 250 ? from.ConsumeRandomLengthString(64) : takeRecord(from);
  checkReport(log);
  return 0;
}
