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

void cutAfter(Lines& lines, const std::string& last) {
  const auto found = std::find(lines.begin(), lines.end(), last);
  EXPECT_TRUE(last.empty() || found != lines.end()) << last;
  lines.erase(last.empty() ? lines.begin() : found + 1, lines.end());
}

}  // namespace

Edit after(const std::string& line, Lines added) {
  added.insert(added.begin(), line);
  return {line, added};
}

Edit before(const std::string& line, Lines added) {
  added.push_back(line);
  return {line, added};
}

std::function<void(SimulatedMac&)> faults(const std::vector<Fault>& faults) {
  return [faults](SimulatedMac& mac) {
    for (const Fault& fault : faults) mac.setFault(fault);
  };
}

TEST_P(DifferenceTest, ShowsInItsLinesAndInNoOther) {
  const Difference& d = GetParam();
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile(bystander, "do not touch");
  mac.addDockTile("Downloads", "file:///Users/pat/Downloads/");
  mac.addKeychainItem("Other");
  d.arrange(mac);
  const Observed seen = observe(mac, {"--" + d.mode});

  Lines log = edited(expectedLines("bare.txt", d.mode + " log"), d.log);
  Lines tools = edited(expectedLines("bare.txt", d.mode + " tools"), d.tools);
  if (!d.cause.empty()) {
    cutAfter(log, d.lastLogLine);
    cutAfter(tools, d.lastTool);
    log.push_back("[1] module: Ended by an uncaught exception: " + d.cause +
                  " - newest log file: file:///Users/pat/Library/Logs/Wendle/LOGFILE");
  }
  EXPECT_EQ(joined(seen.log), joined(log));
  EXPECT_EQ(joined(seen.journal), joined(tools));
  EXPECT_EQ(seen.outcome, d.cause.empty() ? "exit 0" : "signal 6");
  for (const std::string& path : d.gone) EXPECT_FALSE(mac.exists(path)) << path;
  for (const std::string& path : d.kept) EXPECT_TRUE(mac.exists(path)) << path;
  EXPECT_EQ(mac.read(bystander), "do not touch");
}

}  // namespace wendle::test
