// The first process of a session: starts the applications and the program, and finds out what became of them.
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

#include "simulated_mac/tools/tools.h"

namespace wendle::mac {
namespace {
constexpr int timeLimitMs = 4 * 60 * 1000;

// `plan`: "process", name, identifier, job, "stubborn" or nothing. Returns when the application runs: a pipe
// that closes on exec is at its end then. A stubborn one has SIGTERM blocked: a request stays pending.
pid_t startApplication(const std::string* plan) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return -1;
  const pid_t pid = ::fork();
  if (pid == 0) {
    sigset_t blocked;
    sigemptyset(&blocked);
    if (plan[4] == "stubborn") sigaddset(&blocked, SIGTERM);
    ::sigprocmask(SIG_SETMASK, &blocked, nullptr);
    ::setenv("__CFBundleIdentifier", plan[2].c_str(), 1);
    ::setenv("XPC_SERVICE_NAME", plan[3].c_str(), 1);
    execute("/host/bin/sleep", {plan[1], "infinity"});
  }
  ::close(ends[1]);
  char nothing = 0;
  while (::read(ends[0], &nothing, 1) < 0) continue;
  ::close(ends[0]);
  return pid;
}

// A fatal signal settles an outcome when it is sent: ours comes too late for a process that was sent another.
ProcessOutcome endApplication(pid_t pid) {
  const std::string status = readFile("/proc/" + std::to_string(pid) + "/status");
  const std::size_t pending = status.find("ShdPnd:");
  const bool wasAsked =
      pending != std::string::npos && std::stoull(status.substr(pending + 7), nullptr, 16) != 0;
  ::kill(pid, SIGUSR1);
  int end = 0;
  ::waitpid(pid, &end, 0);
  if (WTERMSIG(end) == SIGUSR1) return wasAsked ? ProcessOutcome::refused : ProcessOutcome::leftAlone;
  return WTERMSIG(end) == SIGTERM ? ProcessOutcome::quit : ProcessOutcome::killed;
}

// The program starts when the other end of the pipe is closed.
pid_t forkProgram(const Strings& command, const int* ends) {
  const pid_t pid = ::fork();
  if (pid != 0) return pid;
  ::close(ends[1]);
  for (char nothing = 0; ::read(ends[0], &nothing, 1) < 0;) continue;
  execute(command.at(0).c_str(), command);
}

std::string waitForOutcome(pid_t pid) {
  pollfd ended = {openProcess(pid), POLLIN, 0};
  const bool inTime = ::poll(&ended, 1, timeLimitMs) > 0;
  if (!inTime) ::kill(pid, SIGKILL);
  int status = 0;
  ::waitpid(pid, &status, 0);
  return inTime ? outcomeText(status) : "timed out";
}
}  // namespace

void execute(const char* program, Strings arguments) {
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  ::execv(program, argv.data());
  ::_exit(complain("The session cannot start a program", 127));
}

// The kernel ends all other processes with this one.
int sessionMain(const Strings& arguments) {
  if (::getpid() != 1) return complain("A session is the first process of a simulated Mac.", 127);
  ::close_range(3, ~0U, 0);
  const bool asRoot = arguments.at(0) == "root";
  auto word = arguments.begin() + (asRoot ? 1 : 0);
  std::vector<const std::string*> plans;
  for (; *word == "process"; word += 5) plans.push_back(&*word);
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return complain("The session has no pipe.", 127);
  const pid_t program = forkProgram({word, arguments.end()}, ends);
  if (asRoot) becomeUser();
  std::vector<pid_t> applications;
  for (const std::string* plan : plans) applications.push_back(startApplication(plan));
  ::close(ends[1]);
  Strings result = {waitForOutcome(program)};
  for (const pid_t pid : applications)
    result.push_back(std::to_string(static_cast<int>(endApplication(pid))));
  std::cout << nulTerminated(result) << std::flush;
  return 0;
}
}  // namespace wendle::mac
