// wendle-uninstall-report: what the log of an uninstaller's run says became of everything.
#include <cerrno>
#include <fstream>
#include <iostream>
#include <sstream>

#include "base/error.h"
#include "logging/logger_configurator.h"
#include "report/run_report.h"

namespace wendle {
namespace {

constexpr const char* usage = R"(usage: wendle-uninstall-report [--json] [FILE]

Tells what the log of a run of the Wendle uninstaller says: the mode, when it ran, what was removed, what was not there,
what failed and why, and whether the run reached its last line. FILE is a log; without one the current user's newest.

Exit status: 0 when nothing failed, 1 when something did or the run ended early, 2 when there is no such log.
)";

constexpr int good = 0;
constexpr int bad = 1;
constexpr int noReport = 2;

struct CommandLine {
  bool wantsHelp = false;
  bool wantsJson = false;
  std::string file;
  std::string mistake;
};

CommandLine parsed(int count, char** words) {
  CommandLine line;
  for (int i = 1; i < count; ++i) {
    const std::string word = words[i];
    if (word == "--help") {
      line.wantsHelp = true;
    } else if (word == "--json") {
      line.wantsJson = true;
    } else if (word.empty() || word.starts_with("-")) {
      line.mistake = "there is no option '" + word + "'";
    } else if (!line.file.empty()) {
      line.mistake = "one log at a time, please";
    } else {
      line.file = word;
    }
  }
  return line;
}

int complain(const std::string& sentence) {
  std::cerr << "wendle-uninstall-report: " << sentence << ".\n";
  return noReport;
}

std::string newestLog() {
  LoggerConfigurator::setupModuleLoggerWithSystem("uninstaller");
  const auto files = LoggerFileManager::getSortedLogFiles();
  return files.empty() ? "" : files.front().path();
}

int report(CommandLine line) {
  if (line.file.empty()) line.file = newestLog();
  if (line.file.empty()) return complain("this user has no log of the uninstaller");
  std::ifstream file(line.file, std::ios::binary);
  if (!file.is_open()) return complain("cannot open " + line.file + ": " + posixError(errno).description);
  std::ostringstream text;
  text << file.rdbuf();
  const auto log = parseLog(text.str());
  const auto read = log ? reportOf(*log) : std::nullopt;
  if (!read) return complain(line.file + " is no log of the uninstaller");
  std::cout << (line.wantsJson ? asJson(*read) : asText(*read));
  return read->isGood() ? good : bad;
}

int run(const CommandLine& line) {
  if (!line.mistake.empty()) return complain(line.mistake + "; --help tells what there is");
  if (!line.wantsHelp) return report(line);
  std::cout << usage;
  return good;
}

}  // namespace
}  // namespace wendle

int main(int count, char** words) { return wendle::run(wendle::parsed(count, words)); }
