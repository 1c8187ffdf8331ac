// The Dock shortcut manager at work on the simulated Mac's Dock preferences.
#include <gtest/gtest.h>

#include <regex>

#include "platform/linux/property_list_file.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
using mac::SimulatedMac;

const std::string dockPlist = "/Users/pat/Library/Preferences/com.apple.dock.plist";
const std::string folder = "/Users/pat/Tools & 100%";
const std::string folderUrl = "file:///Users/pat/Tools%20&%20100%25/";
const std::string changeLines = "flag 1\nflag 0\n";

// Somebody else's tile, with every kind of value a property list has.
const char* const foreignTile = R"(<dict><key>GUID</key><integer>-4711</integer><key>tile-data</key><dict>
  <key>book</key><data>AAH/gA==</data><key>file-label</key><string>Späße</string><key>scale</key><real>0.1</real>
  <key>mod</key><date>2026-11-21T07:40:12Z</date><key>dark</key><true/><key>one</key><integer>1</integer>
  <key>list</key><array><false/><array/></array></dict><key>tile-type</key><string>spacer-tile</string></dict>)";

// With a number of some kind in it.
std::string folderTile(const std::string& url, const std::string& guid,
                       const std::string& number = "<true/>") {
  return "<dict><key>GUID</key><string>" + guid + "</string><key>count</key>" + number +
         "<key>tile-data</key><dict><key>file-data</key><dict><key>_CFURLString</key><string>" +
         std::regex_replace(url, std::regex("&"), "&amp;") + "</string></dict></dict></dict>";
}

void setTiles(SimulatedMac& mac, const std::string& tiles) {
  mac.addPropertyList(
      dockPlist,
      "<dict><key>autohide</key><true/><key>persistent-others</key><array>" + tiles + "</array></dict>",
      true);
}

PropertyList dock(const SimulatedMac& mac) {
  const auto file = parsePropertyList(mac.read(dockPlist));
  EXPECT_TRUE(file && file->format == PropertyListFormat::binary);
  return file ? file->content : PropertyList();
}

PropertyListArray tiles(const SimulatedMac& mac) {
  const PropertyList content = dock(mac);
  EXPECT_NE(content.find("autohide"), nullptr) << "a key of the Dock's got lost";
  const PropertyList* others = content.find("persistent-others");
  return others == nullptr ? PropertyListArray() : std::get<PropertyListArray>(others->value);
}

std::string takeText(PropertyList& tile, const std::string& key) {
  auto& dictionary = std::get<PropertyListDictionary>(tile.value);
  std::string text = std::get<std::string>(dictionary.at(key).value);
  dictionary.erase(key);
  return text;
}

RunResult run(SimulatedMac& mac, const Lines& arguments) {
  mac.addDirectory(folder);
  return runProbe(mac, "dock_shortcut_probe", arguments);
}

const std::string killedDock = "/usr/bin/killall [Dock] exit 1\n";

// The folder's first tile makes way for the new one, and so does every tile equal to it: 1, 1.0 and true are
// one number.
TEST(DockShortcutTest, AddsATileInFrontAndKeepsTheOthersAsTheyAre) {
  SimulatedMac mac = SimulatedMac::scratch();
  const std::string movies = "/Users/pat/Movies";
  mac.addDirectory(movies);
  setTiles(mac, foreignTile + folderTile(folderUrl, "A", "<integer>1</integer>") +
                    folderTile(folderUrl, "B") + folderTile(folderUrl, "A", "<real>1</real>") +
                    folderTile(folderUrl, "A", "<true/>") + folderTile(folderUrl, "A", "<real>1.5</real>"));
  const PropertyListArray before = tiles(mac);
  const RunResult seen = run(mac, {"has", movies, "add", movies, "has", movies, "add", folder + "/"});

  EXPECT_EQ(seen.outcome + "\n" + seen.out, "exit 0\nhas 0\n" + changeLines + "has 1\n" + changeLines);
  EXPECT_EQ(joined(seen.journal), killedDock + killedDock);
  PropertyListArray after = tiles(mac);
  ASSERT_EQ(after.size(), 5U);
  EXPECT_EQ(after[2], before[0]);
  EXPECT_EQ(after[3], before[2]);
  EXPECT_EQ(after[4], before[5]);
  const std::string guid = takeText(after[0], "GUID");
  EXPECT_TRUE(std::regex_match(
      guid, std::regex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}")))
      << guid;
  EXPECT_NE(takeText(after[1], "GUID"), guid);
  const auto integer = [](std::int64_t number) { return PropertyList{number}; };
  const PropertyListDictionary fileData{{"_CFURLString", {folderUrl}}, {"_CFURLStringType", integer(15)}};
  const PropertyListDictionary tileData{
      {"arrangement", integer(2)}, {"book", {PropertyListData{"book" + folder}}}, {"displayas", integer(1)},
      {"file-data", {fileData}},   {"file-label", {std::string("Wendle")}},       {"file-type", integer(2)},
      {"showas", integer(2)}};
  const PropertyListDictionary tile{{"tile-data", {tileData}},
                                    {"tile-type", {std::string("directory-tile")}}};
  EXPECT_EQ(after[0], PropertyList{tile});
}

TEST(DockShortcutTest, RemovesOnlyWhatMatchesToTheLetter) {
  SimulatedMac mac = SimulatedMac::scratch();
  setTiles(mac, folderTile("file:///Users/pat/tools%20&%20100%25/", "case") + folderTile(folderUrl, "A") +
                    folderTile("file:///Users/pat/Tools%20%26%20100%25/", "escapes"));
  const PropertyListArray before = tiles(mac);
  EXPECT_EQ(run(mac, {"remove", folder}).outcome, "exit 0");
  EXPECT_EQ(tiles(mac), (PropertyListArray{before[0], before[2]}));
}

TEST(DockShortcutTest, WritesTheListAndRestartsTheDockAlsoWhenThereIsNothingToRemove) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addPropertyList(dockPlist, "<dict><key>autohide</key><true/></dict>", true);
  const RunResult seen = run(mac, {"remove", folder});
  EXPECT_EQ(joined(seen.journal), killedDock);
  const PropertyList content = dock(mac);
  ASSERT_NE(content.find("persistent-others"), nullptr);
  EXPECT_EQ(tiles(mac), PropertyListArray());
}

TEST(DockShortcutTest, LowersTheFlagJustBeforeTheCompletion) {
  SimulatedMac mac = SimulatedMac::scratch();
  setTiles(mac, "");
  const RunResult seen = run(mac, {"add-and-wait", folder});
  EXPECT_EQ(seen.out, changeLines + "completion 1, flag 0, in time\n");
  EXPECT_EQ(tiles(mac).size(), 1U);
}

TEST(DockShortcutTest, EndsTheProcessRatherThanAddAFolderThatIsNotThere) {
  SimulatedMac mac = SimulatedMac::scratch();
  setTiles(mac, foreignTile);
  const std::string before = mac.read(dockPlist);
  const RunResult seen = run(mac, {"add", "/Users/pat/Nothing"});
  EXPECT_EQ(seen.outcome, "signal 6");
  EXPECT_EQ(joined(seen.journal), "");
  EXPECT_EQ(mac.read(dockPlist), before);
}

TEST(DockShortcutTest, RefusesToReplacePreferencesThatItCannotRead) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile(dockPlist, "no property list");
  EXPECT_EQ(run(mac, {"add", folder}).outcome, "exit 0");
  EXPECT_EQ(mac.read(dockPlist), "no property list");
}
}  // namespace
}  // namespace wendle::test
