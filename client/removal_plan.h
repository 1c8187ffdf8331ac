#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/removal_forecast.h"

namespace wendle {
// Something that a run would take away.
struct PlannedItem {
  std::string kind;  // "folder", "file", "link", or "item" that may not be looked at; else "keychain item",
                     // "Dock tile", "process"
  std::string name;  // the path of a folder, file or link; else what the system calls it
  std::string why;
  std::optional<std::uint64_t> size = {};        // bytes; of folders and files only
  std::optional<RemovalObstacle> obstacle = {};  // it stays, or a part of it does

  [[nodiscard]] bool isFileItem() const { return size.has_value(); }
  // Whether root could take it away: what stays is not busy and lies on no read-only volume.
  [[nodiscard]] bool needsRoot() const;
};

// A copy of the client that an exception keeps.
struct KeptItem {
  std::string path;
  std::string because;
};

// What a run of a mode would take away, in the order in which it would. Each step of the uninstaller has a
// sibling that adds to a plan what the step would do; neither changes anything.
class RemovalPlan {
 public:
  // Adds the folder, file or link at `path`. Does nothing when nothing is there, and when an item of the plan
  // covers it.
  void addPath(const std::string& path, std::string_view why);

  // Whether removing the items of the plan removes all of what lies at `path`; false when nothing is there.
  [[nodiscard]] bool covers(const std::string& path) const;

  // Adds a running process. Does nothing when another step ends it before.
  void addProcess(const std::string& identifier, std::int64_t number, std::string_view why);

  void add(PlannedItem item) { items_.push_back(std::move(item)); }
  void keep(const std::string& path, std::string_view because) {
    kept_.push_back({path, std::string(because)});
  }

  // What a person should know before the run.
  void warn(std::string sentence) { warnings_.push_back(std::move(sentence)); }

  // What a tool will be asked to do whatever there is: nobody can tell beforehand whether it changes
  // anything.
  void ask(std::string what) { requests_.push_back(std::move(what)); }

  [[nodiscard]] const std::vector<PlannedItem>& items() const { return items_; }
  // Without those that an item covers.
  [[nodiscard]] std::vector<KeptItem> kept() const;
  [[nodiscard]] const std::vector<std::string>& warnings() const { return warnings_; }
  [[nodiscard]] const std::vector<std::string>& requests() const { return requests_; }

 private:
  std::vector<PlannedItem> items_;
  std::vector<KeptItem> kept_;
  std::vector<std::string> warnings_;
  std::vector<std::string> requests_;
};
}  // namespace wendle
