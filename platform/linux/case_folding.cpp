#include "platform/case_folding.h"

#include <clocale>
#include <cwctype>

#include "base/text.h"

namespace wendle {
static char32_t lowercase(char32_t character) {
  if (character < 0x80) return character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character;
  static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unicode == nullptr) return character;  // a system without that locale: only ASCII letters have case
  return static_cast<char32_t>(::towlower_l(static_cast<wint_t>(character), unicode));
}

std::string lowercased(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    if (const auto character = takeUtf8Character(text)) {
      appendUtf8(result, lowercase(*character));
    } else {
      result.push_back(text.front());
      text.remove_prefix(1);
    }
  }
  return result;
}

bool containsIgnoringCase(std::string_view text, std::string_view searched) {
  return lowercased(text).find(lowercased(searched)) != std::string::npos;
}
}  // namespace wendle
