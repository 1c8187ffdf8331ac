#pragma once

#include <limits>
#include <string>

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

}  // namespace wendle
