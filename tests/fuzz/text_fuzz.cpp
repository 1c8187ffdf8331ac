#include "base/text.h"
#include "client/application_bundles.h"
#include "platform/case_folding.h"
#include "property.h"

using namespace wendle;

static void checkCharacters(const std::string& text) {
  std::string_view rest = text;
  std::string again;
  while (const auto character = takeUtf8Character(rest)) {
    property("a character is no surrogate", *character < 0xD800 || *character > 0xDFFF);
    appendUtf8(again, *character);
  }
  property("characters written again are the same bytes", again + std::string(rest) == text);
  property("UTF-8 is characters to its end", isUtf8(text) == rest.empty());
  const std::string lower = lowercased(text);
  property("lowercase stays as it is", lowercased(lower) == lower && isUtf8(lower) == isUtf8(text));
  property("case makes no difference", containsIgnoringCase(text, lower));
  const std::string inner = trimmed(text);
  property("trimmed text is part of the text", text.find(inner) != std::string::npos);
  property("trimmed text has no blanks left", trimmed(" \n" + inner + "\u2028") == inner);
}

static void checkAnswer(const std::string& answer) {
  size_t end = 0;
  for (const std::string& path : pathsInAnswer(answer)) {
    const size_t start = answer.find(path, end);
    property("a path is absolute, and stands in the answer behind the one before",
             path.starts_with('/') && start != std::string::npos);
    end = start + path.size();
  }
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, size_t size) {
  const std::string text(bytes, bytes + size);
  checkCharacters(text);
  checkAnswer(text);
  return 0;
}
