#include "processes/process_termination.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "logging/logger.h"
#include "support/each.h"
#include "support/processes.h"

namespace wendle {

static Texts events;  // what was logged, and which signals were to be sent, in their order
static bool isRefusing = false;

struct Recorder : LogDestination {
  void write(std::string_view record) override {
    events.emplace_back(
        record.substr(record.find("uninstaller: ") + std::string_view("uninstaller: ").size()));
  }
};

}  // namespace wendle

// The machine's other processes may be of these identifiers too: nobody is signalled, and our children count.
extern "C" int kill(pid_t process, int number) noexcept {
  if (!wendle::isRefusing) return static_cast<int>(::syscall(SYS_kill, process, number));
  const bool isChild = ::waitid(P_PID, static_cast<id_t>(process), nullptr, WEXITED | WNOHANG | WNOWAIT) == 0;
  if (isChild) wendle::events.push_back("signal " + std::to_string(number) + "\n");
  errno = EPERM;
  return -1;
}

namespace wendle {

TEST(ProcessTermination, FollowsItsLineAndIsAskedOfEachThoughOneRefuses) {
  inFork([] {
    Logger::module().addDestination(std::make_shared<Recorder>());
    const std::string desktop = "com.wendle.DesktopClient";
    ::setenv("__CFBundleIdentifier", desktop.c_str(), 1);
    Task first = childTask({"report"});
    Task second = childTask({"report"});
    for (Task* task : {&first, &second}) {
      task->launch();
      pollfd report{std::get<std::shared_ptr<Pipe>>(task->standardOutput())->readingFd(), POLLIN, 0};
      ::poll(&report, 1, -1);  // it runs, until its input ends
    }
    isRefusing = true;
    killWendleProcesses();
    killWendleLegacyProcesses({desktop});
    first.waitUntilExit();
    second.waitUntilExit();
    EXPECT_EQ(events, (Texts{"Kill Wendle processes - started\n", "Killing Agent process\n",
                             "Killing Desktop process\n", "signal 15\n", "signal 15\n",
                             "Killing Launcher process\n", "Killing Assistant process\n",
                             "Killing Extension process\n", "Kill Wendle processes - finished\n",
                             "Killing process with bundle identifier - " + desktop + "\n", "signal 9\n",
                             "signal 9\n", "Kill Wendle legacy processes - finished\n"}));
  });
}

}  // namespace wendle
