#include "logging/log_file.h"

#include "base/unique_fd.h"

namespace wendle {

LogFile::LogFile(LogFolder folder, LogTime start) : folder_(std::move(folder)), start_(start) {}

void LogFile::write(std::string_view record) {
  std::call_once(created_, [this] {
    file_ = folder_.createFile(start_);
    folder_.removeOldFiles(start_);
  });
  std::string line(isWithinLine_ ? "\n" : "");
  line += record;
  const ssize_t written = retryOnInterrupt([&] { return ::write(file_.get(), line.data(), line.size()); });
  if (written > 0) isWithinLine_ = line[static_cast<size_t>(written) - 1] != '\n';
}

}  // namespace wendle
