#include "platform/file_tree.h"

#include <fcntl.h>
#include <sys/file.h>

#include <set>

#include "platform/files.h"
#include "platform/posix/tree_cursor.h"
#include "platform/removal_forecast.h"
#include "support/each.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {
static constexpr int beyondTheOpenLevels = TreeCursor::maxOpenLevels + 10;

// Makes `depth` folders `deeper` inside one another below `base`, and beside each the folders `siblings`.
// No path is used, which could be too long.
static void makeDeepTree(const std::string& base, int depth, const Texts& siblings) {
  for (UniqueFd level(::open(base.c_str(), O_RDONLY)); depth > 0; --depth) {
    for (const std::string& name : siblings) ::mkdirat(level.get(), name.c_str(), S_IRWXU);
    ::mkdirat(level.get(), "deeper", S_IRWXU);
    level.reset(::openat(level.get(), "deeper", O_RDONLY));
  }
}

TEST(ItemRemoval, RemovesTheItemAndNothingBehindALink) {
  const TempDirectory temp;
  for (const char* file : {"bystander/inner/file", "bystander/item/x", "tree/a/b/x", "file"}) temp.file(file);
  for (const std::string folder : {"", "tree/.hidden/"}) {
    temp.link(folder + "folder link", temp / "bystander");
    temp.link(folder + "file link", temp / "bystander/inner/file");
    temp.link(folder + "dangling", "nowhere");
  }
  temp.link("way", "bystander");
  temp.directory("empty");
  const auto removal = [&](const std::string& item) { return removeItem(temp / item); };
  expectAll(true, fileExists, {temp / "file", temp / "folder link"});
  expectAll(false, fileExists, {temp / "missing", temp / "dangling"});
  expectAll(Status(), removal, {"tree", "empty", "file", "file link", "folder link", "dangling", "way/item"});
  expectAll(Status(posixError(ENOENT)), removal, {"missing", "missing/item"});
  EXPECT_EQ(temp.contents(), (Texts{"bystander", "bystander/inner", "bystander/inner/file", "way"}));
}

TEST(DirectoryWalk, FindsDirectoriesOfThatNameAtAnyDepth) {
  inForkAsOrdinaryUser([] {
    const TempDirectory temp;
    for (const char* path : {"start/our.a/x/our.b", "start/.hidden/our.c", "start/Our.d/not.our.e",
                             "outside/our.f", "start/our.locked/our.g"})
      temp.directory(path);
    temp.file("start/our.file");
    temp.link("start/our.link", temp / "outside");
    temp.link("link", "start");
    ::chmod((temp / "start/our.locked").c_str(), 0);
    const auto found = [&](const std::string& start) {
      const Texts paths =
          FileTree(temp / start).findDirectories([](auto name) { return name.starts_with("our."); });
      return std::set(paths.begin(), paths.end());
    };
    EXPECT_EQ(found("start"),
              (std::set<std::string>{".hidden/our.c", "our.a", "our.a/x/our.b", "our.locked"}));
    expectAll(std::set<std::string>(), found, {"missing", "start/our.file", "link"});
    ::chmod((temp / "start/our.locked").c_str(), S_IRWXU);
  });
}

TEST(DirectoryWalk, DeepPathsAreExactAndParentsComeFirst) {
  const TempDirectory temp;
  makeDeepTree(temp.directory("start"), beyondTheOpenLevels, {"a", "b", "x"});
  std::set<std::string> found{temp / "start"};
  for (const std::string& path : FileTree(temp / "start").findDirectories([](auto) { return true; })) {
    const std::string item = temp / "start/" + path;
    EXPECT_TRUE(found.contains(item.substr(0, item.rfind('/')))) << path;
    EXPECT_TRUE(std::filesystem::exists(item) && found.insert(item).second) << path;
  }
  EXPECT_EQ(found.size(), temp.contents().size());
}

TEST(FileTree, RemovesWhatItFoundFromWhereItWas) {
  const TempDirectory temp;
  for (const char* start : {"start", "start/swapped"})  // in the end too deep for a path
    makeDeepTree(temp.directory(start), 700, {});
  const Texts bystanders{"bystander/deeper/file", "bystander/swapped/deeper/file"};
  for (const std::string& file : bystanders) temp.file(file);
  const FileTree tree(temp / "start");
  const Texts found = tree.findDirectories([](std::string_view name) { return name == "deeper"; });
  EXPECT_EQ(tree.removeItem(found.back()), Status());
  std::filesystem::rename(temp / "start", temp / "moved");
  std::filesystem::rename(temp / "moved/swapped", temp / "moved/kept");
  for (const char* link : {"start", "moved/swapped"}) temp.link(link, temp / "bystander");
  for (const std::string& path : found) {
    const Status want = path == "deeper" ? Status() : posixError(path[0] == 's' ? ENOTDIR : ENOENT);
    EXPECT_EQ(tree.removeItem(path), want) << path.size();
  }
  expectAll(
      "kept", [&](const auto& file) { return temp.text(file); }, bystanders);
}

TEST(RemovalForecast, CountsPlainFilesAndReachesNothingInAnUnlistedDirectory) {
  inForkAsOrdinaryUser([] {
    const TempDirectory temp;
    temp.file("item/closed/in/file");
    temp.link("item/link", temp / "bystander");
    EXPECT_EQ(forecastRemoval(temp / "item")->size, std::string("kept").size());
    const auto isReached = [&] { return isReachedByRemoval(temp / "item", temp / "item/closed/in/file"); };
    EXPECT_TRUE(isReached());
    ::chmod((temp / "item/closed").c_str(), S_IWUSR | S_IXUSR);
    EXPECT_FALSE(isReached());
    ::chmod((temp / "item/closed").c_str(), S_IRWXU);
  });
}

TEST(DirectoryLock, KeepsOthersOutUntilItsTimeout) {
  const TempDirectory temp;
  const UniqueFd folder(::open(temp.directory("folder").c_str(), O_RDONLY));
  const auto isFree = [&] { return ::flock(folder.get(), LOCK_SH | LOCK_NB) == 0; };
  {
    const DirectoryLock lock(temp / "folder");
    const DirectoryLock other(temp / "folder", std::chrono::milliseconds(20));
    EXPECT_FALSE(isFree());
  }
  EXPECT_TRUE(isFree());
  const DirectoryLock none(temp / "missing");
}
}  // namespace wendle
