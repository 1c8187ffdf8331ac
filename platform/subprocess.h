#pragma once

#include <sys/types.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "base/error.h"
#include "base/unique_fd.h"

namespace wendle {
// One pipe, and the bytes that were read from it so far. Both ends are close-on-exec and lie above
// descriptor 2, so that a child's standard streams can be arranged without one overwriting another.
class Pipe {
 public:
  // Of what is written to the pipe the first `maxKept` bytes are kept; the rest is read and thrown away.
  explicit Pipe(size_t maxKept = std::numeric_limits<size_t>::max());

  // The system's error when the pipe could not be made, as when the process has no descriptors left. It has
  // no ends then.
  [[nodiscard]] const Status& status() const { return status_; }

  // Everything written to the pipe, as far as it is kept: what was read before, then all up to end of file.
  // Blocks until every writer has closed the pipe. Bytes as they came; a read error counts as end of file.
  [[nodiscard]] std::string readDataToEndOfFile();

  // One read, which waits when nothing lies in the pipe. Returns how many bytes it got: 0 from end of file or
  // an error on, which close the reading end.
  size_t readOnce();

  // Reads what lies in the pipe now, without waiting.
  void readAvailable();

  [[nodiscard]] int readingFd() const { return readEnd_.get(); }  // -1 after end of file
  [[nodiscard]] int writingFd() const { return writeEnd_.get(); }
  void closeReading() { readEnd_.reset(); }
  void closeWriting() { writeEnd_.reset(); }

 private:
  Status makeEnds();

  UniqueFd readEnd_;
  UniqueFd writeEnd_;
  std::string data_;
  size_t maxKept_;
  Status status_;
};

struct InheritedStream {};  // the tool's own stream, the default
struct NullStream {};       // /dev/null
struct FileHandle {         // somebody else's descriptor, not owned
  int fd;
};
using Stream = std::variant<InheritedStream, NullStream, FileHandle, std::shared_ptr<Pipe>>;

// What `Task::launch` throws: NSTask raises an NSInvalidArgumentException there.
class LaunchException : public std::runtime_error {
 public:
  LaunchException(const std::string& executable, const Error& cause);
};

// One run of one program by absolute path, with an argument array; never reused. The program inherits
// environment and working directory, no descriptor but 0, 1 and 2, and no blocked signal, and leads a process
// group of its own: a background one, so it ignores SIGTTIN and SIGTTOU, which would stop it at a terminal.
// The search path is not looked at (posix_spawn(3)).
class Task {
 public:
  void setExecutable(std::string path) { executable_ = std::move(path); }
  void setArguments(std::vector<std::string> arguments) { arguments_ = std::move(arguments); }
  void setStandardInput(Stream stream) { input_ = std::move(stream); }
  void setStandardOutput(Stream stream) { output_ = std::move(stream); }
  void setStandardError(Stream stream) { error_ = std::move(stream); }

  // What SIGPIPE does to the program. It is ignored unless told otherwise: who reads our standard output may
  // go away, and the program must do its work all the same. The stages of a shell's pipeline live on it.
  enum class Sigpipe { ignored, terminates };
  void setSigpipe(Sigpipe sigpipe) { sigpipe_ = sigpipe; }

  [[nodiscard]] const Stream& standardOutput() const { return output_; }
  [[nodiscard]] const Stream& standardError() const { return error_; }

  // Starts the program. Returns the system's error when it cannot be started: ENOENT when it is missing,
  // EACCES when it is not executable, EMFILE when there were no descriptors for its pipes.
  Status launchAndReturnError();

  // Starts the program; throws LaunchException when it cannot be started.
  void launch();

  // Blocks until the program has exited. Meanwhile it reads what the program writes on its pipes, so no
  // amount of output blocks the program, and end of file is all it finds on an input pipe. A grandchild that
  // still holds a pipe is not waited for: what it writes later is lost. Afterwards the pipes hold all there
  // is to read.
  void waitUntilExit();

  // What stands for a status that the system did not keep, as for a process that ignores SIGCHLD.
  static constexpr int lostStatus = 255;

  // The exit status, or the number of the signal that killed the program. Defined after waitUntilExit only.
  [[nodiscard]] int terminationStatus() const { return terminationStatus_; }

 private:
  void closeChildEnds();
  std::vector<Pipe*> outputPipes() const;
  bool readOutput() const;
  enum class Blocking { no, yes };
  bool reap(Blocking blocking);

  std::string executable_;
  std::vector<std::string> arguments_;
  Stream input_;
  Stream output_;
  Stream error_;
  Sigpipe sigpipe_ = Sigpipe::ignored;
  pid_t pid_ = -1;
  int terminationStatus_ = 0;
};
}  // namespace wendle
