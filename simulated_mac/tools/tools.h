// The tools of the simulated Mac. Each takes its arguments and returns its exit status; what it prints and
// returns is what macOS prints and returns, as far as docs/simulated-mac.md says.
#pragma once

#include "simulated_mac/shared.h"

namespace wendle::mac {
int launchctl(const Strings& arguments);
int pluginkit(const Strings& arguments);
int tccutil(const Strings& arguments);
int defaults(const Strings& arguments);
int security(const Strings& arguments);
int mdfind(const Strings& arguments);
int plistBuddy(const Strings& arguments);
int killall(const Strings& arguments);
int scutil(const Strings& arguments);
int sudo(const Strings& arguments);
int launchctlAsUser(const Strings& arguments);  // of two words at least

// What else goes by this executable: the first process of a session.
int sessionMain(const Strings& arguments);
// Turns this process, which is root's, into the user's, whose session sudo finds by it.
void becomeUser();

// Whether the arguments are the words of `pattern`, where a `*` stands for any one.
bool fits(const Strings& arguments, std::string_view pattern);
// Says `text` and a line feed on stderr; returns `status`.
int complain(std::string_view text, int status);
// `arguments` with the program's name in front.
[[noreturn]] void execute(const char* program, Strings arguments);
// A descriptor that becomes readable when the process has ended; negative when it is gone. (The C library's
// own wrapper cannot be linked from C++ everywhere.)
int openProcess(int pid);
}  // namespace wendle::mac
