// wendle-uninstall-report: what a run of the uninstaller did, what one would do, and what is left.
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>

#include "app/modes.h"
#include "base/error.h"
#include "base/unique_fd.h"
#include "client/client_locations.h"
#include "logging/logger_configurator.h"
#include "platform/files.h"
#include "report/command_line.h"
#include "report/plan_rendering.h"
#include "report/run_report.h"

namespace wendle {
constexpr int exitClean = 0;
constexpr int exitFindings = 1;
constexpr int exitError = 2;

static int fail(const std::string& sentence) {
  const std::string line = "wendle-uninstall-report: " + escapedText(sentence) + ".\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
  return exitError;
}

static int print(const std::string& text, int status) {
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (isWritten && std::fflush(stdout) == 0) return status;
  return fail("cannot write the report: " + posixError(errno).description);
}

// Of the process, if one is named; empty when there is none.
static std::string newestLog(const std::string& process) {
  LoggerConfigurator::setupModuleLoggerWithSystem("uninstaller");
  for (const auto& file : LoggerFileManager::getSortedLogFiles()) {
    if (process.empty() || file.path().ends_with("-" + process + ".log")) return file.path();
  }
  return {};
}

// The number itself for a user without a name.
static std::string userName(uid_t number) {
  const passwd* user = ::getpwuid(number);
  return user != nullptr ? user->pw_name : std::to_string(number);
}

static std::string ownerName(int file) {
  struct stat status {};
  return ::fstat(file, &status) == 0 ? userName(status.st_uid) : "";
}

// Why this is not the run that was asked about; empty when it is. A clock that was wrong dates a log in the
// future.
static std::string whyNotAskedAbout(const RunReport& read, const CommandLine& line) {
  if (!line.sinceTime) return "";
  const std::string begin = " is of a run that began at " + utcText(read.start) + ", ";
  if (std::chrono::floor<std::chrono::seconds>(read.start) < *line.sinceTime)
    return begin + "before " + line.since;
  return read.start > std::chrono::system_clock::now() ? begin + "which is yet to come" : "";
}

static int reportRun(CommandLine line) {
  if (line.file.empty()) line.file = newestLog(line.process);
  const std::string whose = line.process.empty() ? "the uninstaller" : "process " + line.process;
  if (line.file.empty()) return fail("this user has no log of " + whose);
  const UniqueFd file(::open(line.file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) return fail("cannot open " + line.file + ": " + posixError(errno).description);
  const auto text = readToEnd(file.get());
  if (!text) return fail("cannot read " + line.file + ": " + posixError(errno).description);
  const auto log = parseLog(*text);
  auto read = log ? makeReport(*log) : std::nullopt;
  if (!read) return fail(line.file + " is no log of the uninstaller");
  if (const auto why = whyNotAskedAbout(*read, line); !why.empty()) return fail(line.file + why);
  if (line.wantsRecheck) recheck(*read);
  const int status = read->isGood() ? exitClean : exitFindings;
  return print(line.wantsJson ? asJson(*read, {line.file, ownerName(file.get())}) : asText(*read), status);
}

static int preview(const CommandLine& line) {
  const RemovalPlan plan = planMode(*line.mode);
  const int status = plan.items().empty() ? exitClean : exitFindings;
  if (line.wantsRootPaths) return print(rootPaths(plan), status);
  const PlanContext context{modeSwitch(*line.mode), userName(::geteuid())};
  return print(line.wantsJson ? previewJson(plan, context) : previewText(plan, context), status);
}

// All that the other modes take away, the full mode does, too.
static int reportLeftovers(const CommandLine& line) {
  const RemovalPlan plan = planMode(Mode::full);
  const auto traces = findClientTraces();
  const std::string user = userName(::geteuid());
  return print(line.wantsJson ? leftoversJson(plan, traces, user) : leftoversText(plan, traces),
               plan.items().empty() ? exitClean : exitFindings);
}

static int execute(const CommandLine& line) {
  if (!line.error.empty()) return fail(line.error + "; --help tells what there is");
  switch (line.command) {
    case Command::run:
      return reportRun(line);
    case Command::preview:
      return preview(line);
    case Command::leftovers:
      return reportLeftovers(line);
    case Command::help:
      return print(reportUsage, exitClean);
    case Command::version:
      return print(UNINSTALLER_VERSION "\n", exitClean);
  }
  return exitError;
}
}  // namespace wendle

int main(int argc, char** argv) try {
  using namespace wendle;
  std::signal(SIGCHLD, SIG_DFL);  // who ignores it is not told how a tool ended
  return execute(parseCommandLine({argv + 1, argv + argc}));
} catch (const std::exception& failure) {
  return wendle::fail(failure.what());
}
