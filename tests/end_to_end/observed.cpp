#include "observed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>

#include "simulated_mac/verdict.h"

namespace wendle::test {
namespace {

std::string withoutVariableNames(const std::string& text) {
  static const std::regex logFile(R"(uninstaller-\d{8}T\d{6}Z-\d+\.log)");
  static const std::regex toolPrefix(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d+ defaults\[\d+:\w+\])");
  return std::regex_replace(std::regex_replace(text, logFile, "LOGFILE"), toolPrefix, "DEFAULTS");
}

std::string withoutTime(const std::string& record) {
  static const std::regex form(
      R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z (\[(1|4|error)\] (uninstaller|module): .*)$)");
  std::smatch match;
  EXPECT_TRUE(std::regex_match(record, match, form)) << "no record: " << record;
  return withoutVariableNames(match[1]);
}

// By path, so that a parent still stands before what lies in it.
void sortWalk(Lines& log) {
  const auto after = [&](const char* text) { return std::find(log.begin(), log.end(), text); };
  const auto begin = after("[1] uninstaller: Remove folder containers - started");
  const auto end = after("[1] uninstaller: Remove folder containers - finished");
  if (begin == log.end() || end == log.end()) return;
  const auto path = [](const std::string& line) { return line.substr(line.find("file://")); };
  std::sort(begin + 1, end, [&](const auto& a, const auto& b) { return path(a) < path(b); });
}

}  // namespace

std::string commandOf(const mac::ToolRun& run) {
  std::string line = run.tool;
  for (const std::string& argument : run.arguments) line += " [" + argument + "]";
  return line;
}

Observed observe(mac::SimulatedMac& mac, const std::vector<std::string>& arguments,
                 const mac::SessionOptions& options, const std::string& program) {
  const mac::SessionResult result = mac.run(program, arguments, options);
  Observed observed{result.outcome, {}, {}, result.out, result.err, result.fates};
  for (const std::string& record : result.log) observed.log.push_back(withoutTime(record));
  sortWalk(observed.log);
  for (const mac::ToolRun& run : result.journal)
    observed.journal.push_back(commandOf(run) + " " + run.outcome);
  return observed;
}

void expectItsListOnly(const mac::SimulatedMac& mac, const std::vector<std::string>& arguments,
                       const mac::Snapshot& before, const Observed& seen) {
  const mac::Verdict verdict = mac::judge(mac, arguments, before, seen.fates);
  EXPECT_EQ(joined(verdict.outside), "");
  EXPECT_EQ(joined(verdict.leftBehind), "");
}

Lines expectedLines(const std::string& file, const std::string& section) {
  std::ifstream text(std::string(EXPECTED_FOLDER) + "/" + file);
  EXPECT_TRUE(text.is_open()) << file;
  Lines lines;
  bool inSection = false;
  for (std::string line; std::getline(text, line);) {
    if (line.starts_with("== ")) {
      inSection = line == "== " + section;
    } else if (inSection && !line.empty()) {
      lines.push_back(line);
    }
  }
  return lines;
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace wendle::test
