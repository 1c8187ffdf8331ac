#include "platform/running_applications.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "base/text.h"
#include "platform/directory.h"
#include "platform/files.h"

namespace wendle {
// What macOS sets for an application that it starts [I].
constexpr std::string_view identifierVariable = "__CFBundleIdentifier=";

// The environment of a process of this user: each entry between two zero bytes. Empty for another's. The
// directory belongs to the process's owner; the files in it belong to root while the process is not dumpable
// (proc(5)).
static std::string readEnvironment(int processTable, const std::string& process) {
  const UniqueFd directory(::openat(processTable, process.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  if (::fstat(directory.get(), &status) != 0 || status.st_uid != ::geteuid()) return {};
  const UniqueFd file(::openat(directory.get(), "environ", O_RDONLY | O_CLOEXEC));
  std::string environment(1, '\0');
  return environment.append(readToEnd(file.get()).value_or(""));
}

struct RunningApplication::Handle {
  pid_t process;
};

bool RunningApplication::terminate() const { return ::kill(handle_->process, SIGTERM) == 0; }
std::int64_t RunningApplication::processIdentifier() const { return handle_->process; }
bool RunningApplication::forceTerminate() const { return ::kill(handle_->process, SIGKILL) == 0; }

std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(const std::string& identifier) {
  const std::string separator(1, '\0');
  const std::string wanted = separator + std::string(identifierVariable) + identifier + separator;
  std::vector<pid_t> processes;
  DirectoryStream table(UniqueFd(::open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
  while (const auto entry = table.next()) {
    const auto process = parseDecimal(entry->name);
    if (!process || *process == ::getpid()) continue;
    const std::string environment = readEnvironment(table.fd(), entry->name);
    if (environment.find(wanted) != std::string::npos) processes.push_back(static_cast<pid_t>(*process));
  }
  std::sort(processes.begin(), processes.end());
  std::vector<RunningApplication> found;
  for (const pid_t process : processes) {
    using Handle = RunningApplication::Handle;
    found.emplace_back(std::make_shared<const Handle>(Handle{process}));
  }
  return found;
}
}  // namespace wendle
