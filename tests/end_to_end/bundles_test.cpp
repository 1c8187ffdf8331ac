#include <algorithm>

#include "difference.h"

namespace wendle::test {
namespace {

const std::string agent = "com.wendle.DesktopClient.WendleAgent";
const std::string withExceptions = progress("Remove instances of Wendle w/ exceptions - started");
const std::string everyInstance = progress("Remove all instances of Wendle - started");
const std::string agentSearch = "/usr/bin/mdfind [kMDItemCFBundleIdentifier == " + agent + "] exit ";
const Edit agentPermissions{"/usr/bin/tccutil [reset] [All] [" + agent + "] exit 64",
                            {"/usr/bin/tccutil [reset] [All] [" + agent + "] exit 0"}};

std::string deleted(const std::string& url) {
  return progress("Delete Folder - file://" + url + " - success");
}
std::string absent(const std::string& url) { return error("Delete Folder - file://" + url + noSuchFile); }

// Copies of the agent at these places, which the index lists in the order of their paths.
std::function<void(SimulatedMac&)> copies(const Lines& paths, const std::vector<Fault>& misbehaviour = {}) {
  return [=](SimulatedMac& mac) {
    for (const std::string& path : paths) mac.addBundle(path, agent);
    faults(misbehaviour)(mac);
  };
}

const Lines exempt{"/Volumes/Backup/A.app",     "/builds/x.wrp-2/A.app",
                   "/builds/x.wrp7/deep/A.app", home + "/Build/DerivedData/A.app",
                   home + "/Clone/deep/A.app",  home + "/Old.BackupDB/deep/A.app",
                   home + "/Old/Volumes/A.app"};
const Lines notExempt{"/A.app",
                      "/builds/x.wrp/A.app",
                      "/builds/x.wrp07/A.app",
                      "/builds/x.wrpx/A.app",
                      home + "/Build/DerivedDataOld/A.app",
                      home + "/Capital.wrp7/A.app",
                      home + "/NoClone/deep/A.app",
                      home + "/Old/.backupdb/A.app",
                      home + "/Old/volumes/A.app",
                      home + "/Old/x.backupdb2/A.app"};

// What makes a safety net: a directory above the copy, but not in the root folder, and not a plain file.
void addSafetyNets(SimulatedMac& mac) {
  mac.addFolder("/_CCC SafetyNet");
  mac.addFolder(home + "/Clone/_CCC SafetyNet");
  mac.addFile(home + "/NoClone/_CCC SafetyNet");
}

std::function<void(SimulatedMac&)> copiesEverywhere() {
  return [](SimulatedMac& mac) {
    copies(exempt)(mac);
    copies(notExempt)(mac);
    addSafetyNets(mac);
  };
}

Lines deletedFolders(Lines paths) {
  std::sort(paths.begin(), paths.end());
  for (std::string& path : paths) path = deleted(path + "/");
  return paths;
}

Lines both(Lines some, const Lines& others) {
  some.insert(some.end(), others.begin(), others.end());
  return some;
}

const std::string odd = home + "/My Apps; 100%/Wendl\xc3\xa9 #1?.app";
const std::string several = "/Users/Shared/a\nb\n" + home + "/Documents\n/c\n.app";
const std::string outer = "/Applications/A.app";
const std::string inner = outer + "/Contents/A.app";

INSTANTIATE_TEST_SUITE_P(
    Bundles, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"ExemptPlacesAreKept",
         "soft",
         copiesEverywhere(),
         {after(withExceptions, deletedFolders(notExempt))},
         {agentPermissions},
         notExempt,
         exempt},
        {"NoPlaceIsExemptInFullMode",
         "full",
         copiesEverywhere(),
         {after(everyInstance, deletedFolders(both(exempt, notExempt)))},
         {agentPermissions},
         both(exempt, notExempt)},
        {"AnOddName",
         "soft",
         copies({odd}),
         {after(withExceptions, {deleted(home + "/My%20Apps%3B%20100%25/Wendl%C3%A9%20%231%3F.app/")})},
         {agentPermissions},
         {odd}},
        {"LineFeedsInAPath",
         "soft",
         [](SimulatedMac& mac) {
           copies({outer, several})(mac);
           for (const Lines& lines :
                {Lines{"/Users/Shared/a", "/Users/Shared/a\nb"}, {home + "/Documents/kept"}})
             for (const std::string& path : lines) mac.addFile(path);
         },
         {after(withExceptions, {deleted(outer + "/"),
                                 deleted("/Users/Shared/a%0Ab%0A" + home + "/Documents%0A/c%0A.app/")})},
         {agentPermissions},
         {outer, several},
         {"/Users/Shared/a", "/Users/Shared/a\nb", home + "/Documents/kept"}},
        {"OneInsideAnotherIsGoneWithIt",
         "soft",
         copies({outer, inner}),
         {after(withExceptions, {deleted(outer + "/"), absent(inner)})},
         {agentPermissions},
         {outer}},
        {"FailingIndex",
         "soft",
         copies({outer}, {{"mdfind", 1, FaultKind::exits, 1}}),
         {},
         {agentPermissions, Edit{agentSearch + "0", {agentSearch + "1"}}},
         {},
         {outer}},
        {"IndexThatAnswersNoText",
         "soft",
         copies({outer}, {{"mdfind", 1, FaultKind::notUtf8}}),
         {},
         {agentPermissions},
         {},
         {outer}},
        {"MissingIndex",
         "soft",
         faults({{"mdfind"}}),
         {},
         {},
         {},
         {},
         cannotStart("/usr/bin/mdfind"),
         withExceptions,
         "/usr/bin/defaults [read] [com.apple.dock] [persistent-others] exit 0"},
    }),
    nameOf);

const std::string containers = library + "/Containers";

INSTANTIATE_TEST_SUITE_P(
    Containers, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"DirectoriesByNameAtAnyDepth",
         "soft",
         [](SimulatedMac& mac) {
           for (const char* folder : {"/com.wendle.a/Data/com.wendle.b", "/com.other/.hidden/com.wendle.c d",
                                      "/Com.wendle.x", "/com.wendleX", "/my.com.wendle.y"}) {
             mac.addFolder(containers + folder);
           }
           mac.addFile(containers + "/com.wendle.file");
           mac.addLink(containers + "/com.wendle.link", home + "/Documents");
           mac.addLink(containers + "/com.wendle.a/Documents", home + "/Documents");
         },
         {after(progress("Remove folder containers - started"),
                {deleted(containers + "/com.other/.hidden/com.wendle.c%20d/"),
                 deleted(containers + "/com.wendle.a/"),
                 absent(containers + "/com.wendle.a/Data/com.wendle.b/")})},
         {},
         {containers + "/com.wendle.a", containers + "/com.other/.hidden/com.wendle.c d"},
         {containers + "/com.other/.hidden", containers + "/Com.wendle.x", containers + "/com.wendleX",
          containers + "/my.com.wendle.y", containers + "/com.wendle.file", containers + "/com.wendle.link"}},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
