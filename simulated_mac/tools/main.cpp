// One executable called by many names. A child does the work, so that its end is always written down.
#include <fcntl.h>
#include <poll.h>
#include <sys/auxv.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <iostream>

#include "simulated_mac/tools/tools.h"

namespace wendle::mac {
namespace {
const std::map<std::string, int (*)(const Strings&)> simulatedTools = {
    {"launchctl", launchctl},   {"pluginkit", pluginkit},
    {"tccutil", tccutil},       {"defaults", defaults},
    {"security", security},     {"mdfind", mdfind},
    {"PlistBuddy", plistBuddy}, {"killall", killall},
    {"scutil", scutil},         {"sudo", sudo}};

// No file of ours may become somebody's standard stream; a real tool run after this still finds it closed.
void occupyClosedStreams() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (::fcntl(fd, F_GETFD) < 0) ::open("/dev/null", O_RDWR | O_CLOEXEC);
  }
}

void say(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(fd, text.data(), text.size());
    if (count < 0 && errno != EINTR) return;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
}

[[noreturn]] void dieOfSignal(int number) {
  ::signal(number, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::raise(number);
  ::_exit(128 + number);
}

pid_t parentProcess(pid_t pid) {
  const std::string status = readFile("/proc/" + std::to_string(pid) + "/status");
  return std::stoi(status.substr(status.find("\nPPid:") + 6));
}

// The one process on the way up from us that the session's first started.
pid_t programOfSession() {
  pid_t pid = ::getpid();
  for (pid_t parent = ::getppid(); parent > 1; parent = parentProcess(parent)) pid = parent;
  return pid;
}

[[noreturn]] void pauseAndExit(int milliseconds) {
  ::poll(nullptr, 0, milliseconds);
  ::_exit(0);
}

// The tools read, change and write whole lists: one at a time, should they ever run at the same time.
int workAlone(int (*tool)(const Strings&), const Strings& arguments) {
  const int lock = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  while (::flock(lock, LOCK_EX) != 0 && errno == EINTR) continue;
  return tool(arguments);
}

void apply(const Fault& fault) {
  const auto is = [&](FaultKind kind) { return fault.kind == kind; };
  using enum FaultKind;
  if (is(exits)) {
    say(STDERR_FILENO, fault.text);
    ::_exit(fault.number);
  }
  if (is(killed)) dieOfSignal(fault.number);
  if (is(killsProgram)) {
    ::kill(programOfSession(), SIGKILL);
    pauseAndExit(-1);
  }
  if (is(leavesGrandchild) && ::fork() == 0) pauseAndExit(fault.number == 0 ? -1 : fault.number);
  for (char byte = 0; is(readsInput) && ::read(STDIN_FILENO, &byte, 1) > 0;) continue;
  std::string text = is(notUtf8) ? "\xff\xfe\n" : "";
  if (is(floods)) text.assign(static_cast<std::size_t>(fault.number), '\n');
  for (std::size_t start = 0; start < text.size(); start += 16384) {
    const std::string_view part = std::string_view(text).substr(start, 16384);
    for (const int fd : {STDOUT_FILENO, STDERR_FILENO}) say(fd, part);
  }
}

int work(const fs::path& path, const Strings& arguments, char** argv, const std::vector<Fault>& faults) {
  for (const Fault& fault : faults) apply(fault);
  const auto tool = simulatedTools.find(path.filename());
  if (tool == simulatedTools.end()) {
    ::execv((realToolsDirectory + path.string()).c_str(), argv);
    return complain(path.string() + " is not in this Mac.", 127);
  }
  const int status = workAlone(tool->second, arguments);
  std::cout.flush();
  return status;
}

std::size_t linesLogged() {
  std::size_t lines = 0;
  std::error_code ignored;
  for (const auto& log : fs::directory_iterator(home + "/Library/Logs/Wendle", ignored)) {
    lines += split(readFile(log.path()), '\n').size();
  }
  return lines;
}

int runWritten(const fs::path& path, const Strings& arguments, char** argv) {
  const std::string name = path.filename();
  const RunNumber number = beginRun(journalDirectory, {path, arguments, "", linesLogged()});
  applyAbsence(path, readFaults(faultsFile, name, number.ofTool + 1));
  const pid_t worker = ::fork();
  if (worker == 0) ::_exit(work(path, arguments, argv, readFaults(faultsFile, name, number.ofTool)));
  int status = 0;
  while (::waitpid(worker, &status, 0) < 0 && errno == EINTR) continue;
  endRun(journalDirectory, number, outcomeText(status));
  if (WIFSIGNALED(status)) dieOfSignal(WTERMSIG(status));
  return WEXITSTATUS(status);
}
}  // namespace

bool fits(const Strings& arguments, std::string_view pattern) {
  const Strings words = split(pattern, ' ');
  const auto fitsWord = [](const std::string& argument, const std::string& word) {
    return word == "*" || word == argument;
  };
  return std::equal(arguments.begin(), arguments.end(), words.begin(), words.end(), fitsWord);
}

int complain(std::string_view text, int status) {
  std::cerr << text << std::endl;
  return status;
}
}  // namespace wendle::mac

int main(int argc, char** argv) try {
  using namespace wendle::mac;
  occupyClosedStreams();
  // The path it was really started by, which the kernel passes on: argv[0] is the caller's to choose, unless
  // the path is that of a script.
  const std::string started =
      reinterpret_cast<const char*>(::getauxval(AT_EXECFN));  // NOLINT(performance-no-int-to-ptr)
  const std::string path = fs::is_symlink(started) ? started : argv[0];
  const Strings arguments(argv + 1, argv + argc);
  if (path == sessionProgram) return sessionMain(arguments);
  if (!fs::exists(journalDirectory)) return complain("This works within a simulated Mac only.", 127);
  return runWritten(path, arguments, argv);
} catch (const std::exception& error) {
  return wendle::mac::complain(error.what(), 125);
}
