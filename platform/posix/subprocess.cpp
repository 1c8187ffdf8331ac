#include "platform/subprocess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <map>
#include <mutex>

extern char** environ;  // NOLINT(readability-redundant-declaration): no header of macOS declares it [S]

namespace wendle {
namespace {
constexpr int firstOrdinaryFd = 3;
constexpr size_t maxPipeCapacity = 1024 * 1024;  // pipe(7): more needs privileges; macOS's hold less [S]

// Not open, and errno says why, when there is no descriptor left.
UniqueFd closedOnExecAboveStandardStreams(UniqueFd fd) {
  if (fd.get() < firstOrdinaryFd) return UniqueFd(::fcntl(fd.get(), F_DUPFD_CLOEXEC, firstOrdinaryFd));
  ::fcntl(fd.get(), F_SETFD, FD_CLOEXEC);
  return fd;
}

// The end of the output pipes tells that a tool has exited. This tick is for the rare one whose grandchild
// keeps a pipe open: how late its exit may be noticed, in milliseconds.
constexpr int exitCheckInterval = 20;

// Ignores signals for as long as it lives, in the whole process: a program that is started meanwhile ignores
// them too, which posix_spawn(3) has no attribute for. One at a time, so that each finds what was there
// before.
class IgnoredSignals {
 public:
  explicit IgnoredSignals(const std::vector<int>& numbers) : lock_(mutex()) {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    for (const int number : numbers) ::sigaction(number, &ignore, &former_[number]);
  }
  IgnoredSignals(const IgnoredSignals&) = delete;
  IgnoredSignals& operator=(const IgnoredSignals&) = delete;
  ~IgnoredSignals() {
    for (const auto& [number, action] : former_) ::sigaction(number, &action, nullptr);
  }

 private:
  static std::mutex& mutex() {
    static auto* const instance = new std::mutex;  // for a start as late as during exit
    return *instance;
  }

