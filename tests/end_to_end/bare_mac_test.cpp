// Each thing that changes what a mode does, alone on a Mac without the client.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <regex>
#include <sstream>
#include <utility>

#include "base/unique_fd.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
using mac::home;
using mac::SimulatedMac;

// A line, and the lines that replace it.
using Edit = std::pair<std::string, Lines>;
using Edits = std::vector<Edit>;

// One thing differs from a Mac without the client: how the lines of a run differ then; no other line may.
struct BareMacCase {
  std::string name;
  std::string mode;
  std::function<void(SimulatedMac&)> arrange;
  Edits edits;
  Lines gone = {};  // what was arranged and must not be there afterwards
  Lines kept = {};  // and what must be

  friend void PrintTo(const BareMacCase& c, std::ostream* out) { *out << c.name; }
};

std::string progress(const std::string& text) { return "[1] uninstaller: " + text; }

Edit after(const std::string& line, Lines added) {
  added.insert(added.begin(), line);
  return {line, added};
}

class BareMacTest : public testing::TestWithParam<BareMacCase> {};

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

TEST_P(BareMacTest, DiffersInTheLinesOfTheCaseAndInNoOther) {
  const BareMacCase& c = GetParam();
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile(bystander, "do not touch");
  mac.addDockTile("Downloads", "file:///Users/pat/Downloads/");
  mac.addKeychainItem("Other");
  c.arrange(mac);
  const RunResult seen = runUninstaller(mac, {"--" + c.mode});

  EXPECT_EQ(seen.outcome, "exit 0");
  EXPECT_EQ(joined(seen.sequence), joined(edited(expectedLines("bare.txt", c.mode), c.edits)));
  for (const std::string& path : c.gone) EXPECT_FALSE(mac.exists(path)) << path;
  for (const std::string& path : c.kept) EXPECT_TRUE(mac.exists(path)) << path;
  EXPECT_EQ(mac.read(bystander), "do not touch");
}

std::string toName(const testing::TestParamInfo<BareMacCase>& info) { return info.param.name; }

const std::string agent = "com.wendle.DesktopClient.WendleAgent";
const std::string search = "> /usr/bin/mdfind [kMDItemCFBundleIdentifier == " + agent + "] exit 0";
const Edit agentPermissions{"> /usr/bin/tccutil [reset] [All] [" + agent + "] exit 64",
                            {"> /usr/bin/tccutil [reset] [All] [" + agent + "] exit 0"}};

std::string deleted(const std::string& url) {
  return progress("Delete Folder - file://" + url + " - success");
}

// Copies of the agent at these places, which the index lists in the order of their paths.
std::function<void(SimulatedMac&)> copies(const Lines& places) {
  return [=](SimulatedMac& mac) {
    for (const std::string& path : places) mac.addBundle(path, agent);
  };
}

// Paths parted by blanks and line ends, with ~ for the home directory.
Lines paths(const std::string& text) {
  std::istringstream words(std::regex_replace(text, std::regex("~"), home));
  return {std::istream_iterator<std::string>(words), {}};
}

// The number behind .wrp must be plain and have 64 bits; the copy itself can be what is exempt.
const std::string exemptPaths = R"(
  /Volumes/Backup/A.app /builds/a.wrp8 /builds/x.wrp-2/A.app /builds/x.wrp0/A.app /builds/x.wrp7/deep/A.app
  /builds/x.wrp9223372036854775807/A.app ~/Build/DerivedData/A.app ~/Clone/deep/A.app ~/Held.app
  ~/Old.BackupDB/deep/A.app ~/Old/A.backupdb ~/Old/VolumesOfPat/A.app
)";
const std::string otherPaths = R"(
  /A.app /builds/.wrp6/A.app /builds/x.wrp+1/A.app /builds/x.wrp-0/A.app /builds/x.wrp/x.wxp7/A.app
  /builds/x.wrp07/A.app /builds/x.wrp5.old/A.app /builds/x.wrp99999999999999999999/A.app
  /builds/x.wrp1x/A.app /builds/x.wrpx/A.app ~/Build/DerivedDataOld/A.app ~/Build/OldDerivedData/A.app
  ~/Capital.wrp7/A.app ~/NoClone/deep/A.app ~/Old/.backupdb/A.app ~/Old/backupdb/A.app
  ~/Old/volumes/A.app ~/Old/x.backupdb.old/A.app ~/Old/x.backupdb2/A.app)";
const Lines exempt = paths(exemptPaths), notExempt = paths(otherPaths),
            everywhere = paths(exemptPaths + otherPaths);

void addCopiesEverywhere(SimulatedMac& mac) {
  copies(everywhere)(mac);
  // What makes a safety net: a directory above the copy, but not in the root folder, and not a plain file.
  mac.addDirectory("/_CCC SafetyNet");
  mac.addDirectory(home + "/Clone/_CCC SafetyNet");
  mac.addDirectory(home + "/Held.app/_CCC SafetyNet");
  mac.addFile(home + "/NoClone/_CCC SafetyNet");
}

Lines deletedFolders(Lines places) {
  std::sort(places.begin(), places.end());
  for (std::string& path : places) path = deleted(path + "/");
  return places;
}

std::string gone(const std::string& url) {
  return "[error] uninstaller: Delete Folder - file://" + url +
         ": Error Domain=NSPOSIXErrorDomain Code=2 \"No such file or directory\"";
}

