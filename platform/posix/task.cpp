#include "platform/task.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>

#include <csignal>

#include "base/unique_fd.h"
#include "platform/posix/spawn_attributes.h"

extern char** environ;  // NOLINT(readability-redundant-declaration): no header of macOS declares it

namespace wendle {
namespace {

// The end of the output pipes tells that a tool has exited. This tick is for the rare one whose grandchild
// keeps a pipe open: how late its exit may be noticed, in milliseconds.
constexpr int exitCheckInterval = 20;

// Signals that our launcher blocked or ignores must reach the tool as usual: a shell pipeline lives on
// SIGPIPE.
short restoreSignals(posix_spawnattr_t& attributes) {
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);  // unqualified: macros on macOS
  sigfillset(&all);
  for (const int unchangeable : {SIGKILL, SIGSTOP}) sigdelset(&all, unchangeable);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setsigdefault(&attributes, &all);
  return POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
}

enum class Direction { reading, writing };

struct AddStream {
  posix_spawn_file_actions_t& actions;
  int target;
  Direction direction;

  void operator()(InheritedStream) const {
    duplicate(target);
  }  // says "keep it" where all is closed by default
  void operator()(NullStream) const {
    ::posix_spawn_file_actions_addopen(&actions, target, "/dev/null", O_RDWR, 0);
  }
  void operator()(FileHandle handle) const { duplicate(handle.fd); }
  void operator()(const std::shared_ptr<Pipe>& pipe) const {
    duplicate(direction == Direction::reading ? pipe->readingFd() : pipe->writingFd());
  }
  void duplicate(int source) const { ::posix_spawn_file_actions_adddup2(&actions, source, target); }
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

Pipe* pipeOf(const Stream& stream) {
  const auto* pipe = std::get_if<std::shared_ptr<Pipe>>(&stream);
  return pipe == nullptr ? nullptr : pipe->get();
}

}  // namespace

LaunchException::LaunchException(const std::string& executable, const Error& cause)
    : std::runtime_error("launch path not accessible: " + executable + ": " + describe(cause)) {}

std::optional<Error> Task::launchAndReturnError() {
  SpawnAttributes spawn;
  ::posix_spawnattr_setpgroup(&spawn.attributes, 0);
  auto flags = static_cast<short>(POSIX_SPAWN_SETPGROUP | restoreSignals(spawn.attributes));
  std::visit(AddStream{spawn.actions, STDIN_FILENO, Direction::reading}, input_);
  std::visit(AddStream{spawn.actions, STDOUT_FILENO, Direction::writing}, output_);
  std::visit(AddStream{spawn.actions, STDERR_FILENO, Direction::writing}, error_);
  inheritStandardStreamsOnly(spawn, flags);
  ::posix_spawnattr_setflags(&spawn.attributes, flags);

  std::vector<std::string> argv{executable_};
  argv.insert(argv.end(), arguments_.begin(), arguments_.end());
  const int failure = ::posix_spawn(&pid_, executable_.c_str(), &spawn.actions, &spawn.attributes,
                                    pointers(argv).data(), environ);
  closeChildEnds();
  if (failure != 0) return posixError(failure);
  return std::nullopt;
}

void Task::launch() {
  if (const auto error = launchAndReturnError()) throw LaunchException(executable_, *error);
}

// From here on end of file comes as soon as the child and its heirs are done.
void Task::closeChildEnds() {
  if (Pipe* pipe = pipeOf(input_)) pipe->closeReading();
  for (Pipe* pipe : outputPipes()) pipe->closeWriting();
}

std::vector<Pipe*> Task::outputPipes() const {
  std::vector<Pipe*> pipes;
  for (const Stream* stream : {&output_, &error_}) {
    Pipe* pipe = pipeOf(*stream);
    if (pipe != nullptr && (pipes.empty() || pipes.front() != pipe)) pipes.push_back(pipe);
  }
  return pipes;
}

// Waits for output, one tick at most, and takes some in. False when every output pipe has ended.
bool Task::takeInOutput() const {
  std::vector<pollfd> readable;
  std::vector<Pipe*> pipes;
  for (Pipe* pipe : outputPipes()) {
    if (pipe->readingFd() < 0) continue;
    readable.push_back({pipe->readingFd(), POLLIN, 0});
    pipes.push_back(pipe);
  }
  if (pipes.empty()) return false;
  if (::poll(readable.data(), static_cast<nfds_t>(readable.size()), exitCheckInterval) > 0) {
    for (size_t i = 0; i < pipes.size(); ++i) {
      if (readable[i].revents != 0) pipes[i]->takeInOnce();
    }
  }
  return true;
}

void Task::waitUntilExit() {
  if (Pipe* pipe = pipeOf(input_)) pipe->closeWriting();
  while (takeInOutput() && !reap(Blocking::no)) continue;
  reap(Blocking::yes);
  for (Pipe* pipe : outputPipes()) {
    pipe->takeInAvailable();
    pipe->closeReading();
  }
}

bool Task::reap(Blocking blocking) {
  if (pid_ < 0) return true;
  int status = 0;
  const int options = blocking == Blocking::yes ? 0 : WNOHANG;
  const pid_t waited = retryOnInterrupt([&] { return ::waitpid(pid_, &status, options); });
  if (waited == 0) return false;
  pid_ = -1;
  if (waited < 0) {
    terminationStatus_ = lostStatus;
  } else {
    terminationStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
  }
  return true;
}

}  // namespace wendle
