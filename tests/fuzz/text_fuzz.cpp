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
  property("letter case makes no difference", containsIgnoringCase(text, lower));
  const std::string inner = trimmed(text);
  property("trimmed text is part of the text", text.find(inner) != std::string::npos);
  property("trimmed text has no blanks left", trimmed(" \n" + inner + "\u2028") == inner);
}

static std::string unescaped(std::string url) {
  url.erase(0, std::string("file://").size());
  for (size_t i = url.find('%'); i != std::string::npos; i = url.find('%', i + 1))
    url.replace(i, 3, 1, static_cast<char>(std::stoi(url.substr(i + 1, 2), nullptr, 16)));
  return url;
}

static void checkMissingItem(const std::string& path) {
  const FileUrl item = FileUrl::fileUrlWithPath(path);
  for (const char byte : item.absoluteString()) property("a URL is plain ASCII", byte > ' ' && byte < 0x7F);
  property("a URL is its path, escaped", unescaped(item.absoluteString()) == path);
  const bool isBackup = isInBackupDatabase(item);
  property("a backup holds backups", !isBackup || isInBackupDatabase(FileUrl::fileUrlWithPath(path + "/a")));
  property("what is missing is not kept", !isInSafetyNetFolder(item) && !isInNumberedWrpFolder(item));
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
  std::string text(bytes, bytes + size);
  checkCharacters(text);
  checkAnswer(text);
  std::erase(text, '\0');  // no path of the system holds it
  checkMissingItem("/nowhere/" + text);
  return 0;
}
