#include "client/application_bundles.h"

#include "client/bundle_identifier.h"
#include "client/item_deletion.h"
#include "client/path_filters.h"
#include "platform/utf8.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
namespace {

// The main application goes by its fixed path; the extensions lie inside the others.
const std::vector<BundleIdentifier>& instanceBundleIdentifiers() {
  using enum BundleIdentifier;
  static const std::vector<BundleIdentifier> identifiers{agent, launcher, updater, uninstaller, assistant};
  return identifiers;
}

std::vector<std::string> absolutePathLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    if (line.starts_with('/')) lines.emplace_back(line);
    text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
  }
  return lines;
}

bool isExempt(const std::string& path) {
  if (path.find("/Volumes") != std::string::npos || path.find("/DerivedData/") != std::string::npos)
    return true;
  const FileUrl item = FileUrl::fileUrlWithPath(path);
  return isInBackupDatabase(item) || isInSafetyNetFolder(item) || isInNumberedWrpFolder(item);
}

template <typename Find>
void removeInstances(Find find) {
  for (const std::string& identifier : bundleIdentifierStrings(instanceBundleIdentifiers())) {
    for (const std::string& path : find(identifier)) {
      deleteItem(FileUrl::fileUrlWithPath(path), deleteFolderPrefix);
    }
  }
}

}  // namespace

std::vector<std::string> findSpotlightPaths(const std::string& bundleIdentifier) {
  Task task = makePipedTask();
  task.setExecutable("/usr/bin/mdfind");
  task.setArguments({"kMDItemCFBundleIdentifier == " + bundleIdentifier});
  task.launch();
  task.waitUntilExit();
  const std::string text = std::get<std::shared_ptr<Pipe>>(task.standardOutput())->readDataToEndOfFile();
  return isUtf8(text) ? absolutePathLines(text) : std::vector<std::string>();
}

std::vector<std::string> findAppBundles(const std::string& bundleIdentifier) {
  std::vector<std::string> paths = findSpotlightPaths(bundleIdentifier);
  std::erase_if(paths, isExempt);
  return paths;
}

void removeInstancesWithExceptions() { removeInstances(findAppBundles); }

void removeAllInstances() { removeInstances(findSpotlightPaths); }

}  // namespace wendle
