#include "support/run_result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <regex>

#include "simulated_mac/verdict.h"

namespace wendle::test {
namespace {
namespace fs = std::filesystem;

fs::path binaries() { return fs::canonical("/proc/self/exe").parent_path(); }

fs::path executable(const char* name) {
  const char* directory = std::getenv("WENDLE_EXECUTABLES");
  return (directory == nullptr ? binaries() : fs::path(directory)) / name;
}
fs::path uninstaller() { return executable("WendleUninstaller"); }

bool isOfMacos() {
  static const bool answer = mac::isMacosExecutable(uninstaller());
  return answer;
}

// What errors look like that have another number or text on macOS [S]: here and there.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> platformErrors{{
    {R"(Code=16 "Device or resource busy")", R"(Code=16 "Resource busy")"},
    {R"(Code=35 "Resource deadlock avoided")", R"(Code=11 "Resource deadlock avoided")"},
    {R"(Code=36 "File name too long")", R"(Code=63 "File name too long")"},
    {R"(Code=39 "Directory not empty")", R"(Code=66 "Directory not empty")"},
    {R"(Code=40 "Too many levels of symbolic links")", R"(Code=62 "Too many levels of symbolic links")"},
}};

// The macOS executable's errors as those of Linux; an error of Linux that it shows is made a wrong one.
std::string withErrorsOfLinux(std::string line) {
  for (auto [ours, theirs] : platformErrors) {
    if (line.find(theirs) == std::string::npos) std::swap(ours, theirs);
    if (const auto place = line.find(theirs); place != std::string::npos)
      return line.replace(place, theirs.size(), ours);
  }
  return line;
}

std::string withoutVariableNames(const std::string& text) {
  static const std::regex logFile(R"(uninstaller-\d{8}T\d{6}Z-\d+\.log)");
  static const std::regex toolPrefix(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d+ defaults\[\d+:\w+\])");
  return std::regex_replace(std::regex_replace(text, logFile, "LOGFILE"), toolPrefix, "DEFAULTS");
}

std::string withoutTime(const std::string& record) {
  static const std::regex begin(
      R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z (?=\[(1|4|error)\] (uninstaller|module): ))");
  std::smatch time;
  EXPECT_TRUE(std::regex_search(record, time, begin, std::regex_constants::match_continuous)) << record;
  const std::string line = withoutVariableNames(time.suffix());
  return isOfMacos() ? withErrorsOfLinux(line) : line;
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

// Marks the run of a tool in a sequence.
const std::string runMark = "> ";

// Each run stands behind the lines that were logged when the tool started.
Lines inOneOrder(const RunResult& result) {
  Lines sequence;
  std::size_t logged = 0;
  for (std::size_t i = 0; i < result.tools.size(); ++i) {
    for (; logged < std::min(result.tools[i].logged, result.log.size()); ++logged)
      sequence.push_back(result.log[logged]);
    sequence.push_back(runMark + result.journal[i]);
  }
  sequence.insert(sequence.end(), result.log.begin() + static_cast<std::ptrdiff_t>(logged), result.log.end());
  return sequence;
}

RunResult run(mac::SimulatedMac& mac, const fs::path& program, const Lines& arguments,
              const mac::SessionOptions& options) {
  const mac::SessionResult session = mac.run(program, arguments, options);
  RunResult result{session.outcome, {}, {}, {}, session.journal, session.out, session.err, session.processes};
  for (const std::string& record : session.log) result.log.push_back(withoutTime(record));
  sortWalk(result.log);
  for (const mac::ToolRun& run : session.journal)
    result.journal.push_back(commandText(run) + " " + run.outcome);
  result.sequence = inOneOrder(result);
  return result;
}
}  // namespace

std::string commandText(const mac::ToolRun& run) {
  std::string line = run.tool;
  for (const std::string& argument : run.arguments) line += " [" + argument + "]";
  return line;
}

RunResult runUninstaller(mac::SimulatedMac& mac, const Lines& arguments, const mac::SessionOptions& options) {
  return run(mac, uninstaller(), arguments, options);
}

RunResult runReport(mac::SimulatedMac& mac, const Lines& arguments, const mac::SessionOptions& options) {
  return run(mac, executable("wendle-uninstall-report"), arguments, options);
}

RunResult runProbe(mac::SimulatedMac& mac, const std::string& probe, const Lines& arguments) {
  return run(mac, binaries() / probe, arguments, {});
}

Lines uninstallerCommand() { return mac::commandInSession(uninstaller()); }
Lines reportCommand() { return mac::commandInSession(executable("wendle-uninstall-report")); }

void expectItsListOnly(const mac::SimulatedMac& mac, const Lines& arguments, const mac::Snapshot& before,
                       const RunResult& seen) {
  const mac::Verdict verdict = mac::judge(mac, arguments, before, seen.processes);
  EXPECT_EQ(joined(verdict.outside), "");
  EXPECT_EQ(joined(verdict.leftBehind), "");
}

bool isSlow() { return SANITIZED || isOfMacos(); }

Lines logIn(const Lines& sequence) {
  Lines log = sequence;
  std::erase_if(log, [](const std::string& line) { return line.starts_with(runMark); });
  return log;
}

Lines journalIn(const Lines& sequence) {
  Lines journal = sequence;
  std::erase_if(journal, [](const std::string& line) { return !line.starts_with(runMark); });
  for (std::string& line : journal) line.erase(0, runMark.size());
  return journal;
}
}  // namespace wendle::test
