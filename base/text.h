#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wendle {
// Takes the first character off `text`; none, and `text` unchanged, when it does not begin with well-formed
// UTF-8 (overlong forms, surrogates and values above U+10FFFF are ill-formed) or is empty.
[[nodiscard]] std::optional<char32_t> takeUtf8Character(std::string_view& text);

void appendUtf8(std::string& text, char32_t character);

[[nodiscard]] bool isUtf8(std::string_view text);

// The first `maxBytes` bytes; fewer where they would end within a character.
[[nodiscard]] std::string_view firstBytes(std::string_view text, size_t maxBytes);

// Without white space and line ends at both ends, as Foundation's whitespaceAndNewlineCharacterSet has them
// (the blanks of other scripts and U+0085 included) [D]. Ill-formed bytes are no white space.
[[nodiscard]] std::string trimmed(std::string_view text);

// Whether `text` is as long as `form` and has an ASCII digit where that has a 0, elsewhere the same
// character.
[[nodiscard]] bool hasForm(std::string_view text, std::string_view form);

// Decimal text as a number: one optional `+` or `-`, then ASCII digits and nothing else; leading zeros are
// fine. None for anything else, blanks and values beyond 64 bits included.
[[nodiscard]] std::optional<std::int64_t> parseDecimal(std::string_view text);
}  // namespace wendle
