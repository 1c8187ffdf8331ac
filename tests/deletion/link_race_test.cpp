#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "platform/file_tree.h"
#include "platform/posix/tree_cursor.h"
#include "support/temp_directory.h"
#include "syscall_faults.h"

namespace wendle {
// A tree of directories inside one another, and beside it a bystander with entries of the same names. The
// directories of the tree change places with links to the bystander that lie in the bystander: so a step
// through such a link leads there, and so does the way up from a directory that was moved.
class Arena {
 public:
  Arena() : bystander_(::open(temp_.directory("bystander").c_str(), O_RDONLY | O_CLOEXEC)) {
    for (const std::string entry : bystanderEntries) temp_.file("bystander/" + entry);
    std::string directory = "tree";
    for (size_t i = 0; i < depth; ++i, directory += "/in") {
      for (const char* entry : {"/1", "/in/2", "/2"}) temp_.file(directory + entry);
      temp_.link("bystander/" + std::to_string(100 + i), temp_ / "bystander");
      directories_.emplace_back(::open((temp_ / directory).c_str(), O_RDONLY | O_CLOEXEC));
    }
  }

  std::string tree() const { return temp_ / "tree"; }

  // Any directory with its link, or the one that has changed places back: 1. When it is removed already: 0.
  int swapOne() {
    if (isSwapped_ = !isSwapped_; isSwapped_) chosen_ = random_() % depth;
    const std::string link = std::to_string(100 + chosen_);
    return exchange(directories_[chosen_].get(), "in", bystander_.get(), link.c_str()) ? 1 : 0;
  }

  auto lostEntries() const {
    const auto isLost = [&](const std::string& entry) { return temp_.text("bystander/" + entry) != "kept"; };
    return std::count_if(bystanderEntries.begin(), bystanderEntries.end(), isLost);
  }

 private:
  static constexpr size_t depth = TreeCursor::maxOpenLevels + 8;
  static constexpr std::array bystanderEntries{"1", "2", "in/1", "in/2"};

  TempDirectory temp_;
  UniqueFd bystander_;
  std::vector<UniqueFd> directories_;
  bool isSwapped_ = false;
  size_t chosen_ = 0;
  static inline std::minstd_rand random_;
};

// Swaps before every system call of the deletion. Returns how many swaps there were.
static int race(Arena& arena) {
  int swaps = 0;
  syscallHook = [&](Syscall, const std::string&) { return swaps += arena.swapOne(), 0; };
  (void)removeItem(arena.tree());
  syscallHook = nullptr;
  return swaps;
}

TEST(LinkRace, DeletionLosesNoBystander) {
  for (int swaps = 0, before = 0; swaps < 10'000; before = swaps) {
    Arena arena;
    swaps += race(arena);
    ASSERT_GT(swaps, before) << "this file system exchanges nothing";
    ASSERT_EQ(arena.lostEntries(), 0);
  }
}
}  // namespace wendle
