#pragma once

#include <functional>

#include "platform/subprocess.h"

namespace wendle {
// Runs `body` in a process of its own, so that what it does to descriptors, signals and limits is gone with
// it. An expectation that fails there fails here.
void inFork(const std::function<void()>& body);

// The same without the rights of the superuser, who ignores file modes.
void inForkAsOrdinaryUser(const std::function<void()>& body);

// The tests need no tool of the system: this executable itself is the program that a task runs. This is a
// task, not started yet, with all its streams on fresh pipes, whose program does one of these:
//   write FDS          writes ten million bytes on each of the descriptors, by turns; FDS is 1, 2 or 12
//   end STATUS TEXT    writes TEXT on its error output and exits with STATUS; -N: killed by signal N
//   report ...         says what it has inherited and found on its input, and its last argument; it leaves a
//                      grandchild that keeps the pipes until nobody reads them any more
//   flood              leaves a grandchild that writes a hundred million bytes on its output once it is alone
[[nodiscard]] Task childTask(std::vector<std::string> act);

// Launches `task`, waits for it, and returns all it wrote on its output.
[[nodiscard]] std::string runForOutput(Task& task);
}  // namespace wendle
