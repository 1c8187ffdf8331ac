#pragma once

#include <string>
#include <string_view>

namespace wendle {
// Lowercase by Unicode's rules, whatever the user's language: the Kelvin sign becomes `k`. Bytes that are no
// UTF-8 stay as they are.
[[nodiscard]] std::string lowercased(std::string_view text);

// Whether `text` holds `searched`, ignoring case.
[[nodiscard]] bool containsIgnoringCase(std::string_view text, std::string_view searched);
}  // namespace wendle
