#include "client/client_locations.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/directory.h"
#include "platform/files.h"

namespace wendle {
constexpr std::array directoriesInLibrary{"Application Scripts",
                                          "Caches",
                                          "Cookies",
                                          "Group Containers",
                                          "HTTPStorages",
                                          "Preferences",
                                          "Preferences/ByHost",
                                          "Saved Application State",
                                          "WebKit"};

// Whether the name is the client's identifier, also with a group's prefix before it (TEAM.ID) or more
// components behind it (ID.WendleAgent, ID.savedState).
static bool isClientName(std::string_view name) {
  const std::string identifier = rawValue(BundleIdentifier::desktop);
  const size_t start = name.find(identifier);
  if (start == std::string_view::npos) return false;
  const size_t end = start + identifier.size();
  return (start == 0 || name[start - 1] == '.') && (end == name.size() || name[end] == '.');
}

static void appendTraces(std::vector<std::string>& traces, const std::string& directory) {
  UniqueFd opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.isOpen()) return;
  const auto first = static_cast<std::ptrdiff_t>(traces.size());
  DirectoryStream stream(std::move(opened));
  while (const auto entry = stream.next()) {
    if (isClientName(entry->name)) traces.push_back(directory + "/" + entry->name);
  }
  std::sort(traces.begin() + first, traces.end());
}

std::vector<std::string> findClientTraces() {
  std::vector<std::string> traces;
  for (const char* directory : directoriesInLibrary)
    appendTraces(traces, clientLocations().libraryDirectory + "/" + directory);
  appendTraces(traces, "/var/db/receipts");
  const std::string logs = clientLocations().libraryDirectory + "/Logs/Wendle";
  if (directoryExists(logs)) traces.push_back(logs);
  const auto& removable = clientLocations().preferenceFilePaths;
  std::erase_if(traces, [&](const std::string& path) { return std::ranges::count(removable, path) > 0; });
  return traces;
}
}  // namespace wendle
