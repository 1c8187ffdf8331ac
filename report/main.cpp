// wendle-uninstall-report: what the log of an uninstaller's run says became of everything.
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>

#include "base/error.h"
#include "base/text.h"
#include "base/unique_fd.h"
#include "logging/logger_configurator.h"
#include "report/run_report.h"

namespace wendle {
namespace {

constexpr const char* usage = R"(usage: wendle-uninstall-report [--since TIME] [--json] [FILE]

Tells what the log of a run of the Wendle uninstaller says: the mode, when it ran, what was removed, what was not there,
what failed and why, and whether the run reached its last line. FILE is a log; without one the current user's newest.

  --since TIME  only a run that began at TIME or later counts, so that nobody takes an older run's log for that of one
                that could write none; TIME is UTC, such as 2026-11-21T07:40:12Z, or seconds since 1970 (date +%s)
  --json        one JSON object instead of text
  --help        this text

Exit status: 0 when nothing failed, 1 when something did or the run ended early, 2 when there is no report: no such log,
a wrong use, or the report cannot be written.
)";

constexpr int good = 0;
constexpr int bad = 1;
constexpr int noReport = 2;

struct CommandLine {
  bool wantsHelp = false;
  bool wantsJson = false;
  std::string since;
  std::optional<std::chrono::sys_seconds> sinceTime;
  std::string file;
  std::string mistake;
};

// UTC, or seconds since 1970.
std::optional<std::chrono::sys_seconds> parsedTime(const std::string& text) {
  using namespace std::chrono;
  if (const auto time = parseUtcTime(text)) return floor<seconds>(*time);
  const auto count = parseDecimal(text);
  if (!count || *count < 0) return std::nullopt;
  return sys_seconds(seconds(*count));
}

CommandLine parsed(const std::vector<std::string>& words) {
  CommandLine line;
  for (auto word = words.begin(); word != words.end(); ++word) {
    if (*word == "--help") {
      line.wantsHelp = true;
    } else if (*word == "--json") {
      line.wantsJson = true;
    } else if (*word == "--since") {
      line.since = word + 1 != words.end() ? *++word : "";
      line.sinceTime = parsedTime(line.since);
      if (!line.sinceTime) line.mistake = "--since needs a time, not '" + line.since + "'";
    } else if (word->empty() || word->starts_with("-")) {
      line.mistake = "there is no option '" + *word + "'";
    } else if (!line.file.empty()) {
      line.mistake = "one log at a time, please";
    } else {
      line.file = *word;
    }
  }
  return line;
}

int complain(const std::string& sentence) {
  const std::string line = "wendle-uninstall-report: " + escapedText(sentence) + ".\n";
  std::fputs(line.c_str(), stderr);
  return noReport;
}

int print(const std::string& text, int status) {
  if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return status;
  return complain("cannot write the report: " + posixError(errno).description);
}

std::string newestLog() {
  LoggerConfigurator::setupModuleLoggerWithSystem("uninstaller");
  const auto files = LoggerFileManager::getSortedLogFiles();
  return files.empty() ? "" : files.front().path();
}

// What is left to be read; none, and errno, when that fails.
std::optional<std::string> contents(int file) {
  std::string text;
  std::array<char, 64 * 1024> buffer{};
  for (;;) {
    const auto count = retryOnInterrupt([&] { return ::read(file, buffer.data(), buffer.size()); });
    if (count < 0) return std::nullopt;
    if (count == 0) return text;
    text.append(buffer.data(), static_cast<size_t>(count));
  }
}

std::string ownerName(int file) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return "";
  const passwd* user = ::getpwuid(status.st_uid);
  return user != nullptr ? user->pw_name : std::to_string(status.st_uid);
}

// Why this is not the run that was asked about; empty when it is. A clock that was wrong dates a log in the
// future.
std::string whyNotAskedAbout(const RunReport& read, const CommandLine& line) {
  if (!line.sinceTime) return "";
  const std::string begin = " is of a run that began at " + utcText(read.start) + ", ";
  if (std::chrono::floor<std::chrono::seconds>(read.start) < *line.sinceTime)
    return begin + "before " + line.since;
  return read.start > std::chrono::system_clock::now() ? begin + "which is yet to come" : "";
}

int report(CommandLine line) {
  if (line.file.empty()) line.file = newestLog();
  if (line.file.empty()) return complain("this user has no log of the uninstaller");
  const UniqueFd file(::open(line.file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) return complain("cannot open " + line.file + ": " + posixError(errno).description);
  const auto text = contents(file.get());
  if (!text) return complain("cannot read " + line.file + ": " + posixError(errno).description);
  const auto log = parseLog(*text);
  const auto read = log ? reportOf(*log) : std::nullopt;
  if (!read) return complain(line.file + " is no log of the uninstaller");
  if (const auto why = whyNotAskedAbout(*read, line); !why.empty()) return complain(line.file + why);
  const int status = read->isGood() ? good : bad;
  return print(line.wantsJson ? asJson(*read, {line.file, ownerName(file.get())}) : asText(*read), status);
}

int run(const CommandLine& line) {
  if (!line.mistake.empty()) return complain(line.mistake + "; --help tells what there is");
  return line.wantsHelp ? print(usage, good) : report(line);
}

}  // namespace
}  // namespace wendle

int main(int count, char** words) { return wendle::run(wendle::parsed({words + 1, words + count})); }
