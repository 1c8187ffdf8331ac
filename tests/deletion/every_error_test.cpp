#include <gtest/gtest.h>

#include <set>

#include "disturbed_calls.h"
#include "platform/item_removal.h"
#include "platform/posix/tree_cursor.h"
#include "support/temp_directory.h"

namespace wendle {

using Plant = void (*)(const TempDirectory& temp);  // makes what is to be removed: "item"

static void plantFolder(const TempDirectory& temp, const std::string& folder) {
  for (const char* file : {"/1", "/before/file", "/in/file", "/past/file", "/2"}) temp.file(folder + file);
  temp.directory(folder + "/empty");
  temp.link(folder + "/link", temp / "bystander");
}

static void plantItem(const TempDirectory& temp) { plantFolder(temp, "item"); }

static void plantDeepItem(const TempDirectory& temp) {
  std::string folder = "item";
  for (size_t depth = 0; depth < TreeCursor::mostOpenLevels; ++depth) folder += "/in";
  for (const std::string& filled : {std::string("item"), folder, folder + "/in/in"})
    plantFolder(temp, filled);
}

static bool isFilledFolder(const std::filesystem::path& item) {
  return is_directory(symlink_status(item)) && !is_empty(item);
}

static auto openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// Removes an item while the call of that number fails: the call's item stays, unless there is another way to
// remove it, and nothing else does. False when there are fewer such calls.
static bool removeDespite(Plant plant, Call call, int number, int failure) {
  const TempDirectory temp;
  temp.file("bystander/folder/file");
  auto want = temp.contents();
  plant(temp);
  int wantedError = 0;
  std::set<std::string> listed;  // one read lists all of these folders, the next one finds their end
  const auto descriptors = openDescriptors();
  disturbance = [&](Call made, const std::string& item) {
    const bool isAtEnd = made == Call::read && !listed.insert(item).second;
    if (made != call || --number != 0) return 0;
    const bool isLastWay = !item.empty() && !isAtEnd && (call == Call::unlink || isFilledFolder(item));
    if (failure == EINTR || !isLastWay) return failure;
    wantedError = failure;
    for (const std::string& entry :
         temp.contents()) {  // the item with all it holds, and the folders above it
      const std::string path = temp / entry + "/";
      if (path.starts_with(item + "/") || (item + "/").starts_with(path)) want.push_back(entry);
    }
    return failure;
  };
  const auto error = removeItem(temp / "item");
  disturbance = nullptr;
  EXPECT_EQ(error.value_or(Error()).code, wantedError);
  EXPECT_EQ(temp.contents(), want);
  EXPECT_EQ(openDescriptors(), descriptors);
  return number <= 0;
}

// `made`: the calls that are needed at least once, or the test would disturb nothing.
static void removeDespiteEveryError(Plant plant, const std::set<Call>& made) {
  for (const int failure : {EACCES, EPERM, EBUSY, EIO, EMFILE, ENOMEM, EINTR}) {
    for (const Call call : {Call::open, Call::read, Call::status, Call::unlink}) {
      int number = 1;
      while (removeDespite(plant, call, number, failure) && !testing::Test::HasFailure()) ++number;
      ASSERT_FALSE(testing::Test::HasFailure()) << "in call " << number << ", errno " << failure;
      ASSERT_TRUE(number > 1 || !made.contains(call)) << "not disturbed at all";
    }
  }
}

TEST(EveryError, InAFolder) { removeDespiteEveryError(plantItem, {Call::open, Call::read, Call::unlink}); }
TEST(EveryError, InAFolderOfUnknownTypes) {
  typesAreHidden = true;
  removeDespiteEveryError(plantItem, {Call::open, Call::read, Call::unlink});
  typesAreHidden = false;
}
TEST(EveryError, InADeepTree) {
  removeDespiteEveryError(plantDeepItem, {Call::open, Call::read, Call::status, Call::unlink});
}
TEST(EveryError, OfAFileOrALink) {
  removeDespiteEveryError([](const auto& temp) { temp.file("item"); }, {Call::open, Call::unlink});
  removeDespiteEveryError([](const auto& temp) { temp.link("item", temp / "bystander"); },
                          {Call::open, Call::unlink});
}

TEST(ManyErrors, FirstIsReported) {
  const TempDirectory temp;
  plantItem(temp);
  disturbance = [failure = EIO](Call call, const std::string&) mutable {
    return call == Call::unlink ? std::exchange(failure, EBUSY) : 0;
  };
  EXPECT_EQ(removeItem(temp / "item"), posixError(EIO));
  disturbance = nullptr;
}

}  // namespace wendle
