#include <gtest/gtest.h>

#include <set>

#include "platform/file_tree.h"
#include "platform/posix/tree_cursor.h"
#include "support/each.h"
#include "support/temp_directory.h"
#include "syscall_faults.h"

namespace wendle {
using Plant = void (*)(const TempDirectory& temp);  // makes what is to be removed: "item"

static void plantDirectory(const TempDirectory& temp, const std::string& directory) {
  for (const char* file : {"/1", "/before/file", "/in/file", "/past/file", "/2"}) temp.file(directory + file);
  temp.directory(directory + "/empty");
  temp.link(directory + "/link", temp / "bystander");
}

static void plantItem(const TempDirectory& temp) { plantDirectory(temp, "item"); }

// The directory of that depth in the deep item; the item's own is 1.
static std::string levelAt(size_t depth) {
  std::string directory = "item";
  while (--depth > 0) directory += "/in";
  return directory;
}

static void plantDeepItem(const TempDirectory& temp) {
  constexpr size_t maxOpen = TreeCursor::maxOpenLevels;
  for (const size_t depth : {size_t{1}, maxOpen, maxOpen + 1, maxOpen + 3})
    plantDirectory(temp, levelAt(depth));
}

static auto openDescriptors() { return std::distance(std::filesystem::directory_iterator("/dev/fd"), {}); }

static bool isFilledDirectory(const std::filesystem::path& item) {
  return is_directory(symlink_status(item)) && !is_empty(item);
}

// Removes an item while the call of that number fails: the call's item stays, unless there is another way to
// remove it, and nothing else does. False when there are fewer such calls.
static bool removeDespite(Plant plant, Syscall call, int number, int failure) {
  const TempDirectory temp;
  temp.file("bystander/folder/file");
  auto want = temp.contents();
  plant(temp);
  Status wantedStatus;
  std::set<std::string> listed;  // one read lists all of these directories, the next one finds their end
  const auto descriptors = openDescriptors();
  syscallHook = [&](Syscall made, const std::string& item) {
    const bool isAtEnd = made == Syscall::read && !listed.insert(item).second;
    if (made != call || --number != 0) return 0;
    const bool isLastWay = !item.empty() && !isAtEnd && (call == Syscall::unlink || isFilledDirectory(item));
    if (failure == EINTR || !isLastWay) return failure;
    wantedStatus = posixError(failure);
    for (const std::string& entry :
         temp.contents()) {  // the item with all it holds, and the directories above it
      const std::string path = temp / entry + "/";
      if (path.starts_with(item + "/") || (item + "/").starts_with(path)) want.push_back(entry);
    }
    return failure;
  };
  EXPECT_EQ(removeItem(temp / "item"), wantedStatus);
  syscallHook = nullptr;
  EXPECT_EQ(temp.contents(), want);
  EXPECT_EQ(openDescriptors(), descriptors);
  return number <= 0;
}

// `made`: the calls that are needed at least once, or the test would make nothing fail.
static void removeDespiteEveryError(Plant plant, const std::set<Syscall>& made) {
  for (const int failure : {EACCES, EINTR}) {
    for (const Syscall call : {Syscall::open, Syscall::read, Syscall::status, Syscall::unlink}) {
      int number = 1;
      while (removeDespite(plant, call, number, failure) && !testing::Test::HasFailure()) ++number;
      ASSERT_FALSE(testing::Test::HasFailure()) << "in call " << number << ", errno " << failure;
      ASSERT_TRUE(number > 1 || !made.contains(call)) << "nothing failed at all";
    }
  }
}

static const std::set allCalls{Syscall::open, Syscall::read, Syscall::status, Syscall::unlink};

TEST(EveryError, InADirectory) { removeDespiteEveryError(plantItem, allCalls); }
TEST(EveryError, InADirectoryOfUnknownTypes) {
  areTypesHidden = true;
  removeDespiteEveryError(plantItem, allCalls);
  areTypesHidden = false;
}
TEST(EveryError, InADeepTree) { removeDespiteEveryError(plantDeepItem, allCalls); }
TEST(EveryError, OfAFileOrALink) {
  const std::set needed{Syscall::open, Syscall::unlink};
  removeDespiteEveryError([](const auto& temp) { temp.file("item"); }, needed);
  removeDespiteEveryError([](const auto& temp) { temp.link("item", temp / "bystander"); }, needed);
}

TEST(ManyErrors, FirstIsReported) {
  const TempDirectory temp;
  plantItem(temp);
  syscallHook = [failure = EIO](Syscall call, const std::string&) mutable {
    return call == Syscall::unlink ? std::exchange(failure, EBUSY) : 0;
  };
  EXPECT_EQ(removeItem(temp / "item"), posixError(EIO));
  syscallHook = nullptr;
}

TEST(ManyErrors, OfReadingIsNotLostWhenTheDirectoryIsClosed) {
  const TempDirectory temp;
  const std::string closed = levelAt(TreeCursor::maxOpenLevels);
  temp.directory(levelAt(TreeCursor::maxOpenLevels + 2));
  syscallHook = [&, reads = 0](Syscall call, const std::string& item) mutable {
    if (call != Syscall::read || item != temp / closed || ++reads != 2) return 0;
    return temp.file(closed + "/unread"), EIO;
  };
  EXPECT_EQ(removeItem(temp / "item"), posixError(EIO));
  syscallHook = nullptr;
  EXPECT_EQ(temp.text(closed + "/unread"), "kept");
}

TEST(DeepTree, NeedsFewDescriptorsAndEachWayUpOnce) {
  constexpr size_t closedLevels = 20;
  // The failure of the way up, after which directories are found again by name; what is in the branches
  // beside it; how often each way may be taken: again for each branch that closes its parent.
  for (const auto& [failure, branch, times] :
       {std::tuple{0, "", 1U}, {EACCES, "", 1U}, {0, "/deeper/leaf", 6U}}) {
    const TempDirectory temp;
    for (size_t depth = TreeCursor::maxOpenLevels + closedLevels; depth > 0; --depth)
      for (const char* side : {"/a", "/z"}) temp.directory(levelAt(depth) + side + branch);
    const auto descriptors = openDescriptors();
    size_t waysUp = 0;
    syscallHook = [&, refusal = failure](Syscall call, const std::string& item) {
      EXPECT_LT(openDescriptors() - descriptors, 30);
      const bool isWayUp = call == Syscall::open && item.empty();
      return isWayUp ? ++waysUp, refusal : 0;
    };
    EXPECT_EQ(removeItem(temp / "item"), Status());
    syscallHook = nullptr;
    EXPECT_LE(waysUp, times * closedLevels + 1) << branch;
  }
}

TEST(Meanwhile, WhatVanishesIsNoError) {
  bool isMade = true;
  for (int number = 1; isMade; ++number) {
    const TempDirectory temp;
    plantItem(temp);
    isMade = false;
    syscallHook = [&, left = number](Syscall, const std::string& item) mutable {
      isMade = isMade || --left == 0;
      if (left == 0 && item.starts_with(temp / "item/")) std::filesystem::remove_all(item);
      return 0;
    };
    EXPECT_EQ(removeItem(temp / "item"), Status()) << "in call " << number;
    syscallHook = nullptr;
    EXPECT_EQ(temp.contents(), Texts());
  }
}

// So many times so many files appear in the item when it has been emptied; to remove one takes
// `seconds`.
struct Growth {
  int times = 0, files = 0, seconds = 0;
  Status want;
  int wantedPasses = 0;
};

TEST(Meanwhile, WhatAppearsIsRemovedButNotForEver) {
  const Status notEmpty = posixError(ENOTEMPTY);
  for (const auto& growth : {Growth{3, 1, 0, {}, 4},
                             {1000, 1, 0, notEmpty, 16},
                             {1, 9, 1, notEmpty, 2},
                             {1, 9, 0, {}, 2},
                             {1, 3, 1, {}, 2},
                             {1, 2, 3, {}, 2}}) {
    const TempDirectory temp;
    temp.file("item/file");
    int passes = 0;
    stoppedClock = 0;
    syscallHook = [&](Syscall call, const std::string& item) {
      if (call != Syscall::unlink) return 0;
      if (item != temp / "item") *stoppedClock += growth.seconds;
      if (item == temp / "item" && ++passes <= growth.times)
        for (int i = 0; i < growth.files; ++i) temp.file("item/" + std::to_string(i));
      return 0;
    };
    EXPECT_EQ(removeItem(temp / "item"), growth.want);
    syscallHook = nullptr;
    stoppedClock.reset();
    EXPECT_EQ(passes, growth.wantedPasses);
  }
}

TEST(UnknownTypes, HideNoDirectoryFromAWalkAndMakeNoLinkOne) {
  const TempDirectory temp;
  for (const char* file : {"start/our.a/our.b/our.file", "bystander/our.c/file"}) temp.file(file);
  temp.link("start/our.link", temp / "bystander");
  const auto found = [&] {
    return FileTree(temp / "start").findDirectories([](auto name) { return name.starts_with("our."); });
  };
  const Texts want{"our.a", "our.a/our.b"};
  EXPECT_EQ(found(), want);
  areTypesHidden = true;
  EXPECT_EQ(found(), want);
  areTypesHidden = false;
}
}  // namespace wendle