// Containers in one another, together too deep for a path.
constexpr int nestedContainers = 25;
const std::string containerName = "com.wendle." + std::string(200, 'x');

void addNestedContainers(SimulatedMac& mac) {
  UniqueFd level(::open(mac.at(home + "/Library/Containers").c_str(), O_RDONLY | O_DIRECTORY));
  for (int i = 0; i < nestedContainers; ++i) {
    ::mkdirat(level.get(), containerName.c_str(), S_IRWXU);
    level.reset(::openat(level.get(), containerName.c_str(), O_RDONLY | O_DIRECTORY));
  }
}

Lines goneWithTheFirst() {
  Lines lines;
  std::string url = home + "/Library/Containers/" + containerName + "/";
  for (lines = {deleted(url)}; lines.size() < nestedContainers;) {
    url += containerName + "/";
    lines.push_back(gone(url));
  }
  return lines;
}

const std::string several = "/Users/Shared/a\nb\n" + home + "/Documents\n/c\n.app";
const std::string outer = "/Applications/A.app";

INSTANTIATE_TEST_SUITE_P(
    Bundles, BareMacTest,
    testing::ValuesIn<BareMacCase>({
        {"ExemptPlacesAreKept",
         "soft",
         addCopiesEverywhere,
         {agentPermissions, after(search, deletedFolders(notExempt))},
         notExempt,
         exempt},
        {"NoPlaceIsExemptInFullMode",
         "full",
         addCopiesEverywhere,
         {agentPermissions, after(search, deletedFolders(everywhere))},
         everywhere},
        {"NestedContainersGoWithTheFirst",
         "soft",
         addNestedContainers,
         {after(progress("Remove folder containers - started"), goneWithTheFirst())},
         {home + "/Library/Containers/" + containerName}},
        {"ACopyInACopyIsGoneWithIt",
         "soft",
         copies({outer, outer + "/Inner.app"}),
         {agentPermissions, after(search, {deleted(outer + "/"), gone(outer + "/Inner.app")})}},
        {"LineFeedsInAPath",
         "soft",
         [](SimulatedMac& mac) {
           copies({outer, several})(mac);
           for (const Lines& lines : {Lines{"/Users/Shared/a", "/Users/Shared/a\nb"},
                                      {home + "/Documents/kept", outer + "\n/kept"}})
             for (const std::string& path : lines) mac.addFile(path);
         },
         {agentPermissions, after(search, {deleted(outer + "/"), deleted("/Users/Shared/a%0Ab%0A" + home +
                                                                         "/Documents%0A/c%0A.app/")})},
         {outer, several},
         {"/Users/Shared/a", "/Users/Shared/a\nb", home + "/Documents/kept", outer + "\n/kept"}},
    }),
    toName);

const std::string noItem = progress("Remove dock folder - no dock item found");
const std::string dockPlist = home + "/Library/Preferences/com.apple.dock.plist";
const std::string defaults = "> /usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 0";

// The runs that follow a tile found: the edit, which ends with `status`, and the restart of a Dock that does
// not run.
Edit removal(const std::string& index, const std::string& status) {
  const std::string deletion = "Delete persistent-others:" + index;
  return {noItem,
          {progress("Remove dock folder - removing dock item"),
           "> /bin/zsh [-c] [/usr/libexec/PlistBuddy -c '" + deletion + "' " + dockPlist + "] exit " + status,
           "> /usr/libexec/PlistBuddy [-c] [" + deletion + "] [" + dockPlist + "] exit " + status,
           "> /bin/zsh [-c] [killall Dock] exit 1", "> /usr/bin/killall [Dock] exit 1"}};
}

// Tiles behind the one for Downloads, by their URLs.
std::function<void(SimulatedMac&)> tiles(const Lines& urls) {
  return [=](SimulatedMac& mac) {
    for (const std::string& url : urls) mac.addDockTile("Tile", url);
  };
}

const std::string tile = "file:///Users/pat/Wendle/";

INSTANTIATE_TEST_SUITE_P(
    Dock, BareMacTest,
    testing::ValuesIn<BareMacCase>({
        {"TwoTilesRunTogetherIntoOneNumber",
         "soft",
         tiles({tile, "file:///Users/pat/Movies/", tile}),
         {removal("23", "1")}},
        {"ATileWithoutUrlDoesNotCount", "soft", tiles({"", tile}), {removal("1", "0")}},
        {"ANameInLowerCaseIsAnother", "soft", tiles({"file:///Users/pat/wendle/"}), {}},
        {"NoList",
         "soft",
         [](SimulatedMac& mac) { mac.addPropertyList(dockPlist, "<dict></dict>"); },
         {{defaults, {"> /usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 1"}},
          {noItem,
           {"[4] uninstaller: Invalid dock item location: DEFAULTS The domain/default pair of "
            "(com.apple.dock, persistent-others) does not exist"}}}},
        {"ALongComplaint",
         "soft",
         [](SimulatedMac& mac) {
           mac.setFault({"defaults", 1, mac::FaultKind::exits, 1, std::string(70'000, 'x')});
         },
         {{defaults, {"> /usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 1"}},
          {noItem, {"[4] uninstaller: Invalid dock item location: " + std::string(65'536, 'x')}}}},
    }),
    toName);
}  // namespace
}  // namespace wendle::test
