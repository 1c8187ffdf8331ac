#pragma once

#include <string>
#include <vector>

#include "client/removal_plan.h"

namespace wendle {
// A plan for people and for programs. The texts end with a line feed; the JSON is one object (RFC 8259).

struct PlanContext {
  std::string modeSwitch;  // --hard
  std::string user;        // whose account it is
};

// What a run of the mode would do.
[[nodiscard]] std::string previewText(const RemovalPlan& plan, const PlanContext& context);
[[nodiscard]] std::string previewJson(const RemovalPlan& plan, const PlanContext& context);

// What is left of all that the modes take away, and the traces that no mode does.
[[nodiscard]] std::string leftoversText(const RemovalPlan& plan, const std::vector<std::string>& traces);
[[nodiscard]] std::string leftoversJson(const RemovalPlan& plan, const std::vector<std::string>& traces,
                                        const std::string& user);

// The paths of what only root can take away, each with a NUL byte after it.
[[nodiscard]] std::string rootPaths(const RemovalPlan& plan);
}  // namespace wendle
