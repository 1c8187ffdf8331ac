#pragma once

#include <string>
#include <vector>

namespace wendle {
// What a process is started with, what ends it, and what the system tells it: where the directories of its
// user are, and random numbers.

// The arguments this process was started with, the executable's path as the first. Source: NSProcessInfo.
[[nodiscard]] const std::vector<std::string>& processArguments();

// Makes the process independent of the state its launcher started it in; the first thing that main does.
// Descriptors 0, 1 and 2 are opened on /dev/null where they are closed, so that no file of ours takes their
// number; an inherited "ignore" of SIGCHLD, which would lose the exit status of every tool (wait(2)), is
// undone; a file size limit fails a write instead of ending the process.
//
// And it leaves its launcher's process group: macOS kills what is left in the group of an application that
// has ended (launchd.plist(5), AbandonProcessGroup), and the application that starts us is one that we ask to
// quit. Where that fails the process leads a group already. A terminal's Ctrl-C does not reach us any more.
void initProcessState();

// The current user's home directory, as the system names it. Source: NSHomeDirectory.
[[nodiscard]] std::string homeDirectoryPath();

enum class StandardDirectory {
  userLibrary,             // NSLibraryDirectory in NSUserDomainMask
  userApplicationSupport,  // NSApplicationSupportDirectory in NSUserDomainMask
  localUsers,              // NSUserDirectory in NSLocalDomainMask
  localApplications,       // NSApplicationDirectory in NSLocalDomainMask
};

// The first path that the system names for the directory, the home directory written out; empty when it names
// none, as Linux does. Source: NSSearchPathForDirectoriesInDomains.
[[nodiscard]] std::string systemDirectoryPath(StandardDirectory directory);

// The same, and where the system names none, the usual place: Library in the home directory, Application
// Support in the library, /Users, /Applications. It need not exist.
[[nodiscard]] std::string standardDirectoryPath(StandardDirectory directory);

// A random identifier in its 36-character text form, upper case: 68753A44-4D6F-1226-9C60-0050E4C00067.
// Source: NSUUID. Throws std::system_error where the system has no random numbers to give.
[[nodiscard]] std::string makeUniqueIdentifier();

// The system's own exceptions: NSException on macOS, none on Linux. std::set_terminate does not hear of them
// in a program with a C++ runtime of its own inside [I].

// From now on `report` is called with name and reason of one that nothing catches, and after it the handler
// that was set before. The program then ends as it would have done anyway. Source:
// NSSetUncaughtExceptionHandler.
void reportUncaughtSystemExceptions(void (*report)(const std::string& cause));

// For a terminate handler: whether the exception that ends the program is one of them. The terminate handler
// that the system had set then calls `report`.
[[nodiscard]] bool isEndingBySystemException();
}  // namespace wendle
