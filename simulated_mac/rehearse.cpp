// rehearse: runs the uninstaller on a simulated Mac and shows what it did.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "report/run_report.h"
#include "simulated_mac/shared.h"
#include "simulated_mac/verdict.h"

namespace wendle::mac {
namespace {
using Rows = std::vector<std::pair<std::string, std::string>>;

constexpr const char* usage = R"(Runs the uninstaller on a simulated Mac and shows what it did.

  rehearse [OPTIONS] MODE              MODE: --soft, --hard, --updates or --full
  rehearse [OPTIONS] -- [ARGUMENT...]  with any command line for the uninstaller

  --preview           first shows what the report tool beside the executable says that the run would do
  --keep DIR          leaves the Mac in DIR, which must be new or empty
  --uninstaller PATH  the executable to run, for Linux or for macOS, instead of the one beside this one
  --help              this text

Exit status: 0 when the uninstaller did all that its mode lists and nothing else; 1 when not;
2 when there was no rehearsal: a wrong use, something that the simulated Mac needs is missing, or the
output cannot be written.
)";

struct Command {
  bool wantsHelp = false;
  bool wantsPreview = false;
  fs::path keep;
  fs::path uninstaller = fs::canonical("/proc/self/exe").parent_path() / "WendleUninstaller";
  Strings arguments;
};

// Takes the flag out of the words before "--", wherever it stands.
bool takeFlag(Strings& words, const std::string& flag) {
  const auto end = std::ranges::find(words, "--");
  const auto found = std::find(words.begin(), end, flag);
  if (found == end) return false;
  words.erase(found);
  return true;
}

Command parsed(Strings words) {
  Command command;
  command.wantsPreview = takeFlag(words, "--preview");
  auto word = words.begin();
  for (; word != words.end() && (*word == "--keep" || *word == "--uninstaller"); word += 2) {
    if (word + 1 == words.end() || word[1].empty()) throw std::runtime_error(*word + " needs a path.");
    (*word == "--keep" ? command.keep : command.uninstaller) = word[1];
  }
  const bool isFree = word != words.end() && *word == "--";
  command.arguments.assign(isFree ? word + 1 : word, words.end());
  command.wantsHelp = !isFree && command.arguments == Strings{"--help"};
  const bool isMode = command.arguments.size() == 1 && chosenMode(command.arguments);
  if (isMode || command.wantsHelp || (isFree && !command.wantsPreview)) return command;
  std::string asked;
  for (const std::string& argument : command.arguments) asked += (asked.empty() ? "" : " ") + argument;
  throw std::runtime_error((asked.empty() ? "A mode is missing" : "'" + asked + "' is no mode") +
                           "; there are --soft, --hard, --updates and --full. --help tells more.");
}

// Colour, if someone looks.
std::string styled(const char* style, const std::string& text) {
  static const bool isColoured = ::isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr;
  return isColoured ? std::string("\033[") + style + "m" + text + "\033[0m" : text;
}

// In two columns; lines when the left one is empty.
void printRows(const std::string& heading, const Rows& rows) {
  if (!rows.empty()) std::cout << '\n' << styled("1", heading) << '\n';
  std::size_t width = 0;
  for (const auto& [left, right] : rows) width = std::max(width, left.empty() ? 0 : left.size() + 2);
  for (const auto& [left, right] : rows) {
    std::cout << "  " << left << std::string(width - left.size(), ' ') << right << '\n';
  }
}

void printLines(const std::string& heading, const Strings& lines) {
  Rows rows;
  for (const std::string& line : lines) rows.emplace_back("", line);
  printRows(heading, rows);
}

// As one would type it.
std::string commandLine(std::string line, const Strings& arguments) {
  for (const std::string& argument : arguments) {
    const bool isPlain =
        !argument.empty() && argument.find_first_of(" \t\n\"'\\$`*?&|;<>(){}[]~#!") == argument.npos;
    line += isPlain ? " " : " '";
    for (const char c : argument) line += c == '\'' ? "'\\''" : std::string(1, c);
    line += isPlain ? "" : "'";
  }
  return line;
}

// What an item is to a person; the members of a family are all called by the family's name.
std::string label(const Item& item) {
  const std::string& name = item.family.empty() ? item.place : item.family;
  if (name.starts_with(home)) return std::string("~").append(name, home.size());
  if (name.starts_with("/")) return name;
  return item.kind + " " + name + (item.kind == "keychain item" ? ", " + item.detail : "");
}

// The members of a family stand in one row with their count.
Rows toRows(const std::vector<const Item*>& items, std::string (*leftColumn)(const Item&)) {
  Rows rows;
  std::map<Rows::value_type, int> counts;
  for (const Item* item : items) {
    const auto row = std::pair(leftColumn(*item), label(*item));
    if (++counts[row] == 1) rows.push_back(row);
  }
  for (auto& row : rows) {
    if (const int count = counts[row]; count > 1) row.second += "  (" + std::to_string(count) + ")";
  }
  return rows;
}

std::string verbFor(const Item& item) {
  if (item.kind == "plug-in election") return "edited";
  return item.kind.ends_with("process") ? "ended" : "removed";
}

// What an administrator would be told of the run.
std::string logVerdict(const Strings& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  const auto log = parseLog(text);
  const auto report = log ? makeReport(*log) : std::nullopt;
  return report ? asSentence(*report) : "There is no log.";
}

// The last line. Returns the exit status.
int conclude(const Verdict& verdict, const SessionResult& result, std::optional<Mode> mode) {
  std::string text;
  if (result.outcome != "exit 0") text += "The uninstaller ended with " + result.outcome + ". ";
  if (!verdict.leftBehind.empty()) text += "Not all of the mode's list was done. ";
  const bool isGood = text.empty() && verdict.outside.empty();
  text += verdict.outside.empty() ? "Nothing" : "Something";
  text += mode ? " outside the mode's list was touched." : " was touched, and without a mode nothing may be.";
  std::cout << '\n' << styled(isGood ? "32" : "31", text) << '\n';
  return isGood ? 0 : 1;
}

void printPreview(SimulatedMac& mac, const Command& command) {
  const fs::path report = command.uninstaller.parent_path() / "wendle-uninstall-report";
  if (!fs::exists(report))
    throw std::runtime_error("There is no " + report.string() + " to ask for a preview.");
  const SessionResult result = mac.run(report, {"preview", command.arguments.front()});
  if (!result.err.empty()) throw std::runtime_error("No preview: " + result.err);
  std::cout << result.out << '\n';
}

int rehearse(SimulatedMac& mac, const Command& command) {
  installClient(mac);
  const Snapshot before = mac.snapshot();
  if (command.wantsPreview) printPreview(mac, command);
  const SessionResult result = mac.run(command.uninstaller, command.arguments);
  const Verdict verdict = judge(mac, command.arguments, before, result.processes);
  Rows tools;
  for (const ToolRun& run : result.journal) {
    tools.emplace_back(run.outcome, commandLine(run.tool, run.arguments));
  }
  std::cout << styled("1", commandLine("WendleUninstaller", command.arguments)) << "  " << result.outcome
            << (isMacosExecutable(command.uninstaller) ? "  (the macOS executable)\n"
                                                       : "  (the Linux executable)\n");
  printRows("Tools", tools);
  printLines("Log", result.log);
  printLines("Error output", split(result.err, '\n'));
  printRows("Done", toRows(verdict.taken, verbFor));
  printRows("Kept", toRows(verdict.kept, [](const Item& item) { return item.why; }));
  printLines("Left behind", verdict.leftBehind);
  printLines("Touched without being on the list", verdict.outside);
  printLines("The log's verdict", {logVerdict(result.log)});
  return conclude(verdict, result, chosenMode(command.arguments));
}

int rehearse(const Command& command) {
  if (fs::is_directory(command.uninstaller) || ::access(command.uninstaller.c_str(), X_OK) != 0) {
    throw std::runtime_error("There is no executable " + command.uninstaller.string() + ".");
  }
  if (command.keep.empty()) {
    SimulatedMac mac = SimulatedMac::scratch();
    return rehearse(mac, command);
  }
  // Throws before anything lies in the directory that is kept.
  (void)SimulatedMac::scratch().run("/bin/true", {});
  SimulatedMac mac = SimulatedMac::in(command.keep);
  return rehearse(mac, command);
}

volatile std::sig_atomic_t isInterrupted = 0;

// The signal ends the session, not this program, which then still removes its Mac.
void endSessionAt(int number) {
  struct sigaction action {};
  action.sa_handler = [](int) { isInterrupted = 1; };
  ::sigaction(number, &action, nullptr);
}

int rehearseOrExplain(const Strings& words) try {
  const Command command = parsed(words);
  if (command.wantsHelp) std::cout << usage;
  const int status = command.wantsHelp ? 0 : rehearse(command);
  if (!std::cout.flush()) throw std::runtime_error("The standard output cannot be written.");
  return status;
} catch (const std::exception& error) {
  std::cerr << "rehearse: " << (isInterrupted != 0 ? "interrupted." : error.what()) << '\n';
  return 2;
}
}  // namespace
}  // namespace wendle::mac

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // NOLINT(performance-no-int-to-ptr)
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) wendle::mac::endSessionAt(number);
  return wendle::mac::rehearseOrExplain({argv + 1, argv + argc});
}
