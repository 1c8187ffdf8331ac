#include "system/tasks/task_helpers.h"

#include <gtest/gtest.h>

#include <csignal>

#include "support/processes.h"

namespace wendle {
static Status runForError(Task task) {
  EXPECT_EQ(runForOutput(task), "");
  return terminationError(task);
}

TEST(TerminationError, IsTheStatusAndTheTrimmedErrorOutput) {
  const std::string domain = "NSOSStatusErrorDomain";
  EXPECT_EQ(runForError(childTask({"end", "44", "not found.\n"})), Status(Error{domain, 44, "not found."}));
  EXPECT_EQ(runForError(childTask({"end", "1", "\u00A0\n two\nlines\u2029 "})),
            Status(Error{domain, 1, "two\nlines"}));
  EXPECT_EQ(runForError(childTask({"end", "2", "\xFF"})), Status(Error{domain, 2, "No description"}));
  EXPECT_EQ(runForError(childTask({"end", "0", "all went well"})), Status());
  const std::string cut(64 * 1024 - 1, 'x');  // a character at the limit goes as a whole
  EXPECT_EQ(runForError(childTask({"end", "3", cut + "é and more"})), Status(Error{domain, 3, cut}));
  Task withoutPipe = childTask({"end", "44", ""});
  withoutPipe.setStandardError(FileHandle{STDOUT_FILENO});
  EXPECT_EQ(runForError(std::move(withoutPipe)), Status());
}

TEST(RunCommand, ReturnsBothStreamsAsTheyCameAndGivesNoInput) {
  if (::access("/bin/zsh", X_OK) != 0) GTEST_SKIP() << "there is no /bin/zsh";
  EXPECT_EQ(runCommand("print -n ' a'; echo b >&2; echo 3; exit 4"), " ab\n3\n");
  EXPECT_THROW((void)runCommand("print -n '\\xff'"), std::runtime_error);
  inFork([] {
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(runCommand("yes | head -n 1"), "y\n");  // `yes` complains where it does not die of the signal
    Pipe typed;
    EXPECT_EQ(::write(typed.writingFd(), "typed\n", 6), 6);
    ::dup2(typed.readingFd(), STDIN_FILENO);
    EXPECT_EQ(runCommand("read -r line; print -n $line"), "");
  });
}
}  // namespace wendle
