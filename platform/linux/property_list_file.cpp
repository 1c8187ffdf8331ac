#include "platform/linux/property_list_file.h"

#include <plist/plist.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

namespace wendle {
namespace {
struct FreeNode {
  void operator()(void* node) const { ::plist_free(node); }
};
struct FreeText {
  void operator()(char* text) const { std::free(text); }
};
using Node = std::unique_ptr<void, FreeNode>;
using Text = std::unique_ptr<char, FreeText>;

// Each of these returns false for a kind that PropertyList does not know, and below too many levels.
bool read(plist_t node, int level, PropertyList& into);

bool readArray(plist_t node, int level, PropertyListArray& into) {
  into.resize(::plist_array_get_size(node));
  for (uint32_t i = 0; i < into.size(); ++i) {
    if (!read(::plist_array_get_item(node, i), level + 1, into[i])) return false;
  }
  return true;
}

bool readDictionary(plist_t node, int level, PropertyListDictionary& into) {
  plist_dict_iter rawIterator = nullptr;
  ::plist_dict_new_iter(node, &rawIterator);
  const Text iterator(static_cast<char*>(rawIterator));
  for (;;) {
    char* rawKey = nullptr;
    plist_t value = nullptr;
    ::plist_dict_next_item(node, rawIterator, &rawKey, &value);
    const Text key(rawKey);
    if (value == nullptr) return true;
    if (!key || !read(value, level + 1, into[key.get()])) return false;
  }
}

std::string toBytes(plist_t node, const char* (*pointer)(plist_t, uint64_t*)) {
  uint64_t length = 0;
  const char* bytes = pointer(node, &length);
  return bytes == nullptr ? std::string() : std::string(bytes, length);
}

// libplist 2.2 keeps the 64 bits of an integer and not its sign, so a huge unsigned one reads as negative
// here.
std::int64_t toInteger(plist_t node) {
  uint64_t number = 0;
  ::plist_get_uint_val(node, &number);
  return static_cast<std::int64_t>(number);
}

bool toBoolean(plist_t node) {
  uint8_t flag = 0;
  ::plist_get_bool_val(node, &flag);
  return flag != 0;
}

double toReal(plist_t node) {
  double number = 0;
  ::plist_get_real_val(node, &number);
  return number;
}

// libplist counts the seconds towards zero and gives the fraction without its sign. It has 32 bits for them:
// a date beyond comes out as some date within, with any fraction.
PropertyListDate toDate(plist_t node) {
  int32_t seconds = 0;
  int32_t microseconds = 0;
  ::plist_get_date_val(node, &seconds, &microseconds);
  const double fraction = std::abs(microseconds % 1'000'000) / 1e6;
  return {seconds < 0 ? seconds - fraction : seconds + fraction};
}

bool read(plist_t node, int level, PropertyList& into) {
  if (level > maxPropertyListLevels) return false;
  switch (::plist_get_node_type(node)) {
    case PLIST_STRING:
      into.value = toBytes(node, ::plist_get_string_ptr);
      return true;
    case PLIST_DATA:
      into.value = PropertyListData{toBytes(node, ::plist_get_data_ptr)};
      return true;
    case PLIST_UINT:
      into.value = toInteger(node);
      return true;
    case PLIST_BOOLEAN:
      into.value = toBoolean(node);
      return true;
    case PLIST_REAL:
      into.value = toReal(node);
      return true;
    case PLIST_DATE:
      into.value = toDate(node);
      return true;
    case PLIST_ARRAY:
      return readArray(node, level, into.value.emplace<PropertyListArray>());
    case PLIST_DICT:
      return readDictionary(node, level, into.value.emplace<PropertyListDictionary>());
    default:
      return false;
  }
}

Node toNode(const PropertyList& list);

struct MakeNode {
  plist_t operator()(const std::string& text) const { return ::plist_new_string(text.c_str()); }
  plist_t operator()(std::int64_t number) const { return ::plist_new_uint(static_cast<uint64_t>(number)); }
  plist_t operator()(std::uint64_t number) const { return ::plist_new_uint(number); }
  plist_t operator()(double number) const { return ::plist_new_real(number); }
  plist_t operator()(bool flag) const { return ::plist_new_bool(flag ? 1 : 0); }
  plist_t operator()(PropertyListDate date) const {
    constexpr std::numeric_limits<int32_t> limits;
    const double within = std::clamp<double>(date.seconds, limits.min(), limits.max());
    const double seconds = std::floor(within);
    return ::plist_new_date(static_cast<int32_t>(seconds),
                            static_cast<int32_t>(std::lround((within - seconds) * 1e6)));
  }
  plist_t operator()(const PropertyListData& data) const {
    return ::plist_new_data(data.bytes.data(), data.bytes.size());
  }
  plist_t operator()(const PropertyListArray& array) const {
    plist_t node = ::plist_new_array();
    for (const PropertyList& element : array) ::plist_array_append_item(node, toNode(element).release());
    return node;
  }
  plist_t operator()(const PropertyListDictionary& dictionary) const {
    plist_t node = ::plist_new_dict();
    for (const auto& [key, entry] : dictionary)
      ::plist_dict_set_item(node, key.c_str(), toNode(entry).release());
    return node;
  }
};

Node toNode(const PropertyList& list) { return Node(std::visit(MakeNode(), list.value)); }
}  // namespace

std::optional<PropertyListFile> parsePropertyList(const std::string& bytes) {
  if (bytes.size() > std::numeric_limits<uint32_t>::max()) return std::nullopt;
  const auto length = static_cast<uint32_t>(bytes.size());
  const bool isBinary = ::plist_is_binary(bytes.data(), length) != 0;
  if (!(isBinary ? isBoundedBinary(bytes) : isBoundedXml(bytes))) return std::nullopt;
  plist_t parsed = nullptr;
  (isBinary ? ::plist_from_bin : ::plist_from_xml)(bytes.data(), length, &parsed);
  const Node root(parsed);
  std::optional<PropertyListFile> file(std::in_place);
  if (!root || !read(root.get(), 1, file->content)) return std::nullopt;
  file->format = isBinary ? PropertyListFormat::binary : PropertyListFormat::xml;
  return file;
}

std::string serialized(const PropertyListFile& file) {
  const Node root = toNode(file.content);
  char* raw = nullptr;
  uint32_t length = 0;
  if (file.format == PropertyListFormat::binary) {
    ::plist_to_bin(root.get(), &raw, &length);
  } else {
    ::plist_to_xml(root.get(), &raw, &length);
  }
  const Text bytes(raw);
  return raw == nullptr ? std::string() : std::string(raw, length);
}
}  // namespace wendle
