#include "client/removal_plan.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace wendle {
static std::string_view kindName(ItemKind kind) {
  if (kind == ItemKind::unknown) return "item";
  if (kind == ItemKind::link) return "link";
  return kind == ItemKind::directory ? "folder" : "file";
}

bool PlannedItem::needsRoot() const {
  return ::geteuid() != 0 && obstacle && (obstacle->error.code == EACCES || obstacle->error.code == EPERM);
}

void RemovalPlan::addPath(const std::string& path, std::string_view why) {
  const auto isListed = [&](const PlannedItem& item) { return item.isFileItem() && item.name == path; };
  if (covers(path) || std::ranges::any_of(items_, isListed)) return;
  const auto forecast = forecastRemoval(path);
  if (!forecast) return;
  add({std::string(kindName(forecast->kind)), path, std::string(why), forecast->size, forecast->obstacle});
}

void RemovalPlan::addProcess(const std::string& identifier, std::int64_t number, std::string_view why) {
  const std::string name = identifier + ", process " + std::to_string(number);
  if (std::ranges::count(items_, name, &PlannedItem::name) == 0) add({"process", name, std::string(why)});
}

std::vector<KeptItem> RemovalPlan::kept() const {
  std::vector<KeptItem> kept = kept_;
  std::erase_if(kept, [&](const KeptItem& item) { return covers(item.path); });
  return kept;
}

// An item that the removal of another one does not reach, or fails to remove, is tried again by its own step:
// it is not covered.
bool RemovalPlan::covers(const std::string& path) const {
  const auto isAbove = [&](const PlannedItem& item) {
    return item.isFileItem() && isReachedByRemoval(item.name, path);
  };
  if (std::ranges::none_of(items_, isAbove)) return false;
  const auto forecast = forecastRemoval(path);
  return forecast && !forecast->obstacle;
}
}  // namespace wendle
