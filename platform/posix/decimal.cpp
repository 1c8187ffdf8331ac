#include "platform/decimal.h"

#include <charconv>

namespace wendle {

std::optional<std::int64_t> parseDecimal(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;  // from_chars would take it as the sign
  }
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace wendle
