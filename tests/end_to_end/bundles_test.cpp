#include <algorithm>

#include "difference.h"

namespace wendle::test {
namespace {

const std::string agent = "com.wendle.DesktopClient.WendleAgent";
const std::string withExceptions = progress("Remove instances of Wendle w/ exceptions - started");
const std::string everyInstance = progress("Remove all instances of Wendle - started");
const Edit agentPermissions{"/usr/bin/tccutil [reset] [All] [" + agent + "] exit 64",
                            {"/usr/bin/tccutil [reset] [All] [" + agent + "] exit 0"}};

std::string deleted(const std::string& url) {
  return progress("Delete Folder - file://" + url + " - success");
}

// Copies of the agent at these places, which the index lists in the order of their paths.
std::function<void(SimulatedMac&)> copies(const Lines& paths) {
  return [=](SimulatedMac& mac) {
    for (const std::string& path : paths) mac.addBundle(path, agent);
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

void addCopiesEverywhere(SimulatedMac& mac) {
  for (const Lines& paths : {exempt, notExempt}) copies(paths)(mac);
  // What makes a safety net: a directory above the copy, but not in the root folder, and not a plain file.
  mac.addFolder("/_CCC SafetyNet");
  mac.addFolder(home + "/Clone/_CCC SafetyNet");
  mac.addFile(home + "/NoClone/_CCC SafetyNet");
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

const std::string several = "/Users/Shared/a\nb\n" + home + "/Documents\n/c\n.app";
const std::string outer = "/Applications/A.app";

INSTANTIATE_TEST_SUITE_P(
    Bundles, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"ExemptPlacesAreKept",
         "soft",
         addCopiesEverywhere,
         {after(withExceptions, deletedFolders(notExempt))},
         {agentPermissions},
         notExempt,
         exempt},
        {"NoPlaceIsExemptInFullMode",
         "full",
         addCopiesEverywhere,
         {after(everyInstance, deletedFolders(both(exempt, notExempt)))},
         {agentPermissions},
         both(exempt, notExempt)},
        {"LineFeedsInAPath",
         "soft",
         [](SimulatedMac& mac) {
           copies({outer, several})(mac);
           for (const Lines& lines : {Lines{"/Users/Shared/a", "/Users/Shared/a\nb"},
                                      {home + "/Documents/kept", outer + "\n/kept"}})
             for (const std::string& path : lines) mac.addFile(path);
         },
         {after(withExceptions, {deleted(outer + "/"),
                                 deleted("/Users/Shared/a%0Ab%0A" + home + "/Documents%0A/c%0A.app/")})},
         {agentPermissions},
         {outer, several},
         {"/Users/Shared/a", "/Users/Shared/a\nb", home + "/Documents/kept", outer + "\n/kept"}},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
