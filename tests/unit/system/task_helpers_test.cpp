#include "system/tasks/task_helpers.h"

#include <gtest/gtest.h>

#include "support/processes.h"

namespace wendle {

static std::optional<Error> errorOf(Task task) {
  EXPECT_EQ(outputOf(task), "");
  return terminationError(task);
}

TEST(TerminationError, IsTheStatusAndTheTrimmedErrorOutput) {
  const std::string domain = "NSOSStatusErrorDomain";
  EXPECT_EQ(errorOf(childTask({"end", "44", "not found.\n"})), (Error{domain, 44, "not found."}));
  EXPECT_EQ(errorOf(childTask({"end", "1", "\u00A0\n two\nlines\u2029 "})), (Error{domain, 1, "two\nlines"}));
  EXPECT_EQ(errorOf(childTask({"end", "2", "\xFF"})), (Error{domain, 2, "No description"}));
  EXPECT_EQ(errorOf(childTask({"end", "0", "all went well"})), std::nullopt);
  Task withoutPipe = childTask({"end", "44", ""});
  withoutPipe.setStandardError(FileHandle{STDOUT_FILENO});
  EXPECT_EQ(errorOf(std::move(withoutPipe)), std::nullopt);
}

TEST(RunCommand, ReturnsBothStreamsAsTheyCameAndGivesNoInput) {
  if (::access("/bin/zsh", X_OK) != 0) GTEST_SKIP() << "there is no /bin/zsh";
  EXPECT_EQ(runCommand("print -n ' a'; echo b >&2; echo 3; exit 4"), " ab\n3\n");
  EXPECT_THROW((void)runCommand("print -n '\\xff'"), std::runtime_error);
  inFork([] {
    Pipe typed;
    EXPECT_EQ(::write(typed.writingFd(), "typed\n", 6), 6);
    ::dup2(typed.readingFd(), STDIN_FILENO);
    EXPECT_EQ(runCommand("read -r line; print -n $line"), "");
  });
}

}  // namespace wendle
