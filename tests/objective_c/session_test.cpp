// What is exported to Objective-C at work on the simulated Mac.
#include <gtest/gtest.h>

#include <array>
#include <regex>

#include "platform/linux/property_list_file.h"
#include "support/run_result.h"

namespace wendle::test {

static const std::string dockPlist = "/Users/pat/Library/Preferences/com.apple.dock.plist";
static const std::string folder = "/Users/pat/Tools & 100%";

// Somebody else's tile, with every kind of value a property list has.
static const std::string foreignTile = R"(<dict><key>GUID</key><integer>-9223372036854775808</integer>
  <key>tile-data</key><dict><key>book</key><data>AAH/gA==</data><key>file-label</key><string>Späße ""</string>
  <key>two</key><real>2</real><key>scale</key><real>0.1</real><key>mod</key><date>2026-11-21T07:40:12Z</date>
  <key>dark</key><true/><key>one</key><integer>1</integer>
  <key>list</key><array><false/><array/><dict/></array></dict></dict>)";

// GNUstep is told where to look for what macOS has of its own accord.
static mac::SimulatedMac macWithFoundation() {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac.addFile("/etc/passwd", "pat:x:501:20::/Users/pat:/bin/zsh\n");
  mac.addFile("/etc/GNUstep/GNUstep.conf",
              "GNUSTEP_USER_DEFAULTS_DIR=Library/Preferences\nGNUSTEP_USER_DIR_LIBRARY=Library\n"
              "GNUSTEP_LOCAL_USERS_DIR=/Users\nGNUSTEP_LOCAL_APPS=/Applications\n");
  mac.addDirectory(folder);
  const std::string tiles = "<key>persistent-others</key><array>" + foreignTile + "</array>";
  mac.addPropertyList(dockPlist, "<dict><key>same</key>" + foreignTile + tiles + "</dict>", true);
  return mac;
}

// The standard directories show in the log; GNUstep's name of one of them has no blank.
TEST(ExportedUninstaller, RunsTheWholeSequenceOfEachMode) {
  const std::string quitInOrder = "terminate 42, terminate 41, terminate 44, terminate 43, ";
  for (const auto& [name, method, requests] :
       std::vector<std::array<std::string, 3>>{{"updates", "runInUpdatesMode", "forceTerminate 43, "},
                                               {"soft", "runInSoftMode", quitInOrder},
                                               {"hard", "runInHardMode", quitInOrder},
                                               {"full", "runInFullMode", quitInOrder}}) {
    mac::SimulatedMac mac = macWithFoundation();
    const RunResult seen = runProbe(mac, "objective_c_tests", {"mode", method});
    EXPECT_EQ(seen.outcome + "\n" + seen.out, "exit 0\n" + requests + "/Users/pat\n") << name;
    const std::string log = joined(logIn(expectedLines("bare.txt", name)));
    EXPECT_EQ(joined(seen.log),
              std::regex_replace(log, std::regex("Application%20Support"), "ApplicationSupport"));
    EXPECT_EQ(joined(seen.journal), joined(journalIn(expectedLines("bare.txt", name))));
  }
}

static const std::string flag = "isChangingPersistenceOfShortcutInDock from ";
static const std::string upAndDown = flag + "0 to 1\n" + flag + "1 to 0\n";
static const std::string oneChange = "has 0\n" + upAndDown + "completion 1, flag 0, main thread 1\nhas 1\n";

TEST(ExportedDockShortcutManager, TellsObserversOfAChangeAndKeepsEveryKindOfValue) {
  mac::SimulatedMac mac = macWithFoundation();
  const PropertyList before = parsePropertyList(mac.read(dockPlist)).value().content;
  const RunResult seen = runProbe(mac, "objective_c_tests", {"change", folder});
  EXPECT_EQ(seen.outcome + "\n" + seen.out, "exit 0\n" + oneChange);
  EXPECT_EQ(joined(seen.journal), "/usr/bin/killall [Dock] exit 1\n");

  const PropertyList after = parsePropertyList(mac.read(dockPlist)).value().content;
  EXPECT_EQ(*after.find("same"), *before.find("same"));
  const auto& tiles = std::get<PropertyListArray>(after.find("persistent-others")->value);
  EXPECT_EQ(tiles.at(1), *before.find("same"));
  EXPECT_EQ(*tiles[0].find("tile-data")->find("book"), PropertyList{PropertyListData{"book" + folder}});
}

TEST(ExportedDockShortcutManager, TellsAnyInstancesObserversNothingWhenTheValueStays) {
  mac::SimulatedMac mac = macWithFoundation();
  EXPECT_EQ(runProbe(mac, "objective_c_tests", {"overlap", folder}).out,
            oneChange + "has 0\n" + upAndDown + "has 0\n");
}

}  // namespace wendle::test
