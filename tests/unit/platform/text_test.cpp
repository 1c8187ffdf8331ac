#include "base/text.h"

#include "base/path.h"
#include "platform/case_folding.h"
#include "platform/file_url.h"
#include "support/each.h"
#include "support/temp_directory.h"

namespace wendle {
static std::string toUrl(const std::string& path) { return FileUrl::fileUrlWithPath(path).absoluteString(); }

TEST(FileUrl, EscapesAllButTheBytesThatStandForThemselves) {
  EXPECT_EQ(toUrl("/nowhere/AZaz09-._~!$&'()*+,=:@"), "file:///nowhere/AZaz09-._~!$&'()*+,=:@");
  EXPECT_EQ(toUrl("/nowhere//./../a b%20;/"), "file:///nowhere//./../a%20b%2520%3B/");
  EXPECT_EQ(toUrl("/nowhere/\"#<>?[\\]^`{|}"), "file:///nowhere/%22%23%3C%3E%3F%5B%5C%5D%5E%60%7B%7C%7D");
  EXPECT_EQ(toUrl("/nowhere/€😀\xFF\x80\n\x7F"), "file:///nowhere/%E2%82%AC%F0%9F%98%80%FF%80%0A%7F");
}

TEST(FileUrl, EndsInASlashOnlyForADirectoryItself) {
  const TempDirectory temp;
  const std::string base = "file://" + temp / "";
  temp.file("directory/file");
  temp.link("link", "directory");
  const auto relative = [&](const std::string& path) { return toUrl(temp / path).substr(base.size()); };
  EXPECT_EQ(
      each(relative, {"directory", "directory/", "directory/file", "link", "link/", "missing", "missing/"}),
      (Texts{"directory/", "directory/", "directory/file", "link", "link/", "missing", "missing/"}));
  EXPECT_EQ(FileUrl::fileUrlWithDirectoryPath(temp / "missing").absoluteString(), base + "missing/");
  EXPECT_EQ(FileUrl::fileUrlWithPath("/nowhere//").path(), "/nowhere");
  EXPECT_EQ(FileUrl::fileUrlWithPath("/").path(), "/");
}

TEST(PathText, ComponentsAreTheNamesBetweenSlashes) {
  EXPECT_EQ(each(pathComponents, {"/a/b", "/a//b/", "a/../.", "/", ""}),
            (std::vector<Texts>{{"/", "a", "b"}, {"/", "a", "b"}, {"a", "..", "."}, {"/"}, {}}));
}

TEST(PathText, ExtensionFollowsTheLastDotOfTheLastComponent) {
  EXPECT_EQ(each(pathExtension, {"/x/a.tar.gz", "a..b", ".x.y", "a.wrp1/", "a b.c"}),
            (Texts{"gz", "b", "y", "wrp1", "c"}));
  expectAll("", pathExtension, {"/x.y/a", ".backupdb", "/x/.y", "a.", "a.b c", "/", "", ".", ".."});
}

TEST(PathText, DeletingTheLastComponentEndsAtTheRoot) {
  EXPECT_EQ(each(deletingLastPathComponent, {"/a/b", "/a/b/", "/a//b", "/a/", "/a", "//a", "/", "a", ""}),
            (Texts{"/a", "/a", "/a", "/", "/", "/", "/", "", ""}));
}

TEST(Decimal, IsOneSignAndDigitsWithin64Bits) {
  EXPECT_EQ(each(parseDecimal, {"7", "+7", "-7", "-0", "07", "9223372036854775807", "-9223372036854775808"}),
            (std::vector<std::optional<std::int64_t>>{7, 7, -7, 0, 7, INT64_MAX, INT64_MIN}));
  expectAll(
      std::nullopt, parseDecimal,
      {"", "+", "-", "+-1", "-+1", "++1", " 1", "1 ", "5\r", "9223372036854775808", "-9223372036854775809"});
}

TEST(Utf8, HasNoOverlongFormsSurrogatesOrFragments) {
  expectAll(true, isUtf8, {"", "ascii", "\u0080\u07FF", "\u0800\uD7FF\uE000\uFFFF", "\U00010000\U0010FFFF"});
  expectAll(false, isUtf8,
            {"\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
             "\xF4\x90\x80\x80", "\x80", "\xC3", "\xE2\x82z"});
}

TEST(Utf8, TrimsTheWhiteSpaceOfAllScriptsAtBothEnds) {
  EXPECT_EQ(each(trimmed, {" \t\r\n\va \f b\n",
                           "\u00A0\u0085\u1680\u2000é\u200A\u2028\u2029\u202F\u205F\u3000", "\n\u3000", ""}),
            (Texts{"a \f b", "é", "", ""}));
}

TEST(LetterCase, LowersAllLettersAndKeepsOtherBytes) {
  EXPECT_EQ(each(lowercased, {"AbZ@[09", "É\u0416\u212A\U00010400", "A\xFF\xC3Z\xE2\x84"}),
            (Texts{"abz@[09", "é\u0436k\U00010428", "a\xFF\xC3z\xE2\x84"}));
  EXPECT_TRUE(containsIgnoringCase("/Mac.BacKupDB/x", ".bac\u212AUPdb"));
  EXPECT_FALSE(containsIgnoringCase("/Mac.backup/db", ".backupdb"));
}
}  // namespace wendle
