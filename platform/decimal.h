#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace wendle {

// Decimal text as a number: one optional `+` or `-`, then ASCII digits and nothing else; leading zeros are
// fine. None for anything else, blanks and values beyond 64 bits included.
[[nodiscard]] std::optional<std::int64_t> parseDecimal(std::string_view text);

}  // namespace wendle
