#include <gtest/gtest.h>
#include <sys/resource.h>

#include "platform/linux/property_list_file.h"
#include "platform/preferences.h"
#include "platform/process_environment.h"
#include "support/every_kind.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {
namespace {
const std::string asXml = R"(<plist version="1.0"><dict><key>text</key><string>Späße &lt;&amp;&gt;</string>
  <key>negative</key><integer>-4711</integer><key>one</key><integer>1</integer>
  <key>large</key><integer>1099511627776</integer><key>two</key><real>2.0</real><key>tenth</key><real>0.1</real>
  <key>yes</key><true/><key>no</key><false/><key>date</key><date>2026-11-21T07:40:12Z</date>
  <key>data</key><data>AAH/</data><key>list</key><array><array/><dict/><string></string></array></dict></plist>)";

TEST(PropertyListFile, KeepsEveryKindApartInBothFormats) {
  for (const std::string& bytes : {asXml, serialized({everyKind, PropertyListFormat::xml}),
                                   serialized({everyKind, PropertyListFormat::binary})}) {
    const auto read = parsePropertyList(bytes);
    ASSERT_TRUE(read) << bytes;
    EXPECT_EQ(read->format == PropertyListFormat::binary, bytes.starts_with("bplist"));
    EXPECT_TRUE(read->content == everyKind) << bytes;
  }
}

TEST(PropertyListFile, IsNoneForWhatIsNoPropertyList) {
  for (const char* text : {"", "text", "bplist00", "<plist>"}) EXPECT_FALSE(parsePropertyList(text)) << text;
}

std::string nestedXml(size_t levels) {
  std::string text = "<plist version=\"1.0\">";
  for (size_t i = 0; i < levels; ++i) text += "<array>";
  for (size_t i = 0; i < levels; ++i) text += "</array>";
  return text + "</plist>";
}

// A binary list of so many arrays, each with `references` to the next, and an empty one at the end.
std::string nestedBinary(size_t levels, size_t references) {
  const auto twoBytes = [](size_t number) {
    return std::string{static_cast<char>(number >> 8U), static_cast<char>(number & 0xFFU)};
  };
  std::string text = "bplist00", offsets;
  for (size_t i = 1; i <= levels; ++i) {
    offsets += twoBytes(text.size());
    text += static_cast<char>(0xA0U | (i == levels ? 0 : references));
    for (size_t k = 0; i < levels && k < references; ++k) text += twoBytes(i);
  }
  const std::string table = std::string(6, 0) + twoBytes(text.size());
  return text + offsets + std::string(6, 0) + "\x02\x02" + std::string(6, 0) + twoBytes(levels) +
         std::string(8, 0) + table;
}

TEST(PropertyListFile, IsNoneForWhatWouldTakeUnboundedStackOrMemory) {
  for (const auto& bounded : {nestedXml(512), nestedBinary(512, 1), nestedBinary(16, 2)})
    EXPECT_TRUE(parsePropertyList(bounded)) << bounded.substr(0, 8);
  for (const size_t levels : {513U, 100'000U, 2'000'000U})
    EXPECT_FALSE(parsePropertyList(nestedXml(levels))) << levels;
  EXPECT_FALSE(parsePropertyList(nestedBinary(513, 1)));
  EXPECT_FALSE(parsePropertyList(nestedBinary(10'000, 1)));
  EXPECT_FALSE(parsePropertyList(nestedBinary(100, 2)));
  std::string loop = nestedBinary(2, 1);
  loop[10] = 0;  // the reference
  EXPECT_FALSE(parsePropertyList(loop));
}

TEST(Preferences, KeepTheirFormatAndStayAsTheyAreOnAFullDisk) {
  const TempDirectory temp;
  std::ofstream(temp.file("Library/Preferences/domain.plist"))
      << serialized({{PropertyListDictionary()}, PropertyListFormat::xml});
  inFork([&] {
    initProcessState();  // a file that grows too large is no signal then
    ::setenv("HOME", (temp / "").c_str(), 1);
    const rlimit limit{1000, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    UserDefaults defaults("domain");
    defaults.setObject({std::string("short")}, "key");
    EXPECT_TRUE(defaults.synchronize());
    defaults.setObject({std::string(1000, 'x')}, "key");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(UserDefaults("domain").objectForKey("key"), PropertyList{std::string("short")});
  });
  EXPECT_TRUE(temp.text("Library/Preferences/domain.plist").starts_with("<?xml"));
  EXPECT_EQ(temp.contents().size(), 3U);  // no temporary file is left
}
}  // namespace
}  // namespace wendle
