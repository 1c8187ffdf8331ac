#include "difference.h"

#include <algorithm>

namespace wendle::test {
namespace {

const std::string bystander = home + "/Documents/letter.txt";

Lines edited(Lines lines, const Edits& edits) {
  for (const auto& [line, replacement] : edits) {
    const auto found = std::find(lines.begin(), lines.end(), line);
    if (found == lines.end()) {
      ADD_FAILURE() << "nothing to replace: " << line;
    } else {
      lines.insert(lines.erase(found), replacement.begin(), replacement.end());
    }
  }
  return lines;
}

}  // namespace

Edit after(const std::string& line, Lines added) {
  added.insert(added.begin(), line);
  return {line, added};
}

TEST_P(DifferenceTest, ShowsInItsLinesAndInNoOther) {
  const Difference& d = GetParam();
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile(bystander, "do not touch");
  mac.addDockTile("Downloads", "file:///Users/pat/Downloads/");
  mac.addKeychainItem("Other");
  d.arrange(mac);
  const RunResult seen = runUninstaller(mac, {"--" + d.mode});
  const Lines expected = expectedLines("bare.txt", d.mode);

  EXPECT_EQ(seen.outcome, "exit 0");
  EXPECT_EQ(joined(seen.log), joined(edited(logIn(expected), d.log)));
  EXPECT_EQ(joined(seen.journal), joined(edited(journalIn(expected), d.tools)));
  for (const std::string& path : d.gone) EXPECT_FALSE(mac.exists(path)) << path;
  for (const std::string& path : d.kept) EXPECT_TRUE(mac.exists(path)) << path;
  EXPECT_EQ(mac.read(bystander), "do not touch");
}

}  // namespace wendle::test
