#pragma once

#include <string>
#include <string_view>

namespace wendle {
// `text` as a JSON string (RFC 8259). Control characters as isControlCharacter() has them are escaped; bytes
// that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string jsonText(std::string_view text);

// A JSON object that is written member by member, in the order of the calls.
class JsonObject {
 public:
  JsonObject& add(std::string_view name, std::string_view value) { return addRaw(name, jsonText(value)); }
  JsonObject& add(std::string_view name, const char* value) { return add(name, std::string_view(value)); }
  JsonObject& add(std::string_view name, bool value) { return addRaw(name, value ? "true" : "false"); }
  JsonObject& addNumber(std::string_view name, std::string_view digits) { return addRaw(name, digits); }

  // An array: what `render` makes of each of `items`, a JSON value.
  template <typename Items, typename Render>
  JsonObject& addArray(std::string_view name, const Items& items, Render render) {
    std::string array = "[";
    for (const auto& item : items) array.append(array.size() > 1 ? ", " : "").append(render(item));
    return addRaw(name, array + "]");
  }

  [[nodiscard]] std::string text() const { return "{" + members_ + "}"; }

 private:
  JsonObject& addRaw(std::string_view name, std::string_view value) {
    members_.append(members_.empty() ? "" : ", ").append(jsonText(name)).append(": ").append(value);
    return *this;
  }

  std::string members_;
};

// What every answer begins with: the number of its form, and the program's version.
[[nodiscard]] JsonObject answerObject();
}  // namespace wendle
