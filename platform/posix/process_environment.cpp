#include "platform/process_environment.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace wendle {
static std::string usualDirectoryPath(StandardDirectory directory) {
  switch (directory) {
    case StandardDirectory::userLibrary:
      return homeDirectoryPath() + "/Library";
    case StandardDirectory::userApplicationSupport:
      return standardDirectoryPath(StandardDirectory::userLibrary) + "/Application Support";
    case StandardDirectory::localUsers:
      return "/Users";
    case StandardDirectory::localApplications:
      return "/Applications";
  }
  return {};
}

void initProcessState() {
  int fd = ::open("/dev/null", O_RDWR);  // takes the lowest number that is free
  while (fd >= STDIN_FILENO && fd <= STDERR_FILENO) fd = ::dup(fd);
  if (fd > STDERR_FILENO) ::close(fd);
  std::signal(SIGCHLD, SIG_DFL);
  std::signal(SIGXFSZ, SIG_IGN);
  ::setpgid(0, 0);
}

std::string standardDirectoryPath(StandardDirectory directory) {
  const std::string path = systemDirectoryPath(directory);
  return path.empty() ? usualDirectoryPath(directory) : path;
}
}  // namespace wendle
