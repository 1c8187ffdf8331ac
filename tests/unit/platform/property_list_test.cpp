#include <gtest/gtest.h>

#include "platform/linux/property_list_file.h"

namespace wendle {
namespace {

const PropertyList everyKind{PropertyListDictionary{
    {"text", {std::string("Späße <&>")}},
    {"negative", {std::int64_t{-4711}}},
    {"one", {std::int64_t{1}}},
    {"large", {std::int64_t{1} << 40}},
    {"two", {2.0}},
    {"tenth", {0.1}},
    {"yes", {true}},
    {"no", {false}},
    {"date", {PropertyListDate{816939612}}},
    {"data", {PropertyListData{std::string("\0\x01\xff", 3)}}},
    {"list", {PropertyListArray{{PropertyListArray()}, {PropertyListDictionary()}, {std::string()}}}},
}};

const std::string asXml = R"(<plist version="1.0"><dict><key>text</key><string>Späße &lt;&amp;&gt;</string>
  <key>negative</key><integer>-4711</integer><key>one</key><integer>1</integer>
  <key>large</key><integer>1099511627776</integer><key>two</key><real>2.0</real><key>tenth</key><real>0.1</real>
  <key>yes</key><true/><key>no</key><false/><key>date</key><date>2026-11-21T07:40:12Z</date>
  <key>data</key><data>AAH/</data><key>list</key><array><array/><dict/><string></string></array></dict></plist>)";

TEST(PropertyListFile, KeepsEveryKindApartInBothFormats) {
  const auto read = parsePropertyList(asXml);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->format, PropertyListFormat::xml);
  EXPECT_TRUE(read->content == everyKind);
  for (const auto format : {PropertyListFormat::xml, PropertyListFormat::binary}) {
    const auto again = parsePropertyList(serialized({everyKind, format}));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->format, format);
    EXPECT_TRUE(again->content == everyKind);
  }
}

TEST(PropertyListFile, IsNoneForWhatIsNoPropertyList) {
  for (const char* text : {"", "text", "bplist00", "<plist>"}) EXPECT_FALSE(parsePropertyList(text)) << text;
}

}  // namespace
}  // namespace wendle
