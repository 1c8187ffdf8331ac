#include "simulated_mac/verdict.h"

#include "simulated_mac/shared.h"

namespace wendle::mac {
namespace {
using ItemsByPath = std::map<std::string, const Item*>;

// The key of an item in a snapshot; processes, which no snapshot holds, have one alike.
std::string snapshotPath(const Item& item) {
  static const Record lists = {{"keychain item", keychainFile},
                               {"privacy approval", approvalsFile},
                               {"plug-in election", electionsFile},
                               {"Dock tile", dockFile},
                               {"loaded job", jobsFile}};
  if (!lists.contains(item.kind))
    return item.place.starts_with("/") ? item.place : item.kind + " " + item.place;
  return lists.at(item.kind) + ": " + item.place + (item.kind == "keychain item" ? ", " + item.detail : "");
}

// The item that covers `path`: its own, or that of the nearest directory above.
const Item* findOwner(const ItemsByPath& items, std::string path) {
  for (;;) {
    if (const auto found = items.find(path); found != items.end()) return found->second;
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return nullptr;
    path.resize(slash);
  }
}

// The tool's own log, and the directories it makes for it.
bool isLog(const std::string& path) {
  const std::string directory = home + "/Library/Logs/Wendle/";
  return path.starts_with(directory) || directory.starts_with(path + "/");
}

void addProcesses(const std::vector<ProcessOutcome>& processes, Snapshot& before, Snapshot& after) {
  auto outcome = processes.begin();
  for (const Item& item : clientItems()) {
    if ((item.kind != "process" && item.kind != "job process") || outcome == processes.end()) continue;
    before[snapshotPath(item)] = {};
    if (*outcome == ProcessOutcome::leftAlone) after[snapshotPath(item)] = {};
    if (*outcome == ProcessOutcome::refused) after[snapshotPath(item)].content = "refused to quit";
    ++outcome;
  }
}
}  // namespace

Verdict judge(const SimulatedMac& mac, const std::vector<std::string>& arguments, Snapshot before,
              const std::vector<ProcessOutcome>& processes) {
  const std::optional<Mode> mode = chosenMode(arguments);
  Snapshot after = mac.snapshot();
  addProcesses(processes, before, after);
  ItemsByPath byPath;
  for (const Item& item : clientItems()) byPath[snapshotPath(item)] = &item;
  const auto [removed, added, changed] = difference(before, after);
  Verdict verdict;
  const auto isDone = [&](const std::string& path, const Item& item) {
    return !after.contains(path) || (item.kind == "plug-in election" && after[path] != before[path]);
  };
  const auto isListed = [&](const Item* item) { return item != nullptr && mode && item->isRemovedBy(*mode); };
  for (const std::string& path : removed) {
    if (!isListed(findOwner(byPath, path))) verdict.outside.push_back("removed: " + path);
  }
  for (const std::string& path : added) {
    if (!isLog(path)) verdict.outside.push_back("added: " + path);
  }
  for (const std::string& path : changed) {
    const Item* owner = findOwner(byPath, path);
    if (!isListed(owner) || !isDone(path, *owner)) verdict.outside.push_back("changed: " + path);
  }
  for (const auto& [path, item] : byPath) {
    if (isListed(item) && !isDone(path, *item)) verdict.leftBehind.push_back(path);
  }
  for (const Item& item : clientItems()) {
    const std::string path = snapshotPath(item);
    const Item* above = findOwner(byPath, path.substr(0, path.rfind('/')));
    const bool isToldAbove = above != nullptr && above != &item && isListed(above) == isListed(&item);
    if (!before.contains(path) || isToldAbove || isListed(&item) != isDone(path, item)) continue;
    (isListed(&item) ? verdict.taken : verdict.kept).push_back(&item);
  }
  return verdict;
}
}  // namespace wendle::mac
