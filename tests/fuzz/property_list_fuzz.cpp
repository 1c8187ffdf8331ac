#include <fuzzer/FuzzedDataProvider.h>

#include "base/text.h"
#include "platform/linux/property_list_file.h"
#include "property.h"

using namespace wendle;

static std::string takeText(FuzzedDataProvider& from) {
  std::string text = from.ConsumeRandomLengthString(16);
  std::erase(text, '\0');
  return isUtf8(text) ? text : "";
}

// Holds only what both formats can hold.
static PropertyList takeList(FuzzedDataProvider& from, int depth) {
  const auto number = from.ConsumeIntegral<std::int32_t>();
  const PropertyListData data{from.ConsumeRandomLengthString(16)};
  PropertyListArray array;
  PropertyListDictionary entries;
  while (depth > 0 && from.ConsumeBool())
    entries[takeText(from)] = array.emplace_back(takeList(from, depth - 1));
  using List = PropertyList;
  return from.PickValueInArray({List{array}, List{entries}, List{takeText(from)}, List{data},
                                List{number > 0}, List{number / 3.0}, List{std::int64_t{number} << 31U},
                                List{PropertyListDate{1.0 * number}}});
}

static void checkForeignBytes(const std::string& bytes) {
  const auto file = parsePropertyList(bytes);
  property("what was read can be written", !file || !serialized(*file).empty());
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, size_t size) {
  checkForeignBytes(std::string(bytes, bytes + size));
  FuzzedDataProvider from(bytes, size);
  const PropertyList list = takeList(from, 3);
  for (const auto format : {PropertyListFormat::binary, PropertyListFormat::xml}) {
    std::string text = serialized({list, format});
    const auto read = parsePropertyList(text);
    property("what was written reads the same", read && read->format == format && read->content == list);
    for (int i = 0; i < 4; ++i)
      text[from.ConsumeIntegral<uint32_t>() % text.size()] = from.ConsumeIntegral<char>();
    checkForeignBytes(text);
  }
  return 0;
}
