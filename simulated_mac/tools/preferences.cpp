// The tools that read and edit property lists: defaults and PlistBuddy.
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "simulated_mac/tools/tools.h"

namespace wendle::mac {
namespace {
std::string listedText(const std::string& text) {
  const auto isPlain = [](unsigned char c) { return c < 0x80 && std::isalnum(c) != 0; };
  if (!text.empty() && std::all_of(text.begin(), text.end(), isPlain)) return text;
  std::ostringstream quoted;
  quoted << std::quoted(text);
  return quoted.str();
}

std::string listedData(plist_t node) {
  std::uint64_t length = 0;
  const char* bytes = plist_get_data_ptr(node, &length);
  std::ostringstream text;
  text << "{length = " << length << ", bytes = 0x" << std::hex << std::setfill('0');
  for (std::uint64_t i = 0; i < std::min<std::uint64_t>(length, 4); ++i) {
    text << std::setw(2) << static_cast<int>(static_cast<unsigned char>(bytes[i]));
  }
  return text.str() + (length > 4 ? " ... }" : "}");
}

std::string listedNumber(plist_t node) {
  std::uint64_t integer = 0;
  std::uint8_t truth = 0;
  plist_get_uint_val(node, &integer);  // each leaves its value alone for a node of another type
  plist_get_bool_val(node, &truth);
  return std::to_string(static_cast<std::int64_t>(integer) + truth);
}

// The old-style listing. A dictionary or array begins with the indent of its level, wherever it stands.
std::string listed(plist_t node, std::size_t level) {
  const plist_type type = plist_get_node_type(node);
  if (type == PLIST_STRING) return listedText(toText(node));
  if (type == PLIST_DATA) return listedData(node);
  if (type != PLIST_DICT && type != PLIST_ARRAY) return listedNumber(node);
  const bool isArray = type == PLIST_ARRAY;
  const std::string indent(4 * level, ' ');
  std::ostringstream text;
  text << indent << (isArray ? "(" : "{");
  const char* separator = "\n";
  for (const auto& [key, child] : children(node)) {
    text << separator << indent << "    " << (isArray ? "" : listedText(key) + " = ")
         << listed(child, level + 1);
    separator = isArray ? ",\n" : ";\n";
  }
  text << (isArray || separator[0] == '\n' ? "\n" : ";\n") << indent << (isArray ? ")" : "}");
  return text.str();
}

// Removes what a path such as "a:0:b" names; false when it is not there.
bool removeAt(plist_t node, const std::string& path) {
  const std::size_t colon = path.find(':');
  for (const auto& [name, child] : children(node)) {
    if (name != path.substr(0, colon)) continue;
    if (colon != std::string::npos) return removeAt(child, path.substr(colon + 1));
    removeChild(node, name);
    return true;
  }
  return false;
}
}  // namespace

int defaults(const Strings& arguments) {
  const char* usage =
      "Command line interface to a user's defaults.\nSyntax:\n\n'defaults' read <domain> <key>";
  if (!fits(arguments, "read * *")) return complain(usage, 255);
  const Plist list = parsePlist(readFile(home + "/Library/Preferences/" + arguments[1] + ".plist"));
  plist_t node = list ? plist_dict_get_item(list.get(), arguments[2].c_str()) : nullptr;
  if (node == nullptr) {
    const std::time_t now = std::time(nullptr);
    std::cerr << std::put_time(std::localtime(&now), "%F %T.000 ") << "defaults[" << ::getpid()
              << ":1a2b] \n";
    return complain("The domain/default pair of (" + arguments[1] + ", " + arguments[2] + ") does not exist",
                    1);
  }
  std::cout << listed(node, 0) << '\n';
  return 0;
}

int plistBuddy(const Strings& arguments) {
  const Strings command = split(fits(arguments, "-c * *") ? arguments[1] : "", ' ');
  if (command.size() != 2 || (command[0] != "Delete" && command[0] != "Print"))
    return complain("Usage: PlistBuddy ...", 1);
  const std::string &verb = command[0], &entry = command[1];
  const std::string& file = arguments[2];
  if (!fs::exists(file)) std::cout << "File Doesn't Exist, Will Create: " << file << '\n';
  const Plist list = parsePlist(readFile(file));
  const std::string text = list && verb == "Print" ? toText(list.get(), entry.c_str()) : "";
  if (!text.empty()) std::cout << text << '\n';
  const bool isRemoved = list && verb == "Delete" && removeAt(list.get(), entry);
  if (isRemoved) writePlist(file, list.get());
  return isRemoved || !text.empty() ? 0 : complain(verb + ": Entry, \"" + entry + "\", Does Not Exist", 1);
}
}  // namespace wendle::mac
