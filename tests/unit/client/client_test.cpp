#include "client/application_bundles.h"
#include "client/bundle_identifier.h"
#include "platform/case_folding.h"
#include "support/each.h"
#include "support/temp_directory.h"

namespace wendle {

static auto below(const TempDirectory& temp, bool (*filter)(const FileUrl&)) {
  return [&temp, filter](const std::string& path) { return filter(FileUrl::fileUrlWithPath(temp / path)); };
}

TEST(ClientIdentity, KeepsTheOrderAskedFor) {
  using enum BundleIdentifier;
  const std::string client = "com.wendle.DesktopClient";
  EXPECT_EQ(bundleIdentifierStrings({agent, desktop, agent}),
            (Texts{client + ".WendleAgent", client, client + ".WendleAgent"}));
}

TEST(SpotlightAnswer, HasAnAbsolutePathALineTheLastOneIncluded) {
  EXPECT_EQ(pathsInAnswer("/nowhere/a\n\nb\n/nowhere/c"), (Texts{"/nowhere/a", "/nowhere/c"}));
}

TEST(PathFilters, BackupIsAnyComponentWithThatExtension) {
  const TempDirectory temp;
  const auto isKept = below(temp, isInBackupDatabase);
  expectAll(true, isKept, {"Mac.backupdb/Latest/A", "Mac.backupdb", "MAC.BackupDB/A", "a.bac\u212Aupdb/b"});
  expectAll(false, isKept, {"a.backupdb.old/A", "a.backupdbs/A", ".backupdb/A", "backupdb/A"});
}

TEST(PathFilters, SafetyNetIsAFolderInTheItemOrAboveIt) {
  const TempDirectory temp;
  for (const char* path : {"clone/_CCC SafetyNet", "disk/_ccc safetynet", "disk/beside/_CCC SafetyNet"})
    temp.directory(path);
  temp.file("plain/_CCC SafetyNet");
  expectAll(true, below(temp, isInSafetyNetFolder), {"clone/Apps/A", "clone"});
  expectAll(false, below(temp, isInSafetyNetFolder), {"plain/A", "A"});
  const bool isCaseSensitive =
      !std::filesystem::exists(temp / "PLAIN");  // the disk decides: macOS's mostly is not [D]
  expectAll(!isCaseSensitive, below(temp, isInSafetyNetFolder), {"disk/A"});
}

TEST(PathFilters, NumberedFolderIsAnExistingFolderWithAPlainNumber) {
  const TempDirectory temp;
  if (lowercased(temp / "") != temp / "") GTEST_SKIP() << "the temporary folder's path has capitals";
  const auto isKept = below(temp, isInNumberedWrpFolder);
  const auto isItemKept = [&](const auto& folder) { return temp.directory(folder), isKept(folder + "/A"); };
  expectAll(true, isItemKept, {"x.wrp1", "x.wrp7/a", "x.wrp-2", "x.wrp0", "x.wrp9223372036854775807"});
  expectAll(
      false, isItemKept,
      {"x.wrp", "x.wrp01", "x.wrp+1", "x.wrp-0", "x.wrpx", "x.wrp1x", "x.wrp/x.wxp7",
       "x.wrp99999999999999999999", "x.wrp5.old", ".wrp6", "X.wrp3", "x.WRP4"});  // on a case-sensitive disk
  temp.file("file.wrp8");
  expectAll(true, isKept, {"x.wrp1", "x.wrp1/MISSING"});
  expectAll(false, isKept, {"file.wrp8", "missing.wrp9/A"});
}

}  // namespace wendle
