#include "simulated_mac/shared.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace wendle::mac {
namespace {
// `write` is plist_to_xml or plist_to_bin.
template <typename Write>
std::string serialized(plist_t node, Write write) {
  char* data = nullptr;
  std::uint32_t length = 0;
  write(node, &data, &length);
  std::string text(data, length);
  std::free(data);
  return text;
}
}  // namespace

std::string readFile(const fs::path& path) {
  return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

void writeFile(const fs::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary);
  file << content << std::flush;
  if (!file) throw fs::filesystem_error("No file", path, std::make_error_code(std::errc::io_error));
}

std::string nulTerminated(const Strings& words) {
  std::string text;
  for (const std::string& word : words) text.append(word).push_back('\0');
  return text;
}

void append(Strings& words, const Strings& more) { words.insert(words.end(), more.begin(), more.end()); }

Strings split(std::string_view text, char end) {
  Strings words;
  while (!text.empty()) {
    words.emplace_back(text.substr(0, text.find(end)));
    text.remove_prefix(std::min(text.size(), words.back().size() + 1));
  }
  return words;
}

void walk(const fs::path& root,
          const std::function<void(const fs::directory_entry&, const std::string&)>& visit) {
  static const std::set<std::string> host = {"/.simulation", "/host", "/proc", "/dev", "/tmp"};
  std::error_code ignored;
  fs::recursive_directory_iterator item(root, fs::directory_options::skip_permission_denied);
  for (; item != fs::recursive_directory_iterator(); item.increment(ignored)) {
    const std::string path = "/" / item->path().lexically_relative(root);
    if (host.contains(path)) item.disable_recursion_pending();
    if (!host.contains(path)) visit(*item, path);
  }
}

Plist parsePlist(const std::string& data) {
  plist_t node = nullptr;
  plist_from_memory(data.data(), static_cast<std::uint32_t>(data.size()), &node);
  return Plist(node);
}

Plist toPlist(const Record& texts) {
  Plist dictionary(plist_new_dict());
  for (const auto& [key, text] : texts) {
    plist_dict_set_item(dictionary.get(), key.c_str(), plist_new_string(text.c_str()));
  }
  return dictionary;
}

void writePlist(const fs::path& file, plist_t node) {
  const bool isBinary = readFile(file).starts_with("bplist");
  writeFile(file, isBinary ? serialized(node, plist_to_bin) : toXml(node));
}

std::string toXml(plist_t node) { return serialized(node, plist_to_xml); }

std::string toText(plist_t node) {
  const bool isText = node != nullptr && plist_get_node_type(node) == PLIST_STRING;
  return isText ? plist_get_string_ptr(node, nullptr) : "";
}

std::string toText(plist_t dictionary, const char* key) {
  return toText(plist_dict_get_item(dictionary, key));
}

std::vector<std::pair<std::string, plist_t>> children(plist_t node) {
  std::vector<std::pair<std::string, plist_t>> found;
  if (node == nullptr) return found;
  const bool isArray = plist_get_node_type(node) == PLIST_ARRAY;
  for (std::uint32_t i = 0; isArray && i < plist_array_get_size(node); ++i) {
    found.emplace_back(std::to_string(i), plist_array_get_item(node, i));
  }
  if (plist_get_node_type(node) != PLIST_DICT) return found;
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  char* key = nullptr;
  plist_t value = nullptr;
  while (plist_dict_next_item(node, iterator, &key, &value), value != nullptr) {
    found.emplace_back(key, value);
    std::free(key);
  }
  std::free(iterator);
  std::sort(found.begin(), found.end());
  return found;
}

void removeChild(plist_t parent, const std::string& name) {
  if (plist_get_node_type(parent) == PLIST_DICT) return plist_dict_remove_item(parent, name.c_str());
  plist_array_remove_item(parent, static_cast<std::uint32_t>(std::stoul(name)));
}

void addEntry(const fs::path& file, Plist entry, const char* key) {
  const Plist list = parsePlist(readFile(file));
  plist_t entries = plist_dict_get_item(list.get(), key);
  if (entries == nullptr) plist_dict_set_item(list.get(), key, entries = plist_new_array());
  plist_array_append_item(entries, entry.release());
  writePlist(file, list.get());
}

std::optional<Record> findEntry(const fs::path& file, const char* key, const std::string& text, Find mode) {
  const Plist list = parsePlist(readFile(file));
  plist_t entries = list ? plist_dict_get_item(list.get(), "entries") : nullptr;
  for (const auto& [index, entry] : children(entries)) {
    if (toText(entry, key) != text) continue;
    Record texts;
    for (const auto& [name, value] : children(entry)) texts[name] = toText(value);
    if (mode == Find::andTake) {
      removeChild(entries, index);
      writePlist(file, list.get());
    }
    return texts;
  }
  return std::nullopt;
}
}  // namespace wendle::mac
