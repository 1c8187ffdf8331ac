#include "logging/log_file.h"

#include "platform/retry.h"

namespace wendle {

LogFile::LogFile(LogFolder folder, LogTime start) : folder_(std::move(folder)), start_(start) {}

void LogFile::write(std::string_view record) {
  std::call_once(created_, [this] {
    file_ = folder_.createFile(start_);
    folder_.removeOldFiles();
  });
  retryOnInterrupt([&] { return ::write(file_.get(), record.data(), record.size()); });
}

}  // namespace wendle
