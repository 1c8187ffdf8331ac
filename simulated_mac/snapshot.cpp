#include <set>

#include "simulated_mac/shared.h"

namespace wendle::mac {
namespace {
// The words by which a person tells the entries of a shared list apart.
std::string recordName(plist_t entry) {
  if (plist_t data = plist_dict_get_item(entry, "tile-data")) return toText(data, "file-label");
  std::string name;
  for (const char* key : {"label", "account", "client", "identifier"}) {
    const std::string word = toText(entry, key);
    if (!word.empty()) name.append(name.empty() ? "" : ", ").append(word);
  }
  return name;
}

void addRecord(Snapshot& snapshot, const std::string& name, plist_t record) {
  std::string path = name;
  for (int index = 2; snapshot.contains(path); ++index)
    path = std::string(name).append(" (").append(std::to_string(index)).append(")");
  snapshot[path].content = toXml(record);
}

void addRecords(Snapshot& snapshot, const std::string& file, plist_t root) {
  const std::string start = file + ": ";
  for (const auto& [key, value] : children(root)) {
    const bool isList = plist_get_node_type(value) == PLIST_ARRAY;
    if (!isList) addRecord(snapshot, start + key, value);
    if (!isList) continue;
    for (const auto& [index, entry] : children(value)) addRecord(snapshot, start + recordName(entry), entry);
  }
}
}  // namespace

Snapshot SimulatedMac::snapshot() const {
  Snapshot snapshot;
  const std::set<std::string> shared = {keychainFile, approvalsFile, electionsFile, jobsFile, dockFile};
  walk(root(), [&](const fs::directory_entry& item, const std::string& path) {
    const fs::file_status status = item.symlink_status();
    SnapshotEntry& entry = snapshot[path];
    entry = {status.type(), static_cast<unsigned>(status.permissions()), ""};
    if (status.type() == fs::file_type::symlink) entry.content = fs::read_symlink(item.path());
    if (status.type() != fs::file_type::regular) return;
    entry.content = readFile(item.path());
    const Plist list = shared.contains(path) ? parsePlist(entry.content) : nullptr;
    if (list == nullptr) return;
    entry.content.clear();
    addRecords(snapshot, path, list.get());
  });
  return snapshot;
}

SnapshotDifference difference(const Snapshot& before, const Snapshot& after) {
  SnapshotDifference result;
  for (const auto& [path, entry] : before) {
    const auto now = after.find(path);
    if (now == after.end()) result.removed.push_back(path);
    if (now != after.end() && now->second != entry) result.changed.push_back(path);
  }
  for (const auto& [path, entry] : after) {
    if (!before.contains(path)) result.added.push_back(path);
  }
  return result;
}
}  // namespace wendle::mac
