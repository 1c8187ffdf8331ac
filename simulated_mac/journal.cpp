// The journal is a directory: a file N holds the N-th run's tool and arguments, N.logged how far the log was,
// and N.end the outcome.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "simulated_mac/shared.h"

namespace wendle::mac {
RunNumber beginRun(const fs::path& journal, const ToolRun& run) {
  const fs::path draft = journal / ("draft" + std::to_string(::getpid()));
  Strings words = run.arguments;
  words.insert(words.begin(), run.tool);
  writeFile(draft, nulTerminated(words));
  RunNumber number;
  std::error_code error;
  // A link is made whole or not at all, and only one of several tools gets the number.
  while (fs::create_hard_link(draft, journal / std::to_string(number.inJournal), error), error) {
    if (error != std::errc::file_exists) throw fs::filesystem_error("No journal", journal, error);
    const std::string earlier = split(readFile(journal / std::to_string(number.inJournal++))).at(0);
    if (fs::path(earlier).filename() == fs::path(run.tool).filename()) ++number.ofTool;
  }
  fs::remove(draft);
  writeFile(journal / (std::to_string(number.inJournal) + ".logged"), std::to_string(run.logged));
  return number;
}

void endRun(const fs::path& journal, RunNumber number, const std::string& outcome) {
  writeFile(journal / (std::to_string(number.inJournal) + ".end"), outcome);
}

std::vector<ToolRun> readJournal(const fs::path& journal) {
  std::vector<ToolRun> runs;
  for (;;) {
    const fs::path file = journal / std::to_string(runs.size());
    if (!fs::exists(file)) return runs;
    const Strings words = split(readFile(file));
    const auto logged = static_cast<std::size_t>(std::atoll(readFile(file.string() + ".logged").c_str()));
    runs.push_back({words.at(0), {words.begin() + 1, words.end()}, readFile(file.string() + ".end"), logged});
  }
}

std::string outcomeText(int waitStatus) {
  if (WIFSIGNALED(waitStatus)) return "signal " + std::to_string(WTERMSIG(waitStatus));
  return "exit " + std::to_string(WEXITSTATUS(waitStatus));
}

void writeFaults(const fs::path& file, const std::vector<Fault>& faults) {
  std::ostringstream text;
  for (const auto& [tool, run, kind, number, said] : faults) {
    text << tool << ' ' << run << ' ' << static_cast<int>(kind) << ' ' << number << ' ' << said << '\0';
  }
  writeFile(file, text.str());
}

std::vector<Fault> readFaults(const fs::path& file, const std::string& tool, int run) {
  std::vector<Fault> faults;
  std::istringstream text(readFile(file));
  Fault fault;
  for (int kind = 0; text >> fault.tool >> fault.run >> kind >> fault.number && text.get() == ' ';) {
    std::getline(text, fault.text, '\0');
    fault.kind = static_cast<FaultKind>(kind);
    if (fault.tool == tool && fault.run == run) faults.push_back(fault);
  }
  return faults;
}

void applyAbsence(const fs::path& tool, const std::vector<Fault>& faults) {
  for (const Fault& fault : faults) {
    if (fault.kind != FaultKind::missing && fault.kind != FaultKind::notExecutable) continue;
    fs::remove(tool);
    if (fault.kind == FaultKind::notExecutable) writeFile(tool, "");
  }
}
}  // namespace wendle::mac
