#include "support/processes.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <csignal>

#include "platform/process_environment.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
static constexpr const char* actSwitch = "--act";

static bool put(int fd, const std::string& text) { return ::write(fd, text.data(), text.size()) >= 0; }

static void report(const std::string& last) {
  std::string found;
  sigset_t blocked;
  ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
  for (int number = 0; number <= 64;
       ++number) {  // signals, of which some systems have fewer, and descriptors
    struct sigaction action {};
    const bool isIgnored = ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    if (isIgnored || (sigismember)(&blocked, number) == 1) found += "signal " + std::to_string(number) + " ";
    if (::fcntl(number, F_GETFD) != -1) found += "fd " + std::to_string(number) + " ";
  }
  put(1, found + (::getpgrp() == ::getpid() ? "own group, " : "somebody's group, "));
  const std::string input = ::read(0, &blocked, 1) == 0 ? "no input" : "input";
  put(1, input + (last.empty() ? "" : ", " + last));
  if (::fork() != 0) return;
  pollfd output{1, 0, 0};  // tells when the reading end is closed; after ten seconds we are waited for
  if (::poll(&output, 1, 10'000) == 0) put(1, ", waited for");
}

static void flood() {
  const pid_t parent = ::getpid();
  if (::fork() != 0) return;
  while (::getppid() == parent) ::poll(nullptr, 0, 1);
  const std::string block(100'000, 'x');
  for (int left = 1000; left > 0 && put(1, block); --left) continue;
}

static int act(const std::string& name, const std::vector<std::string>& arguments) {
  if (name == "report") report(arguments.empty() ? "" : arguments.back());
  if (name == "flood") flood();
  for (int block = 0; name == "write" && block < 1000; ++block) {
    for (const char fd : arguments[0]) put(fd - '0', std::string(10'000, 'x'));
  }
  if (name != "end") return 0;
  put(2, arguments[1]);
  const int status = std::stoi(arguments[0]);
  return status < 0 ? ::raise(-status) : status;
}

Task childTask(std::vector<std::string> act) {
  Task task = makePipedTask();
  task.setExecutable(processArguments().front());
  act.insert(act.begin(), actSwitch);
  task.setArguments(std::move(act));
  return task;
}

std::string runForOutput(Task& task) {
  task.launch();
  task.waitUntilExit();
  return std::get<std::shared_ptr<Pipe>>(task.standardOutput())->readDataToEndOfFile();
}

void inFork(const std::function<void()>& body) {
  EXPECT_EXIT((body(), std::fflush(nullptr), ::_exit(testing::Test::HasFailure())),  // no atexit functions
              testing::ExitedWithCode(0), "");
}

void inForkAsOrdinaryUser(const std::function<void()>& body) {
  inFork([&] {
    constexpr unsigned nobody = 65534;
    ASSERT_TRUE(::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0));
    body();
  });
}
}  // namespace wendle

int main(int argc, char** argv) {
  if (argc > 2 && std::string(argv[1]) == wendle::actSwitch)
    return wendle::act(argv[2], {argv + 3, argv + argc});
  ::setenv("TZ", "Elsewhere-5", 1);  // so that local time never passes for UTC
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
