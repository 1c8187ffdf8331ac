#include "client/removal_plan.h"

#include <algorithm>
#include <cerrno>

namespace wendle {
namespace {

std::string_view nameOfKind(ItemKind kind) {
  if (kind == ItemKind::link) return "link";
  return kind == ItemKind::directory ? "folder" : "file";
}

}  // namespace

bool PlannedItem::needsRoot() const {
  return obstacle && (obstacle->error.code == EACCES || obstacle->error.code == EPERM);
}

void RemovalPlan::addPath(const std::string& path, std::string_view why) {
  const auto forecast = forecastRemoval(path);
  if (!forecast || isTakenAlong(path, *forecast)) return;
  add({std::string(nameOfKind(forecast->kind)), path, std::string(why), forecast->size, forecast->obstacle});
}

// An item that is listed already is not listed twice. What lies in another goes with it, unless the other's
// removal does not come there or cannot take it away: then the run tries it once more.
bool RemovalPlan::isTakenAlong(const std::string& path, const RemovalForecast& forecast) const {
  return std::any_of(items_.begin(), items_.end(), [&](const PlannedItem& item) {
    if (!item.isFileItem()) return false;
    return item.name == path || (!forecast.obstacle && isReachedByRemoval(item.name, path));
  });
}

}  // namespace wendle
