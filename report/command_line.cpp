#include "report/command_line.h"

#include "base/text.h"
#include "report/log_reader.h"

namespace wendle {
const char* const reportUsage =
    R"(usage: wendle-uninstall-report [run] [--since TIME] [--process N] [--recheck] [--json] [FILE]
       wendle-uninstall-report preview MODE [--json | --needs-root]
       wendle-uninstall-report leftovers [--json]

run        what the log of a run of the Wendle uninstaller says: the mode, when it ran, what was removed, what was not
           there, what failed and why, and whether the run reached its last line. FILE is a log; without one the current
           user's newest. This is what is asked when nothing else is.
preview    what a run of MODE (--soft, --hard, --updates or --full) would take away from this user's account now, in the
           order in which it would, what it would keep, and what this user cannot delete. Nothing is changed.
leftovers  what is still there of all that the modes take away, and, named apart, what no mode ever does.

  --since TIME  only a run that began at TIME or later counts, so that nobody takes an older run's log for that of one
                that could write none; TIME is UTC, such as 2026-11-21T07:40:12Z, or seconds since 1970 (date +%s)
  --process N   of the current user's logs only that of the uninstaller whose process had this number counts
  --recheck     a failure to delete what somebody else has deleted by now does not count
  --json        one JSON object instead of text
  --needs-root  only the paths of what root could delete and this user cannot, each with a NUL byte after it
  --help        this text
  --version     the version

Exit status: 0 when nothing failed, would be taken away, or is left; 1 when something did, would, or is, or when the run
ended early; 2 when there is no answer: no such log, a wrong use, a tool is missing, or the answer cannot be written.
)";

namespace {
// UTC, or seconds since 1970.
std::optional<std::chrono::sys_seconds> parseTime(const std::string& text) {
  using namespace std::chrono;
  if (const auto time = parseUtcTime(text)) return floor<seconds>(*time);
  const auto count = parseDecimal(text);
  if (!count || *count < 0) return std::nullopt;
  return sys_seconds(seconds(*count));
}

// "--hard", and also "hard".
std::optional<Mode> parseMode(const std::string& argument) {
  for (const ModeSwitch& entry : modeSwitches) {
    if (argument == entry.argument || "--" + argument == entry.argument) return entry.mode;
  }
  return std::nullopt;
}

class Parser {
 public:
  explicit Parser(const std::vector<std::string>& arguments)
      : next_(arguments.begin()), end_(arguments.end()) {}

  CommandLine parse() {
    if (next_ != end_ && takeSubcommand(*next_)) ++next_;
    while (next_ != end_ && line_.error.empty()) takeArgument(*next_++);
    if (line_.command == Command::preview && !line_.mode && line_.error.empty()) {
      line_.error = "preview needs a mode: --soft, --hard, --updates or --full";
    }
    if (line_.wantsJson && line_.wantsRootPaths) line_.error = "--json and --needs-root are two answers";
    if (!line_.file.empty() && !line_.process.empty()) line_.error = "--process and a log are two choices";
    return line_;
  }

 private:
  bool takeSubcommand(const std::string& argument) {
    if (argument == "preview") line_.command = Command::preview;
    if (argument == "leftovers") line_.command = Command::leftovers;
    return line_.command != Command::run || argument == "run";
  }

  void takeArgument(const std::string& argument) {
    if (argument == "--help") {
      line_.command = Command::help;
    } else if (argument == "--version") {
      line_.command = Command::version;
    } else if (argument == "--json") {
      line_.wantsJson = true;
    } else if (line_.command == Command::run) {
      takeRunArgument(argument);
    } else if (line_.command == Command::preview) {
      takePreviewArgument(argument);
    } else {
      refuse(argument);
    }
  }

  void takeRunArgument(const std::string& argument) {
    if (argument == "--since") {
      line_.since = next_ != end_ ? *next_++ : "";
      line_.sinceTime = parseTime(line_.since);
      if (!line_.sinceTime) line_.error = "--since needs a time, not '" + line_.since + "'";
    } else if (argument == "--process") {
      line_.process = next_ != end_ ? *next_++ : "";
      const auto number = parseDecimal(line_.process);
      if (!number || std::to_string(*number) != line_.process)
        line_.error = "--process needs a number, not '" + line_.process + "'";
    } else if (argument == "--recheck") {
      line_.wantsRecheck = true;
    } else if (argument.empty() || argument.starts_with("-")) {
      refuse(argument);
    } else if (!line_.file.empty()) {
      line_.error = "one log at a time, please";
    } else {
      line_.file = argument;
    }
  }

  void takePreviewArgument(const std::string& argument) {
    if (argument == "--needs-root") {
      line_.wantsRootPaths = true;
    } else if (const auto mode = parseMode(argument); mode && !line_.mode) {
      line_.mode = mode;
    } else {
      refuse(argument);
    }
  }

  void refuse(const std::string& argument) { line_.error = "'" + argument + "' has no place there"; }

  CommandLine line_;
  std::vector<std::string>::const_iterator next_, end_;
};
}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) { return Parser(arguments).parse(); }
}  // namespace wendle
