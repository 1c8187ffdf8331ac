#include "platform/task.h"

#include <gtest/gtest.h>

#include <csignal>

#include "platform/process_start.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {

TEST(Task, TakesInAnyAmountOfOutput) {
  for (const std::string descriptors : {"1", "2", "12"}) {
    Task task = childTask({"write", descriptors});
    EXPECT_EQ(outputOf(task).size(), descriptors == "2" ? 0U : 10'000'000U);
    const auto error = std::get<std::shared_ptr<Pipe>>(task.standardError());
    EXPECT_EQ(error->readDataToEndOfFile().size(), descriptors == "1" ? 0U : 10'000'000U);
  }
}

TEST(Task, StatusIsTheExitStatusOrTheSignalNumber) {
  for (const auto& [end, status] : {std::pair{"0", 0}, std::pair{"44", 44}, std::pair{"-9", SIGKILL}}) {
    Task task = childTask({"end", end, ""});
    EXPECT_EQ(outputOf(task), "");
    EXPECT_EQ(task.terminationStatus(), status);
  }
}

TEST(Task, IsNoSuccessWhenItsStatusIsLost) {
  inFork([] {
    std::signal(SIGCHLD, SIG_IGN);
    Task task = childTask({"end", "0", ""});
    EXPECT_EQ(outputOf(task), "");
    EXPECT_EQ(task.terminationStatus(), Task::lostStatus);
  });
}

TEST(Task, LeavesAGrandchildThatHoldsTheOnePipeOfBothStreams) {
  Task task = childTask({"report"});
  task.setStandardError(task.standardOutput());
  EXPECT_EQ(outputOf(task), "fd 0 fd 1 fd 2 own group, no input");
}

TEST(Task, SaysWhyItCannotBeLaunched) {
  const TempDirectory temp;
  for (const auto& [path, want] :
       {std::pair{temp / "missing", ENOENT}, std::pair{temp.file("text"), EACCES}}) {
    Task task = childTask({});
    task.setExecutable(path);
    EXPECT_EQ(task.launchAndReturnError(), posixError(want));
    EXPECT_THROW(task.launch(), LaunchException);
  }
}

TEST(Task, RunsAsUsualWhateverTheLauncherLeftOpenClosedBlockedOrIgnored) {
  for (int closed = 0; closed < 8; ++closed) {
    SCOPED_TRACE(closed);  // the standard descriptors, as bits
    inFork([closed] {
      sigset_t all;
      ::sigfillset(&all);
      ::sigprocmask(SIG_BLOCK, &all, nullptr);
      for (const int number : {SIGPIPE, SIGINT, SIGCHLD}) std::signal(number, SIG_IGN);
      ::dup2(STDOUT_FILENO, 50);
      for (const int fd : {0, 1, 2})
        if ((closed >> fd) % 2 != 0) ::close(fd);
      const Pipe early;
      EXPECT_GT(std::min(early.readingFd(), early.writingFd()), STDERR_FILENO);
      settleProcess();
      Task piped = childTask({"report"});
      EXPECT_EQ(outputOf(piped), "fd 0 fd 1 fd 2 own group, no input");
      Task inheriting = childTask({"end", "44", ""});
      inheriting.setStandardInput(InheritedStream{});
      inheriting.setStandardError(InheritedStream{});
      EXPECT_EQ(outputOf(inheriting), "");
      EXPECT_EQ(inheriting.terminationStatus(), 44);
    });
  }
}

}  // namespace wendle
