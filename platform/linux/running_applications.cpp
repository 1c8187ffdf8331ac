#include "platform/running_applications.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "platform/decimal.h"

namespace wendle {
namespace {

// What macOS sets for an application that it starts.
constexpr std::string_view identifierVariable = "__CFBundleIdentifier=";

bool isOfThisUser(const std::filesystem::path& processFolder) {
  struct stat status {};
  return ::stat(processFolder.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

bool environmentHolds(const std::filesystem::path& processFolder, const std::string& wanted) {
  std::ifstream environment(processFolder / "environ", std::ios::binary);
  for (std::string entry; std::getline(environment, entry, '\0');) {
    if (entry == wanted) return true;
  }
  return false;
}

}  // namespace

bool RunningApplication::terminate() const { return ::kill(processIdentifier_, SIGTERM) == 0; }
bool RunningApplication::forceTerminate() const { return ::kill(processIdentifier_, SIGKILL) == 0; }

std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(const std::string& identifier) {
  const std::string wanted = std::string(identifierVariable) + identifier;
  std::vector<int> found;
  std::error_code noProcessTable;
  for (std::filesystem::directory_iterator entry("/proc", noProcessTable), end; entry != end;
       entry.increment(noProcessTable)) {
    const auto process = parseDecimal(entry->path().filename().native());
    if (!process || *process == ::getpid() || !isOfThisUser(entry->path())) continue;
    if (environmentHolds(entry->path(), wanted)) found.push_back(static_cast<int>(*process));
  }
  std::sort(found.begin(), found.end());
  return {found.begin(), found.end()};
}

}  // namespace wendle
