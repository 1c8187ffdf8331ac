#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace wendle {
namespace {
struct Form {
  unsigned char mask;
  unsigned char lead;
  size_t length;
  char32_t smallest;  // what needs this length
};

constexpr std::array<Form, 4> forms{
    {{0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}}};

constexpr bool isScalarValue(char32_t character) {
  return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

bool isWhiteSpace(char32_t character) {
  if (character >= 0x2000 && character <= 0x200A) return true;
  constexpr std::u32string_view others = U" \t\n\v\f\r\u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000";
  return others.find(character) != std::u32string_view::npos;
}
}  // namespace

std::optional<char32_t> takeUtf8Character(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const auto first = static_cast<unsigned char>(text.front());
  for (const Form& form : forms) {
    if ((first & form.mask) != form.lead) continue;
    if (text.size() < form.length) return std::nullopt;
    char32_t character = first & static_cast<unsigned char>(~form.mask);
    for (const char byte : text.substr(1, form.length - 1)) {
      if ((byte & 0xC0) != 0x80) return std::nullopt;
      character = (character << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    if (character < form.smallest || !isScalarValue(character)) return std::nullopt;
    text.remove_prefix(form.length);
    return character;
  }
  return std::nullopt;
}

void appendUtf8(std::string& text, char32_t character) {
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  const auto appendRest = [&](unsigned bits) {
    for (; bits > 0; bits -= 6) append(0x80U | ((character >> (bits - 6)) & 0x3FU));
  };
  if (character < 0x80) return append(character);
  if (character < 0x800) return append(0xC0U | (character >> 6U)), appendRest(6);
  if (character < 0x10000) return append(0xE0U | (character >> 12U)), appendRest(12);
  append(0xF0U | (character >> 18U));
  appendRest(18);
}

bool isUtf8(std::string_view text) {
  while (takeUtf8Character(text)) {
  }
  return text.empty();
}

std::string_view firstBytes(std::string_view text, size_t maxBytes) {
  if (text.size() <= maxBytes) return text;
  while (maxBytes > 0 && (text[maxBytes] & 0xC0) == 0x80) --maxBytes;
  return text.substr(0, maxBytes);
}

std::string trimmed(std::string_view text) {
  size_t begin = text.size();
  size_t end = text.size();
  bool sawText = false;
  for (std::string_view rest = text; !rest.empty();) {
    const size_t position = text.size() - rest.size();
    const auto character = takeUtf8Character(rest);
    if (!character) rest.remove_prefix(1);
    if (character && isWhiteSpace(*character)) continue;
    if (!std::exchange(sawText, true)) begin = position;
    end = text.size() - rest.size();
  }
  return std::string(text.substr(begin, end - begin));
}

bool hasForm(std::string_view text, std::string_view form) {
  const auto fits = [](char character, char wanted) {
    return wanted == '0' ? character >= '0' && character <= '9' : character == wanted;
  };
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), fits);
}

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
