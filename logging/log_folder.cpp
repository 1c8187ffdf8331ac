#include "logging/log_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <tuple>

#include "platform/directory_stream.h"

namespace wendle {
namespace {

constexpr std::string_view suffix = ".log";
constexpr size_t timeStampLength = std::string_view("20261121T074012Z").size();

bool isTimeStamp(std::string_view text) {
  constexpr std::string_view pattern = "ddddddddTddddddZ";
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char character, char wanted) {
                      return wanted == 'd' ? character >= '0' && character <= '9' : character == wanted;
                    });
}

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool isOurOwnFile(int fd) {
  struct stat status {};
  return ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
         status.st_uid == ::geteuid();
}

}  // namespace

LogFolder::LogFolder(std::string libraryDirectory, std::string system)
    : libraryDirectory_(std::move(libraryDirectory)), system_(std::move(system)) {}

UniqueFd LogFolder::open(IfMissing ifMissing) const {
  if (ifMissing == IfMissing::make) ::mkdir(libraryDirectory_.c_str(), S_IRWXU);
  UniqueFd folder(::open(libraryDirectory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (const char* name : {"Logs", "Wendle"}) {
    if (!folder.isOpen()) break;
    if (ifMissing == IfMissing::make) ::mkdirat(folder.get(), name, S_IRWXU);
    folder.reset(::openat(folder.get(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  }
  return folder;
}

UniqueFd LogFolder::createFile(LogTime start) const {
  const UniqueFd folder = open(IfMissing::make);
  if (!folder.isOpen()) return {};
  const std::string name = ownName(start);
  // O_NONBLOCK: a FIFO in the place of the file must not hold us.
  constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  UniqueFd file(::openat(folder.get(), name.c_str(), flags, S_IRUSR | S_IWUSR));
  if (!file.isOpen() || !isOurOwnFile(file.get())) return {};
  ::fchmod(file.get(), S_IRUSR | S_IWUSR);  // whatever the umask
  return file;
}

std::vector<std::string> LogFolder::sortedNames() const {
  std::vector<std::string> names;
  UniqueFd folder = open(IfMissing::giveUp);
  if (!folder.isOpen()) return names;
  DirectoryStream entries(std::move(folder));
  while (const auto entry = entries.next()) {
    if (entry->type != EntryType::directory && isLogFileName(entry->name)) names.push_back(entry->name);
  }
  // The prefix and the time stamp have a fixed width, so the shorter of two names has the smaller process
  // number.
  const auto isNewer = [this](const std::string& a, const std::string& b) {
    const size_t length = system_.size() + 1 + timeStampLength;
    return std::tuple(a.substr(0, length), a.size(), a) > std::tuple(b.substr(0, length), b.size(), b);
  };
  std::sort(names.begin(), names.end(), isNewer);
  return names;
}

void LogFolder::removeOldFiles(LogTime start) const {
  std::vector<std::string> others = sortedNames();
  std::erase(others, ownName(start));
  const UniqueFd folder = open(IfMissing::giveUp);
  for (size_t i = filesKept - 1; i < others.size(); ++i) ::unlinkat(folder.get(), others[i].c_str(), 0);
}

std::string LogFolder::ownName(LogTime start) const {
  return system_ + "-" + fileNameTimeStamp(start) + "-" + std::to_string(::getpid()) + std::string(suffix);
}

// <system>-<time stamp>-<process number>.log
bool LogFolder::isLogFileName(std::string_view name) const {
  const std::string prefix = system_ + "-";
  if (!name.starts_with(prefix) || !name.ends_with(suffix)) return false;
  name = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
  return name.size() > timeStampLength && isTimeStamp(name.substr(0, timeStampLength)) &&
         name[timeStampLength] == '-' && isNumber(name.substr(timeStampLength + 1));
}

}  // namespace wendle