  std::lock_guard<std::mutex> lock_;
  std::map<int, struct sigaction> former_;
};

// The two halves of what posix_spawn is told, released together.
struct SpawnAttributes {
  SpawnAttributes() {
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_init(&actions);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  ~SpawnAttributes() {
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
  }

  posix_spawnattr_t attributes{};
  posix_spawn_file_actions_t actions{};
};

// Closes in the child what our own launcher left open above descriptor 2, after all other actions: by a flag
// where there is one (macOS [S]), or by an action (glibc 2.34 and later). Returns the flag.
short inheritStandardStreamsOnly([[maybe_unused]] SpawnAttributes& spawn) {
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
  return POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
  ::posix_spawn_file_actions_addclosefrom_np(&spawn.actions, firstOrdinaryFd);
  return 0;
#endif
}

// All others have their default action in the program, and none is blocked, whatever our launcher blocked or
// ignored.
short resetSignalsExcept(const std::vector<int>& ignored, posix_spawnattr_t& attributes) {
  sigset_t none;
  sigset_t reset;
  sigemptyset(&none);  // unqualified: macros on macOS [S]
  sigfillset(&reset);
  for (const int unchangeable : {SIGKILL, SIGSTOP}) sigdelset(&reset, unchangeable);
  for (const int number : ignored) sigdelset(&reset, number);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setsigdefault(&attributes, &reset);
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

std::vector<char*> toPointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

Pipe* toPipe(const Stream& stream) {
  const auto* pipe = std::get_if<std::shared_ptr<Pipe>>(&stream);
  return pipe == nullptr ? nullptr : pipe->get();
}
}  // namespace

Pipe::Pipe(size_t maxKept) : maxKept_(maxKept), status_(makeEnds()) {}

Status Pipe::makeEnds() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return posixError(errno);
  UniqueFd reading(ends[0]);
  UniqueFd writing(ends[1]);
  readEnd_ = closedOnExecAboveStandardStreams(std::move(reading));
  if (!readEnd_.isOpen()) return posixError(errno);
  writeEnd_ = closedOnExecAboveStandardStreams(std::move(writing));
  if (!writeEnd_.isOpen()) return posixError(errno);
  return {};
}

std::string Pipe::readDataToEndOfFile() {
  while (readOnce() > 0) continue;
  return std::exchange(data_, {});
}

void Pipe::readAvailable() {
  pollfd readable{readEnd_.get(), POLLIN, 0};
  size_t count = 0;  // limited, since a writer that never pauses must not hold us here
  while (readEnd_.isOpen() && count < maxPipeCapacity &&
         retryOnInterrupt([&] { return ::poll(&readable, 1, 0); }) == 1) {
    count += readOnce();
  }
}

size_t Pipe::readOnce() {
  if (!readEnd_.isOpen()) return 0;
  std::array<char, 64 * 1024> buffer;  // NOLINT(*-member-init): read(2) fills what is used of it
  const ssize_t result =
      retryOnInterrupt([&] { return ::read(readEnd_.get(), buffer.data(), buffer.size()); });
  if (result <= 0) {
    readEnd_.reset();
    return 0;
  }
  const auto count = static_cast<size_t>(result);
  data_.append(buffer.data(), std::min(count, maxKept_ - data_.size()));
  return count;
}

LaunchException::LaunchException(const std::string& executable, const Error& cause)
    : std::runtime_error("launch path not accessible: " + executable + ": " + describe(cause)) {}

Status Task::launchAndReturnError() {
  for (const Stream* stream : {&input_, &output_, &error_}) {
    const Pipe* pipe = toPipe(*stream);
    if (pipe != nullptr && !pipe->status().ok()) return pipe->status();
  }
  std::vector<int> ignored{SIGTTIN, SIGTTOU};
  if (sigpipe_ == Sigpipe::ignored) ignored.push_back(SIGPIPE);
  SpawnAttributes spawn;
  ::posix_spawnattr_setpgroup(&spawn.attributes, 0);
  std::visit(AddStream{spawn.actions, STDIN_FILENO, Direction::reading}, input_);
  std::visit(AddStream{spawn.actions, STDOUT_FILENO, Direction::writing}, output_);
  std::visit(AddStream{spawn.actions, STDERR_FILENO, Direction::writing}, error_);
  const int flags = POSIX_SPAWN_SETPGROUP | resetSignalsExcept(ignored, spawn.attributes) |
                    inheritStandardStreamsOnly(spawn);
  ::posix_spawnattr_setflags(&spawn.attributes, static_cast<short>(flags));

  std::vector<std::string> argv{executable_};
  argv.insert(argv.end(), arguments_.begin(), arguments_.end());
  const int failure = [&] {
    const IgnoredSignals inChildToo(ignored);
    return ::posix_spawn(&pid_, executable_.c_str(), &spawn.actions, &spawn.attributes,
                         toPointers(argv).data(), environ);
  }();
  closeChildEnds();
  if (failure != 0) return posixError(failure);
  return {};
}

void Task::launch() {
  if (const Status status = launchAndReturnError(); !status.ok())
    throw LaunchException(executable_, status.error());
}

// From here on end of file comes as soon as the child and its heirs are done.
void Task::closeChildEnds() {
  if (Pipe* pipe = toPipe(input_)) pipe->closeReading();
  for (Pipe* pipe : outputPipes()) pipe->closeWriting();
}

std::vector<Pipe*> Task::outputPipes() const {
  std::vector<Pipe*> pipes;
  for (const Stream* stream : {&output_, &error_}) {
    Pipe* pipe = toPipe(*stream);
    if (pipe != nullptr && (pipes.empty() || pipes.front() != pipe)) pipes.push_back(pipe);
  }
  return pipes;
}

// Waits for output, one tick at most, and reads some. False when every output pipe has ended.
bool Task::readOutput() const {
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
      if (readable[i].revents != 0) pipes[i]->readAvailable();
    }
  }
  return true;
}

void Task::waitUntilExit() {
  if (Pipe* pipe = toPipe(input_)) pipe->closeWriting();
  while (readOutput() && !reap(Blocking::no)) continue;
  reap(Blocking::yes);
  for (Pipe* pipe : outputPipes()) {
    pipe->readAvailable();
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
