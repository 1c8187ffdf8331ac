#include "report/plan_rendering.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>

#include "logging/log_record.h"
#include "report/json.h"

namespace wendle {
static std::string sizeText(std::uint64_t bytes) {
  constexpr std::array units{"bytes", "kB", "MB", "GB", "TB"};
  auto amount = static_cast<double>(bytes);
  size_t unit = 0;
  for (; amount >= 1000 && unit + 1 < units.size(); ++unit) amount /= 1000;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), unit == 0 ? "%.0f %s" : "%.1f %s", amount, units[unit]);
  return text.data();
}

static std::string causeText(const RemovalObstacle& obstacle) {
  return obstacle.error.description + ": " + obstacle.path;
}

static size_t countRootItems(const RemovalPlan& plan) {
  return static_cast<size_t>(std::ranges::count_if(plan.items(), &PlannedItem::needsRoot));
}

static std::string counted(size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

static std::string itemText(const PlannedItem& item) {
  std::string text = "  " + item.kind + "  " + escapedText(item.name) + "  (" + item.why;
  if (item.size) text += ", " + sizeText(*item.size);
  text += ")\n";
  if (item.obstacle) {
    text += item.needsRoot() ? "    needs root: " : "    cannot be deleted: ";
    text += escapedText(causeText(*item.obstacle)) + "\n";
  }
  return text;
}

static std::string itemsText(const RemovalPlan& plan) {
  std::string text;
  for (const PlannedItem& item : plan.items()) text += itemText(item);
  return text;
}

static std::string sectionUnlessEmpty(const std::string& heading, const std::vector<std::string>& lines) {
  if (lines.empty()) return "";
  std::string text = heading + ":\n";
  for (const std::string& line : lines) text += "  " + escapedText(line) + "\n";
  return text;
}

static std::string sumText(const RemovalPlan& plan) {
  const auto size =
      std::accumulate(plan.items().begin(), plan.items().end(), std::uint64_t{0},
                      [](std::uint64_t sum, const PlannedItem& item) { return sum + item.size.value_or(0); });
  return counted(plan.items().size(), "item") + ", " + sizeText(size) + "; " +
         std::to_string(countRootItems(plan)) +
         (countRootItems(plan) == 1 ? " of them needs root" : " of them need root");
}

static std::string itemJson(const PlannedItem& item) {
  JsonObject object;
  object.add("kind", item.kind).add(item.isFileItem() ? "path" : "label", item.name).add("why", item.why);
  if (item.size) object.addNumber("size", std::to_string(*item.size));
  object.add("needsRoot", item.needsRoot());
  if (item.obstacle) object.add("because", causeText(*item.obstacle));
  return object.text();
}

static std::string keptJson(const KeptItem& kept) {
  return JsonObject().add("path", kept.path).add("because", kept.because).text();
}

std::string previewText(const RemovalPlan& plan, const PlanContext& context) {
  std::string text = context.modeSwitch + " would take away, in this order:\n" + itemsText(plan);
  std::vector<std::string> kept;
  for (const KeptItem& item : plan.kept()) kept.push_back(item.path + "  (" + item.because + ")");
  text += sectionUnlessEmpty("It would keep", kept) +
          sectionUnlessEmpty("It would ask for, whatever there is", plan.requests());
  text += sectionUnlessEmpty("Beware", plan.warnings());
  return text + context.modeSwitch + ": " + sumText(plan) + ". Nothing was changed.\n";
}

std::string previewJson(const RemovalPlan& plan, const PlanContext& context) {
  return answerObject()
             .add("user", context.user)
             .add("mode", context.modeSwitch)
             .addArray("items", plan.items(), itemJson)
             .addArray("kept", plan.kept(), keptJson)
             .addArray("requests", plan.requests(), jsonText)
             .addArray("warnings", plan.warnings(), jsonText)
             .text() +
         "\n";
}

std::string leftoversText(const RemovalPlan& plan, const std::vector<std::string>& traces) {
  std::string text =
      plan.items().empty() ? "" : "Still there, of what the modes take away:\n" + itemsText(plan);
  text += sectionUnlessEmpty("No mode ever takes away", traces);
  return text + "Left: " + sumText(plan) + "; " + counted(traces.size(), "trace") +
         " that no mode takes away.\n";
}

std::string leftoversJson(const RemovalPlan& plan, const std::vector<std::string>& traces,
                          const std::string& user) {
  return answerObject()
             .add("user", user)
             .addArray("items", plan.items(), itemJson)
             .addArray("traces", traces, jsonText)
             .addArray("warnings", plan.warnings(), jsonText)
             .text() +
         "\n";
}

std::string rootPaths(const RemovalPlan& plan) {
  std::string paths;
  for (const PlannedItem& item : plan.items()) {
    if (item.needsRoot()) paths.append(item.name).push_back('\0');
  }
  return paths;
}
}  // namespace wendle
