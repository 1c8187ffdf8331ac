#pragma once

#include <string>
#include <vector>

#include "platform/subprocess.h"

namespace wendle {
// How this program runs the system's tools. Nothing here logs.

inline constexpr size_t maxLoggedText = 64 * 1024;  // bytes of a tool's text that go into the log

// Sets what `task` runs, starts it and waits until it has exited; its exit status is ignored. Returns the
// error of a program that cannot be started.
Status runAndReturnError(Task& task, const std::string& executable,
                         const std::vector<std::string>& arguments);

// The same for where such an error has no place in the log: throws LaunchException.
void run(Task& task, const std::string& executable, const std::vector<std::string>& arguments);

// The same with a piped task of its own: returns all that the program wrote on standard output, as it came.
[[nodiscard]] std::string runForOutput(const std::string& executable,
                                       const std::vector<std::string>& arguments);

// Runs one command line through /bin/zsh with no input and returns everything it wrote on standard output and
// standard error, as it came, untrimmed; beyond 16 MiB it is thrown away. Blocks until the last holder of its
// output has closed it, a grandchild included. A command that fails goes unnoticed: its text is the result.
//
// Throws LaunchException when the shell cannot be started, and std::runtime_error when the output is no
// UTF-8.
[[nodiscard]] std::string runCommand(const std::string& command);

// A task that is not started yet: input and error on fresh pipes, output on this program's own standard
// output. Of the error output, what terminationError() makes use of is kept.
[[nodiscard]] Task makeConsoleTask();

// A task that is not started yet: input, error and output on three fresh pipes.
[[nodiscard]] Task makePipedTask();

// What a finished task failed with: domain `NSOSStatusErrorDomain`, its exit status as the code, its trimmed
// error output as the description ("No description" when that is no UTF-8), at most maxLoggedText bytes of
// it. Success for status 0, and when its error output was not on a pipe. Reads that pipe, so it can be asked
// once.
[[nodiscard]] Status terminationError(const Task& task);
}  // namespace wendle
