// A session seen from the host.
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "simulated_mac/shared.h"

namespace wendle::mac {
namespace {
// Runs bubblewrap and leaves what it and the session write in files of `directory`. Returns its exit status.
// A signal that this program handles ends the session.
int runSandbox(const Strings& arguments, const fs::path& directory) {
  Strings command = {"/bin/sh", "-c", R"(exec bwrap "$@" </dev/null >"$0/result" 2>"$0/errors")", directory};
  append(command, arguments);
  std::vector<char*> argv;
  for (std::string& word : command) argv.push_back(word.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  int status = -1;
  if (::posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return -1;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) ::kill(pid, SIGKILL);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The user of the Mac holds no privilege, even if the host's does: file permissions count there.
Strings sandboxOptions(const fs::path& root, const SessionOptions& options) {
  Strings words = split("--unshare-all --unshare-user --die-with-parent --as-pid-1", ' ');
  append(words,
         split(options.asRoot ? "--uid 0 --gid 0 --cap-add ALL" : "--uid 501 --gid 20 --cap-drop ALL", ' '));
  append(words, {"--bind", root, "/", "--ro-bind", "/", "/host"});
  append(words, split("--proc /proc --dev /dev --tmpfs /tmp --chdir /", ' '));
  append(words, options.mounts);
  return words;
}

Strings logLines(const Snapshot& snapshot) {
  std::string log;
  for (const auto& [path, entry] : snapshot) {
    const bool isLog = path.starts_with(home + "/Library/Logs/Wendle/");
    if (isLog && entry.type == fs::file_type::regular) log += entry.content;
  }
  return split(log, '\n');
}

// What the session has left in `mac`. `status` is bubblewrap's exit status.
SessionResult readResult(const SimulatedMac& mac, int status) {
  const Strings outcome = split(mac.read("/.simulation/result"));
  if (outcome.empty() && status == 127) throw std::runtime_error("bubblewrap (bwrap) is not installed.");
  const std::string why = split(mac.read("/.simulation/errors") + "\n", '\n').front();
  if (outcome.empty()) throw std::runtime_error("There can be no simulated Mac here: " + why);
  SessionResult result;
  result.outcome = outcome.front();
  for (auto end = outcome.begin() + 1; end != outcome.end(); ++end)
    result.processes.push_back(static_cast<ProcessOutcome>(std::atoi(end->c_str())));
  result.out = mac.read("/.simulation/out");
  result.err = mac.read("/.simulation/err");
  result.journal = readJournal(mac.at(journalDirectory));
  result.log = logLines(mac.snapshot());
  return result;
}

// The command line that turns a shell of the session into the program, as the options want it.
Strings programCommand(const SessionOptions& options) {
  std::string script =
      "ulimit -c 0; cd \"$0\" && exec <>" + inputFile + " >/.simulation/out 2>/.simulation/err";
  if (options.descriptorLimit) script += " && ulimit -n " + std::to_string(*options.descriptorLimit);
  if (options.closesStandardStreams) script += " && exec <&- >&- 2>&-";
  script += " && exec /host/usr/bin/env -i \"$@\"";
  Strings command = {"/host/bin/sh", "-c", script, options.workingDirectory};
  command.push_back(options.ignoresBrokenPipes ? "--ignore-signal=PIPE" : "--default-signal=PIPE");
  if (options.blocksAllSignals) command.push_back("--block-signal");
  append(command, options.asRoot ? split("HOME=/var/root USER=root LOGNAME=root SHELL=/bin/sh", ' ')
                                 : Strings{"HOME=" + home, "USER=pat", "LOGNAME=pat", "SHELL=/bin/zsh"});
  append(command, split("TMPDIR=/tmp/ PATH=/usr/bin:/bin:/usr/sbin:/sbin", ' '));
  append(command, options.environment);
  return command;
}
}  // namespace

bool isMacosExecutable(const fs::path& program) {
  const std::string magic = readFile(program).substr(0, 4);
  return magic == "\xCA\xFE\xBA\xBE" || magic == "\xCF\xFA\xED\xFE";
}

Strings commandInSession(const fs::path& program) {
  const auto inSession = [](const fs::path& file) { return "/host" + fs::canonical(file).string(); };
  if (!isMacosExecutable(program)) return {inSession(program)};
  return {inSession(fs::canonical("/proc/self/exe").parent_path() / "macos_program"), inSession(program)};
}

SessionResult SimulatedMac::run(const fs::path& program, const Strings& arguments,
                                const SessionOptions& options) {
  fs::remove_all(at(journalDirectory));
  addDirectory(journalDirectory);
  writeFaults(at(faultsFile), faults_);
  ::mkfifo(at(inputFile).c_str(), S_IRUSR | S_IWUSR);
  installTools();
  Strings command = sandboxOptions(root(), options);
  command.push_back(sessionProgram);
  if (options.asRoot) command.emplace_back("root");
  for (const auto& [name, identifier, job, stubborn] : processes_) {
    if (!options.startsProcesses) break;
    append(command, {"process", name, identifier, job, stubborn ? "stubborn" : ""});
  }
  append(command, programCommand(options));
  append(command, commandInSession(program));
  append(command, arguments);

  const int status = runSandbox(command, at("/.simulation"));
  SessionResult result = readResult(*this, status);
  fs::remove(at(faultsFile));
  installTools();
  return result;
}
}  // namespace wendle::mac
