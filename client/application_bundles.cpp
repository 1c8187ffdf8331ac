#include "client/application_bundles.h"

#include <algorithm>
#include <climits>

#include "base/path.h"
#include "base/text.h"
#include "client/bundle_identifier.h"
#include "client/client_removal.h"
#include "platform/case_folding.h"
#include "platform/files.h"
#include "system/tasks/task_helpers.h"

namespace wendle {
// The main application goes by its fixed path; the extensions lie inside the others.
static const std::vector<BundleIdentifier>& instanceBundleIdentifiers() {
  using enum BundleIdentifier;
  static const std::vector<BundleIdentifier> identifiers{agent, launcher, updater, uninstaller, assistant};
  return identifiers;
}

// Takes off `text` what stands before its first line feed.
static std::string_view takeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  return line;
}

// Those of the following lines that go on with `path`, each behind its line feed: together they name an item
// that exists. Empty when they do not.
static std::string continuation(const std::string& path, std::string_view followingLines) {
  std::string lines;
  while (!followingLines.empty()) {
    lines.append("\n").append(takeLine(followingLines));
    const std::string item = path + lines;
    if (item.size() >= PATH_MAX) break;
    if (fileExists(item)) return lines;
    if (!directoryExists(item.substr(0, item.rfind('/')))) break;
  }
  return {};
}

// Whether `test` holds for `path` or a directory above it, the root directory aside.
template <typename Test>
static bool holdsOnTheWayUp(std::string path, Test test) {
  for (; !path.empty() && path != "/"; path = deletingLastPathComponent(path)) {
    if (test(path)) return true;
  }
  return false;
}

static bool isWrpNumber(const std::string& extension) {
  const std::string number = extension.substr(std::string_view("wrp").size());
  const auto value = parseDecimal(number);
  return value && std::to_string(*value) == number;
}

// Why the copy at `path` is kept; empty when it is not. The last two look at the disk, so they come last.
static std::string_view exemption(const std::string& path) {
  if (path.find("/Volumes") != std::string::npos) return "on another volume";
  if (path.find("/DerivedData/") != std::string::npos) return "in a build folder";
  const FileUrl item = FileUrl::fileUrlWithPath(path);
  if (isInBackupDatabase(item)) return "in a backup";
  if (isInSafetyNetFolder(item)) return "beside a _CCC SafetyNet folder";
  return isInNumberedWrpFolder(item) ? "in a numbered .wrp folder" : "";
}

template <typename Find>
static void removeInstances(Find find) {
  for (const std::string& identifier : bundleIdentifierStrings(instanceBundleIdentifiers())) {
    for (const std::string& path : find(identifier)) deleteItem(path, deleteFolderPrefix);
  }
}

template <typename Visit>
static void planInstances(const RemovalPlan& plan, Visit visit) {
  for (const std::string& identifier : bundleIdentifierStrings(instanceBundleIdentifiers())) {
    for (const std::string& path : findSpotlightPaths(identifier)) {
      // Without it a directory is no bundle any more, and Spotlight will not list it [I].
      if (!plan.covers(path + "/Contents/Info.plist"))
        visit(path, "a copy of " + identifier + " that Spotlight lists");
    }
  }
}

std::vector<std::string> pathsInAnswer(std::string_view answer) {
  std::vector<std::string> paths;
  while (!answer.empty()) {
    std::string path(takeLine(answer));
    if (!path.starts_with('/')) continue;
    for (std::string more = continuation(path, answer); !more.empty(); more = continuation(path, answer)) {
      path += more;
      answer.remove_prefix(std::min(more.size(), answer.size()));
    }
    paths.push_back(std::move(path));
  }
  return paths;
}

std::vector<std::string> findSpotlightPaths(const std::string& bundleIdentifier) {
  const std::string text =
      runForOutput("/usr/bin/mdfind", {"kMDItemCFBundleIdentifier == " + bundleIdentifier});
  return isUtf8(text) ? pathsInAnswer(text) : std::vector<std::string>();
}

bool isInBackupDatabase(const FileUrl& item) {
  if (!containsIgnoringCase(item.path(), ".backupdb")) return false;
  const auto components = pathComponents(item.path());
  return std::any_of(components.begin(), components.end(), [](const std::string& component) {
    return lowercased(pathExtension(component)) == "backupdb";
  });
}

bool isInSafetyNetFolder(const FileUrl& item) {
  return holdsOnTheWayUp(item.path(), [](const std::string& directory) {
    return directoryExists(directory + "/_CCC SafetyNet");
  });
}

bool isInNumberedWrpFolder(const FileUrl& item) {
  const std::string path = lowercased(item.path());
  if (path.find(".wrp") == std::string::npos) return false;
  return holdsOnTheWayUp(path, [](const std::string& directory) {
    const std::string extension = pathExtension(directory);
    return extension.starts_with("wrp") && directoryExists(directory) && isWrpNumber(extension);
  });
}

std::vector<std::string> findAppBundles(const std::string& bundleIdentifier) {
  std::vector<std::string> paths = findSpotlightPaths(bundleIdentifier);
  std::erase_if(paths, [](const std::string& path) { return !exemption(path).empty(); });
  return paths;
}

void removeInstancesWithExceptions() { removeInstances(findAppBundles); }

void removeAllInstances() { removeInstances(findSpotlightPaths); }

void planInstancesWithExceptions(RemovalPlan& plan) {
  planInstances(plan, [&](const std::string& path, const std::string& why) {
    const std::string_view because = exemption(path);
    because.empty() ? plan.addPath(path, why) : plan.keep(path, because);
  });
}

void planAllInstances(RemovalPlan& plan) {
  planInstances(plan, [&](const std::string& path, const std::string& why) { plan.addPath(path, why); });
}
}  // namespace wendle
