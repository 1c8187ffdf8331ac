// Who sits at the Mac, and the tools by which root starts something in that user's session.
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "simulated_mac/tools/tools.h"

namespace wendle::mac {
namespace {
// A name and a number; nothing when nobody is there.
Strings consoleUser() {
  return split(fs::exists(consoleUserFile) ? readFile(consoleUserFile) : "pat 501", ' ');
}
}  // namespace

// Root and pat are one user of the host: number 0 of a namespace, with every privilege there, and number 501
// of a namespace within it, with none once a program is started.
void becomeUser() {
  if (::unshare(CLONE_NEWUSER) != 0) throw std::runtime_error("There can be no user beside root.");
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", "501 0 1");
  writeFile("/proc/self/gid_map", "20 0 1");
}

int scutil(const Strings& arguments) {
  if (!arguments.empty()) return complain("usage: scutil", 64);
  for (std::string command; std::getline(std::cin, command);) {
    const Strings user = consoleUser();
    const bool isKnown = command == "show State:/Users/ConsoleUser" && user.size() == 2;
    if (!isKnown) std::cout << "  No such key\n";
    if (!isKnown) continue;
    std::cout << "<dictionary> {\n  GID : 20\n  Name : " << user[0]
              << "\n  SessionInfo : <array> {\n    0 : <dictionary> {\n      kCGSSessionOnConsoleKey : TRUE\n"
              << "      kCGSSessionUserIDKey : " << user[1] << "\n      kCGSSessionUserNameKey : " << user[0]
              << "\n      kCGSessionLongUserNameKey : UID : 0 Name : root\n    }\n  }\n  UID : " << user[1]
              << "\n}\n";
  }
  return 0;
}

int launchctlAsUser(const Strings& arguments) {
  const Strings user = consoleUser();
  if (::getuid() != 0 || user.size() != 2 || arguments[1] != user[1])
    return complain("Could not switch to the session of " + arguments[1], 1);
  execute(arguments[2].c_str(), {arguments.begin() + 2, arguments.end()});
}

int sudo(const Strings& arguments) {
  if (arguments.size() < 5 || !fits({arguments.begin(), arguments.begin() + 4}, "-n -H -u #501"))
    return complain("usage: sudo ...", 1);
  const int session = ::open("/proc/1/ns/user", O_RDONLY | O_CLOEXEC);
  if (::getuid() != 0 || ::setns(session, CLONE_NEWUSER) != 0)
    return complain("sudo: a password is required", 1);
  const char* locale = std::getenv("LC_ALL");  // which sudo lets through on macOS [D]
  const Strings kept(locale == nullptr ? 0 : 1, locale == nullptr ? "" : locale);
  ::clearenv();
  for (const std::string& value : kept) ::setenv("LC_ALL", value.c_str(), 1);
  ::setenv("PATH", "/usr/bin:/bin:/usr/sbin:/sbin", 1);
  ::setenv("HOME", home.c_str(), 1);
  for (const char* name : {"USER", "LOGNAME"}) ::setenv(name, "pat", 1);
  ::umask(::umask(0) | 022);
  execute(arguments[4].c_str(), {arguments.begin() + 4, arguments.end()});
}
}  // namespace wendle::mac
