#include "platform/process_start.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace wendle {

void settleProcess() {
  int fd = ::open("/dev/null", O_RDWR);  // takes the lowest number that is free
  while (fd >= STDIN_FILENO && fd <= STDERR_FILENO) fd = ::dup(fd);
  if (fd > STDERR_FILENO) ::close(fd);
  std::signal(SIGCHLD, SIG_DFL);
  std::signal(SIGXFSZ, SIG_IGN);
  ::setpgid(0, 0);
}

}  // namespace wendle
