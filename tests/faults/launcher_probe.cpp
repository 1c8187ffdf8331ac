// What starts the uninstaller in a session: the client, an application in a process group of its own. Ends
// with 0 when everything ended as it should.
//
//   launcher_probe client IDENTIFIER PROGRAM ARGUMENTS...
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

namespace {
constexpr int succeeded = 0;  // as waitpid tells it

pid_t start(char** command) {
  const pid_t pid = ::fork();
  if (pid != 0) return pid;
  ::execv(command[0], command);
  ::_exit(127);
}

sigset_t requestToQuit() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGTERM);
  return signals;
}

// The application: starts the program, and takes its whole group along as soon as it is asked to quit.
[[noreturn]] void runClient(char** command) {
  const sigset_t request = requestToQuit();
  int number = 0;
  ::sigprocmask(SIG_BLOCK, &request, nullptr);
  start(command);
  ::sigwait(&request, &number);
  ::kill(0, SIGKILL);
  ::_exit(1);
}

// The processes that an ended application leaves behind become ours; those in its group die with it.
int superviseClient(char* self, char* identifier, char** command) {
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  const pid_t client = ::fork();
  if (client == 0) {
    ::setpgid(0, 0);
    ::setenv("__CFBundleIdentifier", identifier, 1);
    char role[] = "application";
    command[-2] = self;
    command[-1] = role;
    ::execv("/proc/self/exe", command - 2);
  }
  int end = 0;
  ::waitpid(client, &end, 0);
  ::kill(-client, SIGKILL);
  if (!WIFSIGNALED(end) || WTERMSIG(end) != SIGKILL) return 2;
  while (::wait(&end) > 0 && end == succeeded) continue;
  return end == succeeded ? 0 : 3;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 1;
  const std::string_view role = argv[1];
  if (role == "application") runClient(argv + 2);
  return superviseClient(argv[0], argv[2], argv + 3);
}
