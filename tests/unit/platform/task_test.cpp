#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <termios.h>

#include <algorithm>
#include <csignal>

#include "platform/process_environment.h"
#include "platform/subprocess.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {
static const std::string usualReport = "fd 0 fd 1 fd 2 signal 13 signal 21 signal 22 own group, no input";

TEST(Task, ReadsAnyAmountOfOutputAndKeepsWhatSomebodyWillRead) {
  for (const std::string descriptors : {"1", "2", "12"}) {
    Task task = childTask({"write", descriptors});
    EXPECT_EQ(runForOutput(task).size(), descriptors == "2" ? 0U : 10'000'000U);
    const auto error = std::get<std::shared_ptr<Pipe>>(task.standardError());
    EXPECT_EQ(error->readDataToEndOfFile().size(), descriptors == "1" ? 0U : 64 * 1024 + 1U);
  }
}

TEST(Task, StatusIsTheExitStatusOrTheSignalNumber) {
  for (const auto& [end, status] : {std::pair{"0", 0}, std::pair{"44", 44}, std::pair{"-9", SIGKILL}}) {
    Task task = childTask({"end", end, ""});
    EXPECT_EQ(runForOutput(task), "");
    EXPECT_EQ(task.terminationStatus(), status);
  }
}

TEST(Task, IsNoSuccessWhenItsStatusIsLost) {
  inFork([] {
    std::signal(SIGCHLD, SIG_IGN);
    Task task = childTask({"end", "0", ""});
    EXPECT_EQ(runForOutput(task), "");
    EXPECT_EQ(task.terminationStatus(), Task::lostStatus);
  });
}

TEST(Task, LeavesAGrandchildThatHoldsItsPipesOrWritesWithoutPause) {
  Task holding = childTask({"report"});
  holding.setStandardError(holding.standardOutput());
  EXPECT_EQ(runForOutput(holding), usualReport);
  Task writing = childTask({"flood"});
  EXPECT_LT(runForOutput(writing).size(), 50'000'000U);
}

// A device in the place of its reading end is a writer that never pauses.
TEST(Pipe, TakesNoMoreThanItHoldsFromAWriterWithoutPause) {
  Pipe pipe;
  ::dup2(UniqueFd(::open("/dev/zero", O_RDONLY)).get(), pipe.readingFd());
  pipe.readAvailable();
  pipe.closeReading();
  EXPECT_LT(pipe.readDataToEndOfFile().size(), 2'000'000U);
}

TEST(Task, IsNotStoppedByATerminalThatStopsTheBackground) {
  const UniqueFd terminal(::posix_openpt(O_RDWR | O_NOCTTY));
  ASSERT_TRUE(::grantpt(terminal.get()) == 0 && ::unlockpt(terminal.get()) == 0);
  inFork([line = std::string(::ptsname(terminal.get()))] {
    ::alarm(60);  // a program that is stopped is waited for for ever
    ::setsid();
    const FileHandle ours{::open(line.c_str(), O_RDWR)};
    termios settings{};
    ASSERT_TRUE(::ioctl(ours.fd, TIOCSCTTY, 0) == 0 && ::tcgetattr(ours.fd, &settings) == 0);
    settings.c_lflag |= TOSTOP;
    ASSERT_EQ(::tcsetattr(ours.fd, TCSANOW, &settings), 0);
    Task task = childTask({"report"});
    task.setStandardInput(ours);
    task.setStandardOutput(ours);
    task.launch();
    task.waitUntilExit();
    EXPECT_EQ(task.terminationStatus(), 0);
  });
}

// The sanitizer that looks at virtual tables needs a pipe for that, so the preset sanitize goes without it.
TEST(Task, CannotBeLaunchedWithoutDescriptorsForItsPipes) {
  inFork([] {
    Task enough = childTask({"report"});
    const auto used = static_cast<rlim_t>(UniqueFd(::dup(STDIN_FILENO)).get());
    for (rlim_t unused = 0; unused < 6; ++unused) {
      const rlimit limit{used + unused, used + 6};
      ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
      Task task = childTask({"report"});
      EXPECT_EQ(task.launchAndReturnError(), Status(posixError(EMFILE))) << unused;
      EXPECT_THROW(task.launch(), LaunchException);
    }
    EXPECT_EQ(runForOutput(enough), usualReport);
  });
}

TEST(Task, SaysWhyItCannotBeLaunched) {
  const TempDirectory temp;
  for (const auto& [path, want] :
       {std::pair{temp / "missing", ENOENT}, std::pair{temp.file("text"), EACCES}}) {
    Task task = childTask({});
    task.setExecutable(path);
    EXPECT_EQ(task.launchAndReturnError(), Status(posixError(want)));
    EXPECT_THROW(task.launch(), LaunchException);
  }
}

TEST(Task, RunsAsUsualWhateverTheLauncherLeftOpenClosedBlockedOrIgnored) {
  for (int closed = 0; closed < 8; ++closed) {
    SCOPED_TRACE(closed);  // the standard descriptors, as bits
    inFork([closed] {
      sigset_t all;
      (sigfillset)(&all);  // a macro on macOS [S]
      ::sigprocmask(SIG_BLOCK, &all, nullptr);
      for (const int number : {SIGPIPE, SIGINT, SIGCHLD}) std::signal(number, SIG_IGN);
      ::dup2(STDOUT_FILENO, 50);
      for (const int fd : {0, 1, 2})
        if ((closed >> fd) % 2 != 0) ::close(fd);
      Pipe early;
      EXPECT_GT(std::min(early.readingFd(), early.writingFd()), STDERR_FILENO);
      initProcessState();
      EXPECT_EQ(::write(early.writingFd(), "typed", 5), 5);
      ::dup2(early.readingFd(), STDIN_FILENO);
      Task piped = childTask({"report", "", "last"});
      EXPECT_EQ(runForOutput(piped), usualReport + ", last");
      Task inheriting = childTask({"end", "44", ""});
      inheriting.setStandardInput(InheritedStream{});
      inheriting.setStandardError(InheritedStream{});
      EXPECT_EQ(runForOutput(inheriting), "");
      EXPECT_EQ(inheriting.terminationStatus(), 44);
      EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);  // as the launcher left them
      EXPECT_EQ(std::signal(SIGTTOU, SIG_DFL), SIG_DFL);
    });
  }
}
}  // namespace wendle
