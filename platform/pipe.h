#pragma once

#include <string>

#include "base/unique_fd.h"

namespace wendle {

// One pipe, and the bytes that were taken in from it so far. Both ends are close-on-exec and lie above
// descriptor 2, so that a child's standard streams can be arranged without one overwriting another.
class Pipe {
 public:
  // Throws std::system_error when the process has no descriptors left.
  Pipe();

  // Everything written to the pipe: what was taken in before, then all up to end of file. Blocks until every
  // writer has closed the pipe. Bytes as they came; a read error counts as end of file.
  [[nodiscard]] std::string readDataToEndOfFile();

  // One read, which waits when nothing lies in the pipe. False from end of file or an error on, which close
  // the reading end.
  bool takeInOnce();

  // Takes in what lies in the pipe now, without waiting.
  void takeInAvailable();

  [[nodiscard]] int readingFd() const { return readEnd_.get(); }  // -1 after end of file
  [[nodiscard]] int writingFd() const { return writeEnd_.get(); }
  void closeReading() { readEnd_.reset(); }
  void closeWriting() { writeEnd_.reset(); }

 private:
  UniqueFd readEnd_;
  UniqueFd writeEnd_;
  std::string data_;
};

}  // namespace wendle
