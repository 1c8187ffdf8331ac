#include "support/run_result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

// What errors look like that have another number or text on macOS: here and there.
constexpr std::array<std::pair<const char*, const char*>, 5> platformErrors{{
    {R"(16 "Device or resource busy")", R"(16 "Resource busy")"},
    {R"(35 "Resource deadlock avoided")", R"(11 "Resource deadlock avoided")"},
    {R"(36 "File name too long")", R"(63 "File name too long")"},
    {R"(39 "Directory not empty")", R"(66 "Directory not empty")"},
    {R"(40 "Too many levels of symbolic links")", R"(62 "Too many levels of symbolic links")"},
}};

// The macOS executable's errors as those of Linux; an error of Linux that it shows is made a wrong one.
std::string withErrorsOfLinux(std::string line) {
  const std::string code = "Code=";
  for (const auto& [ours, theirs] : platformErrors) {
    const auto ourPlace = line.find(code + ours);
    const auto theirPlace = line.find(code + theirs);
    if (theirPlace != std::string::npos) {
      line.replace(theirPlace + code.size(), std::string(theirs).size(), ours);
    } else if (ourPlace != std::string::npos) {
      line.replace(ourPlace + code.size(), std::string(ours).size(), theirs);
    }
  }
  return line;
}

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
  const std::string line = withoutVariableNames(match[1]);
  return mac::isMacosExecutable(uninstaller()) ? withErrorsOfLinux(line) : line;
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
Lines inOneOrder(const RunResult& result, const std::vector<mac::ToolRun>& runs) {
  Lines sequence;
  std::size_t logged = 0;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    for (; logged < std::min(runs[i].logged, result.log.size()); ++logged)
      sequence.push_back(result.log[logged]);
    sequence.push_back(runMark + result.journal[i]);
  }
  sequence.insert(sequence.end(), result.log.begin() + static_cast<std::ptrdiff_t>(logged), result.log.end());
  return sequence;
}

RunResult run(mac::SimulatedMac& mac, const fs::path& program, const Lines& arguments,
              const mac::SessionOptions& options) {
  const mac::SessionResult session = mac.run(program, arguments, options);
  RunResult result{session.outcome, {}, {}, {}, session.out, session.err, session.processes};
  for (const std::string& record : session.log) result.log.push_back(withoutTime(record));
  sortWalk(result.log);
  for (const mac::ToolRun& run : session.journal)
    result.journal.push_back(commandOf(run) + " " + run.outcome);
  result.sequence = inOneOrder(result, session.journal);
  return result;
}

}  // namespace

std::string commandOf(const mac::ToolRun& run) {
  std::string line = run.tool;
  for (const std::string& argument : run.arguments) line += " [" + argument + "]";
  return line;
}

RunResult runUninstaller(mac::SimulatedMac& mac, const Lines& arguments, const mac::SessionOptions& options) {
  return run(mac, uninstaller(), arguments, options);
}

RunResult runReport(mac::SimulatedMac& mac, const Lines& arguments) {
  return run(mac, executable("wendle-uninstall-report"), arguments, {.startsProcesses = false});
}

RunResult runProbe(mac::SimulatedMac& mac, const std::string& probe, const Lines& arguments) {
  return run(mac, binaries() / probe, arguments, {});
}

Lines uninstallerCommand() { return mac::commandInSession(uninstaller()); }

void expectItsListOnly(const mac::SimulatedMac& mac, const Lines& arguments, const mac::Snapshot& before,
                       const RunResult& seen) {
  const mac::Verdict verdict = mac::judge(mac, arguments, before, seen.processes);
  EXPECT_EQ(joined(verdict.outside), "");
  EXPECT_EQ(joined(verdict.leftBehind), "");
}

Lines expectedLines(const std::string& file, const std::string& section) {
  std::ifstream text(std::string(EXPECTED_TEXTS) + "/" + file);
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

Lines logIn(const Lines& sequence) {
  Lines log = sequence;
  std::erase_if(log, [](const std::string& line) { return line.starts_with(runMark); });
  return log;
}

Lines journalIn(const Lines& sequence) {
  Lines journal;
  for (const std::string& line : sequence)
    if (line.starts_with(runMark)) journal.push_back(line.substr(runMark.size()));
  return journal;
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace wendle::test
