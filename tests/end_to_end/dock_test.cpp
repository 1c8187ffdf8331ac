#include "difference.h"

namespace wendle::test {
namespace {

const std::string started = progress("Remove dock folder - started");
const std::string noItem = progress("Remove dock folder - no dock item found");
const std::string dockPlist = library + "/Preferences/com.apple.dock.plist";
const std::string search =
    R"(/bin/zsh [-c] [defaults read com.apple.dock persistent-others | grep _CFURLString\" | awk "/Wendle/ {print NR}"] exit 0)";
const std::string defaults = "/usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 0";
const Edit removing{noItem, {progress("Remove dock folder - removing dock item")}};

std::string editCommand(const std::string& index) {
  return "/bin/zsh [-c] [/usr/libexec/PlistBuddy -c 'Delete persistent-others:" + index + "' " + dockPlist +
         "] exit ";
}

// The runs that follow a tile found: the edit, which ends with `status`, and the restart of a Dock that does
// not run.
Edit edits(const std::string& index, const std::string& status) {
  return after(defaults, {editCommand(index) + status,
                          "/usr/libexec/PlistBuddy [-c] [Delete persistent-others:" + index + "] [" +
                              dockPlist + "] exit " + status,
                          "/bin/zsh [-c] [killall Dock] exit 1", "/usr/bin/killall [Dock] exit 1"});
}

// Tiles behind the one for Downloads, by their URLs.
std::function<void(SimulatedMac&)> tiles(const Lines& urls, const std::vector<Fault>& misbehaviour = {}) {
  return [=](SimulatedMac& mac) {
    for (const std::string& url : urls) mac.addDockTile("Tile", url);
    faults(misbehaviour)(mac);
  };
}

const std::string tile = "file:///Users/pat/Wendle/";

INSTANTIATE_TEST_SUITE_P(
    Dock, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"OneTile", "soft", tiles({tile, "file:///Users/pat/Movies/"}), {removing}, {edits("1", "0")}},
        {"TwoTilesRunTogetherIntoOneNumber",
         "soft",
         tiles({tile, "file:///Users/pat/Movies/", tile}),
         {removing},
         {edits("23", "1")}},
        {"ATileWithoutUrlDoesNotCount", "soft", tiles({"", tile}), {removing}, {edits("1", "0")}},
        {"ANameInLowerCaseIsAnother", "soft", tiles({"file:///Users/pat/wendle/"}), {}},
        {"MissingDefaults",
         "soft",
         faults({{"defaults"}}),
         {{noItem, {failure("Invalid dock item location: zsh:1: command not found: defaults")}}},
         {{defaults, {}}}},
        {"NoList",
         "soft",
         [](SimulatedMac& mac) { mac.addPropertyList(dockPlist, "<dict></dict>"); },
         {{noItem,
           {failure("Invalid dock item location: DEFAULTS The domain/default pair of (com.apple.dock, "
                    "persistent-others) does not exist")}}},
         {{defaults, {"/usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 1"}}}},
        {"MissingPlistBuddyAndKillall",
         "soft",
         tiles({tile}, {{"PlistBuddy"}, {"killall"}}),
         {removing},
         {after(defaults, {editCommand("1") + "127", "/bin/zsh [-c] [killall Dock] exit 127"})}},
        {"MissingShell",
         "soft",
         faults({{"zsh"}}),
         {},
         {},
         {},
         {},
         cannotStart("/bin/zsh"),
         started,
         "/usr/bin/tccutil [reset] [All] [com.wendle.DesktopClient.WendleExtension] exit 64"},
        {"AnswerThatIsNoText",
         "soft",
         faults({{"zsh", 1, FaultKind::notUtf8}}),
         {},
         {},
         {},
         {},
         R"(the output of `defaults read com.apple.dock persistent-others | grep _CFURLString\\" | awk "/Wendle/ {print NR}"` is not UTF-8)",
         started,
         defaults},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
