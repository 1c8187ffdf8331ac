#include "difference.h"

namespace wendle::test {
namespace {

const std::string noItem = progress("Remove dock folder - no dock item found");
const std::string dockPlist = home + "/Library/Preferences/com.apple.dock.plist";
const std::string defaults = "/usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 0";
const Edit removing{noItem, {progress("Remove dock folder - removing dock item")}};

// The runs that follow a tile found: the edit, which ends with `status`, and the restart of a Dock that does
// not run.
Edit edits(const std::string& index, const std::string& status) {
  const std::string deletion = "Delete persistent-others:" + index;
  return after(
      defaults,
      {"/bin/zsh [-c] [/usr/libexec/PlistBuddy -c '" + deletion + "' " + dockPlist + "] exit " + status,
       "/usr/libexec/PlistBuddy [-c] [" + deletion + "] [" + dockPlist + "] exit " + status,
       "/bin/zsh [-c] [killall Dock] exit 1", "/usr/bin/killall [Dock] exit 1"});
}

// Tiles behind the one for Downloads, by their URLs.
std::function<void(SimulatedMac&)> tiles(const Lines& urls) {
  return [=](SimulatedMac& mac) {
    for (const std::string& url : urls) mac.addDockTile("Tile", url);
  };
}

const std::string tile = "file:///Users/pat/Wendle/";

INSTANTIATE_TEST_SUITE_P(
    Dock, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"TwoTilesRunTogetherIntoOneNumber",
         "soft",
         tiles({tile, "file:///Users/pat/Movies/", tile}),
         {removing},
         {edits("23", "1")}},
        {"ATileWithoutUrlDoesNotCount", "soft", tiles({"", tile}), {removing}, {edits("1", "0")}},
        {"ANameInLowerCaseIsAnother", "soft", tiles({"file:///Users/pat/wendle/"}), {}},
        {"NoList",
         "soft",
         [](SimulatedMac& mac) { mac.addPropertyList(dockPlist, "<dict></dict>"); },
         {{noItem,
           {"[4] uninstaller: Invalid dock item location: DEFAULTS The domain/default pair of "
            "(com.apple.dock, persistent-others) does not exist"}}},
         {{defaults, {"/usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 1"}}}},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
