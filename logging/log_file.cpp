#include "logging/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <tuple>

#include "base/text.h"
#include "platform/directory.h"

namespace wendle {
namespace {
constexpr std::string_view suffix = ".log";
constexpr std::string_view timeStampForm = "00000000T000000Z";

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool isOurOwnFile(int fd) {
  struct stat status {};
  return ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
         status.st_uid == ::geteuid();
}

// Mode 0700 whatever the launcher's umask, which is the process's: the first record is written before there
// is any other thread. An item that is there already stays as it is.
void makePrivateDirectory(int parent, const char* name) {
  const mode_t usual = ::umask(S_IRWXG | S_IRWXO);
  ::mkdirat(parent, name, S_IRWXU);
  ::umask(usual);
}

struct FoundFile {
  std::string start;       // the time stamp to sort by
  bool isNamedAfterStart;  // rather than by its own time
  std::string name;

  // Time stamp and prefix have a fixed width, so the shorter of two names has the smaller process number.
  bool isNewer(const FoundFile& other) const {
    return std::tuple(start, isNamedAfterStart, name.size(), name) >
           std::tuple(other.start, other.isNamedAfterStart, other.name.size(), other.name);
  }
};

// A name can lie ahead of the clock, since the clock was wrong or the name is made up. The run began no later
// than its file was last written; a file from the future says nothing and is the oldest.
FoundFile foundFile(std::string name, const std::string& stamp, std::time_t lastWrite) {
  using namespace std::chrono;
  const sys_seconds written{seconds(lastWrite)};
  constexpr seconds coarseness(1);  // of the file system's clock
  const bool isNamedAfterStart = stamp <= fileNameTimeStamp(written + coarseness);
  std::string start = isNamedAfterStart ? stamp : fileNameTimeStamp(written);
  if (start > fileNameTimeStamp(floor<seconds>(system_clock::now()))) start.clear();
  return {std::move(start), isNamedAfterStart, std::move(name)};
}
}  // namespace

LogDirectory::LogDirectory(std::string libraryDirectory, std::string system)
    : libraryDirectory_(std::move(libraryDirectory)), system_(std::move(system)) {}

UniqueFd LogDirectory::open(IfMissing ifMissing) const {
  if (ifMissing == IfMissing::create) makePrivateDirectory(AT_FDCWD, libraryDirectory_.c_str());
  UniqueFd directory(::open(libraryDirectory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (const char* name : {"Logs", "Wendle"}) {
    if (!directory.isOpen()) break;
    if (ifMissing == IfMissing::create) makePrivateDirectory(directory.get(), name);
    directory.reset(::openat(directory.get(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  }
  return directory;
}

UniqueFd LogDirectory::createFile(LogTime start) const {
  const UniqueFd directory = open(IfMissing::create);
  if (!directory.isOpen()) return {};
  const std::string name = ownName(start);
  // O_NONBLOCK: a FIFO in the place of the file must not hold us.
  constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  UniqueFd file(::openat(directory.get(), name.c_str(), flags, S_IRUSR | S_IWUSR));
  if (!file.isOpen() || !isOurOwnFile(file.get())) return {};
  ::fchmod(file.get(), S_IRUSR | S_IWUSR);  // whatever the umask
  return file;
}

std::vector<std::string> LogDirectory::sortedNames() const {
  std::vector<FoundFile> files;
  UniqueFd directory = open(IfMissing::giveUp);
  if (!directory.isOpen()) return {};
  DirectoryStream entries(std::move(directory));
  while (auto entry = entries.next()) {
    struct stat status {};
    if (!isLogFileName(entry->name) ||
        ::fstatat(entries.fd(), entry->name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(status.st_mode)) {
      continue;
    }
    const std::string stamp = entry->name.substr(system_.size() + 1, timeStampForm.size());
    files.push_back(foundFile(std::move(entry->name), stamp, status.st_mtime));
  }
  std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.isNewer(b); });
  std::vector<std::string> names;
  for (FoundFile& file : files) names.push_back(std::move(file.name));
  return names;
}

void LogDirectory::removeOldFiles(LogTime start) const {
  std::vector<std::string> others = sortedNames();
  std::erase(others, ownName(start));
  const UniqueFd directory = open(IfMissing::giveUp);
  for (size_t i = filesKept - 1; i < others.size(); ++i) ::unlinkat(directory.get(), others[i].c_str(), 0);
}

std::string LogDirectory::ownName(LogTime start) const {
  return system_ + "-" + fileNameTimeStamp(std::chrono::floor<std::chrono::seconds>(start)) + "-" +
         std::to_string(::getpid()) + std::string(suffix);
}

// <system>-<time stamp>-<process number>.log
bool LogDirectory::isLogFileName(std::string_view name) const {
  const std::string prefix = system_ + "-";
  if (!name.starts_with(prefix) || !name.ends_with(suffix)) return false;
  name = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
  return name.size() > timeStampForm.size() && hasForm(name.substr(0, timeStampForm.size()), timeStampForm) &&
         name[timeStampForm.size()] == '-' && isNumber(name.substr(timeStampForm.size() + 1));
}

LogFile::LogFile(LogDirectory directory, LogTime start) : directory_(std::move(directory)), start_(start) {}

void LogFile::write(std::string_view record) {
  std::call_once(created_, [this] {
    file_ = directory_.createFile(start_);
    directory_.removeOldFiles(start_);
  });
  std::string line(isWithinLine_ ? "\n" : "");
  line += record;
  const ssize_t written = retryOnInterrupt([&] { return ::write(file_.get(), line.data(), line.size()); });
  if (written > 0) isWithinLine_ = line[static_cast<size_t>(written) - 1] != '\n';
}
}  // namespace wendle
