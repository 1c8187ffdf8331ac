#include "base/text.h"
#include "client/application_bundles.h"
#include "property.h"

using namespace wendle;

static void checkTrimmed(const std::string& text) {
  const std::string inner = trimmed(text);
  property("trimmed text is part of the text", text.find(inner) != std::string::npos);
  property("trimmed text has no blanks left", trimmed(" \n" + inner + "\u2028") == inner);
  property("what is trimmed is no more or less UTF-8", isUtf8(inner) == isUtf8(text));
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
  checkTrimmed(text);
  checkAnswer(text);
  return 0;
}
