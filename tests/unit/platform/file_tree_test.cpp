#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>

#include <set>

#include "platform/directory_walk.h"
#include "platform/folder_lock.h"
#include "platform/item_removal.h"
#include "platform/posix/tree_cursor.h"
#include "support/each.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {

static constexpr int beyondTheOpenLevels = TreeCursor::mostOpenLevels + 10;

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
  expectAll(std::nullopt, removal,
            {"tree", "empty", "file", "file link", "folder link", "dangling", "way/item"});
  expectAll(posixError(ENOENT), removal, {"missing", "missing/item"});
  EXPECT_EQ(temp.contents(), (Texts{"bystander", "bystander/inner", "bystander/inner/file", "way"}));
}

TEST(ItemRemoval, EntryThatStaysSavesNothingElseAndIsTheCause) {
  inForkAsOrdinaryUser([] {
    const TempDirectory temp;
    makeDeepTree(temp.directory("tree"), beyondTheOpenLevels, {"a", "b", "x"});
    std::string deepest = "tree";
    for (int i = 0; i < beyondTheOpenLevels; ++i, deepest += "/deeper") temp.file(deepest + "/a/file");
    const Texts locked{deepest + "/locked", "tree/x/locked"};
    for (const auto& folder : {locked[0], locked[1], std::string("tree/x")}) temp.file(folder + "/file");
    for (const std::string& folder : locked) ::chmod((temp / folder).c_str(), S_IRUSR | S_IXUSR);
    ::chmod(temp.directory("tree/unreadable but empty").c_str(), 0);
    EXPECT_EQ(removeItem(temp / "tree"), posixError(EACCES));
    EXPECT_EQ(temp.contents().size(), beyondTheOpenLevels + 6U);  // the locked ones and the way to them
    for (const std::string& folder : locked) ::chmod((temp / folder).c_str(), S_IRWXU);
  });
}

TEST(ItemRemoval, DepthAndWidthNeedFewDescriptors) {
  const TempDirectory temp;
  temp.file("bystander");
  makeDeepTree(temp.directory("deep"), 5000, {});
  makeDeepTree(temp.directory("wide"), 200, {"a", "b", "x", "y"});
  inFork([&] {
    const rlimit few{64, 64};
    ::setrlimit(RLIMIT_NOFILE, &few);
    for (const char* tree : {"deep", "wide"}) EXPECT_EQ(removeItem(temp / tree), std::nullopt);
  });
  EXPECT_EQ(temp.contents(), Texts{"bystander"});
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
      const Texts paths = findDirectories(temp / start, [](auto name) { return name.starts_with("our."); });
      return std::set(paths.begin(), paths.end());
    };
    EXPECT_EQ(found("start"), (std::set{temp / "start/.hidden/our.c", temp / "start/our.a",
                                        temp / "start/our.a/x/our.b", temp / "start/our.locked"}));
    expectAll(std::set<std::string>(), found, {"missing", "start/our.file", "link"});
    ::chmod((temp / "start/our.locked").c_str(), S_IRWXU);
  });
}

TEST(DirectoryWalk, DeepPathsAreExactAndParentsComeFirst) {
  const TempDirectory temp;
  makeDeepTree(temp.directory("start"), beyondTheOpenLevels, {"a", "b", "x"});
  std::set<std::string> found{temp / "start"};
  for (const std::string& path : findDirectories(temp / "start", [](std::string_view) { return true; })) {
    EXPECT_TRUE(found.contains(path.substr(0, path.rfind('/')))) << path;
    EXPECT_TRUE(std::filesystem::exists(path) && found.insert(path).second) << path;
  }
  EXPECT_EQ(found.size(), temp.contents().size());
}

TEST(FolderLock, KeepsOthersOutAndIsNotWaitedForForEver) {
  const TempDirectory temp;
  const UniqueFd folder(::open(temp.directory("folder").c_str(), O_RDONLY));
  const auto isFree = [&] { return ::flock(folder.get(), LOCK_SH | LOCK_NB) == 0; };
  {
    const FolderLock lock(temp / "folder");
    const FolderLock other(temp / "folder", std::chrono::milliseconds(20));
    EXPECT_FALSE(isFree());
  }
  EXPECT_TRUE(isFree());
  const FolderLock none(temp / "missing");
}

}  // namespace wendle
