#include "client/path_filters.h"

#include <algorithm>

#include "base/path.h"
#include "base/text.h"
#include "platform/case_folding.h"
#include "platform/file_presence.h"

namespace wendle {
namespace {

// Whether `test` holds for `path` or a folder above it, the root folder aside.
template <typename Test>
bool holdsOnTheWayUp(std::string path, Test test) {
  for (; !path.empty() && path != "/"; path = deletingLastPathComponent(path)) {
    if (test(path)) return true;
  }
  return false;
}

bool isWrpNumber(const std::string& extension) {
  const std::string number = extension.substr(std::string_view("wrp").size());
  const auto value = parseDecimal(number);
  return value && std::to_string(*value) == number;
}

}  // namespace

bool isInBackupDatabase(const FileUrl& item) {
  if (!containsIgnoringCase(item.path(), ".backupdb")) return false;
  const auto components = pathComponents(item.path());
  return std::any_of(components.begin(), components.end(), [](const std::string& component) {
    return lowercased(pathExtension(component)) == "backupdb";
  });
}

bool isInSafetyNetFolder(const FileUrl& item) {
  return holdsOnTheWayUp(
      item.path(), [](const std::string& folder) { return directoryExists(folder + "/_CCC SafetyNet"); });
}

bool isInNumberedWrpFolder(const FileUrl& item) {
  const std::string path = lowercased(item.path());
  if (path.find(".wrp") == std::string::npos) return false;
  return holdsOnTheWayUp(path, [](const std::string& folder) {
    const std::string extension = pathExtension(folder);
    return extension.starts_with("wrp") && directoryExists(folder) && isWrpNumber(extension);
  });
}

}  // namespace wendle
