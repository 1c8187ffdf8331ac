// What macOS keeps in an item's flags, as the macOS executable heeds it [R]: macos_program takes them from
// mode bits.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/run_result.h"

namespace wendle::test {
namespace {
using std::filesystem::perms;

constexpr perms userImmutable = perms::set_uid, systemImmutable = perms::set_gid,
                dataless = perms::sticky_bit;
const std::string folder = "/Users/Shared/Wendle/";

class ItemFlagsTest : public testing::TestWithParam<bool> {};

TEST_P(ItemFlagsTest, OfUsersAreClearedForRootAndADatalessDirectoryGoesUnread) {
  if (uninstallerCommand().size() == 1) GTEST_SKIP() << "Linux has no such flags";
  const bool isRoot = GetParam();
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  const auto set = [&mac](const std::string& path, perms flags) {
    std::filesystem::permissions(mac.at(folder + path), flags, std::filesystem::perm_options::add);
  };
  for (const char* file : {"file", "open/file", "locked/file", "systems"}) mac.addFile(folder + file);
  mac.addDirectory(folder + "evicted");
  set("file", userImmutable);
  set("open/file", userImmutable);
  set("locked", userImmutable);
  set("systems", userImmutable | systemImmutable);
  set("evicted", dataless);
  const RunResult seen = runUninstaller(mac, {"--soft"}, {.asRoot = isRoot});

  EXPECT_EQ(seen.outcome, "exit 0") << seen.err;
  for (const char* file : {"file", "open/file", "locked/file"})
    EXPECT_EQ(mac.exists(folder + file), !isRoot) << file;
  const perms left = std::filesystem::status(mac.at(folder + "systems")).permissions();
  EXPECT_EQ(left & userImmutable, userImmutable) << "where the system forbids it, the user's flags stay";
  EXPECT_FALSE(mac.exists(folder + "evicted"));
}

INSTANTIATE_TEST_SUITE_P(Users, ItemFlagsTest, testing::Bool(),
                         [](const auto& user) { return user.param ? "root" : "pat"; });
}  // namespace
}  // namespace wendle::test
