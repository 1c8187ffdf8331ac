#include "platform/running_applications.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "platform/decimal.h"
#include "platform/directory_stream.h"
#include "platform/linux/file_content.h"

namespace wendle {
namespace {

// What macOS sets for an application that it starts.
constexpr std::string_view identifierVariable = "__CFBundleIdentifier=";

// The environment of a process of this user: each entry between two zero bytes. Empty for another's.
std::string environmentOf(int processTable, const std::string& process) {
  const UniqueFd file(::openat(processTable, (process + "/environ").c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (::fstat(file.get(), &status) != 0 || status.st_uid != ::geteuid()) return {};
  std::string environment(1, '\0');
  return environment.append(contentOf(file));
}

}  // namespace

bool RunningApplication::terminate() const { return ::kill(processIdentifier_, SIGTERM) == 0; }
bool RunningApplication::forceTerminate() const { return ::kill(processIdentifier_, SIGKILL) == 0; }

std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(const std::string& identifier) {
  const std::string separator(1, '\0');
  const std::string wanted = separator + std::string(identifierVariable) + identifier + separator;
  std::vector<int> found;
  DirectoryStream processes(UniqueFd(::open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
  while (const auto entry = processes.next()) {
    const auto process = parseDecimal(entry->name);
    if (!process || *process == ::getpid()) continue;
    const std::string environment = environmentOf(processes.fd(), entry->name);
    if (environment.find(wanted) != std::string::npos) found.push_back(static_cast<int>(*process));
  }
  std::sort(found.begin(), found.end());
  return {found.begin(), found.end()};
}

}  // namespace wendle
