#include "report/json.h"

#include <array>
#include <cstdio>

#include "base/text.h"
#include "logging/log_record.h"

namespace wendle {
std::string jsonText(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const std::string_view before = text;
    const auto character = takeUtf8Character(text);
    if (!character) {
      result += "\\ufffd";
      text.remove_prefix(1);
    } else if (*character == '"' || *character == '\\') {
      (result += '\\') += before.front();
    } else if (isControlCharacter(*character)) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(*character));
      result += escape.data();
    } else {
      result.append(before.substr(0, before.size() - text.size()));
    }
  }
  return result + "\"";
}

JsonObject answerObject() {
  return JsonObject().addNumber("schema", "1").add("uninstallerVersion", UNINSTALLER_VERSION);
}
}  // namespace wendle
