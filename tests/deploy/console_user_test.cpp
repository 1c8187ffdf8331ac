// What administrators put on their fleet, run as root on a Mac where pat sits, who may not write to
// /Applications.
#include <gtest/gtest.h>

#include <algorithm>

#include "deploy_mac.h"
#include "simulated_mac/verdict.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
using mac::SessionResult;
using mac::SimulatedMac;

const std::string uninstall = tools + "uninstall-for-console-user";
const std::string me = "uninstall-for-console-user: ";

std::string asScript(const Lines& command, const std::string& before = "") {
  std::string words;
  for (const std::string& word : command) words += "'" + word + "' ";
  return "#!/bin/sh\n" + before + "exec " + words + "\"$@\"\n";
}

// The tools as they are installed. `preview` is what the report says of a preview, each path ended by a NUL,
// and `verdict` what it says of a run.
void install(SimulatedMac& mac, const std::string& preview = "", const std::string& verdict = "{}") {
  installTools(mac);
  addExecutable(mac, tools + "WendleUninstaller", asScript(uninstallerCommand()));
  addExecutable(mac, tools + "wendle-uninstall-report", "#!/bin/sh\nexec /host/bin/cat \"/$1\"\n");
  mac.addFile("/preview", preview);
  mac.addFile("/run", verdict);
  mac.addDirectory("/var/run");
}

// Runs a line of shell.
SessionResult run(SimulatedMac& mac, const std::string& line, bool asRoot = true) {
  std::filesystem::permissions(mac.at("/Applications"), std::filesystem::perms{0555});
  SessionResult result = mac.run("/bin/sh", {"-c", line}, {.asRoot = asRoot});
  std::filesystem::permissions(mac.at("/Applications"), std::filesystem::perms{0755});
  return result;
}

TEST(ConsoleUserTest, HasTheClientTakenOutWholeWhateverTheCallerIsLike) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac::installClient(mac);
  install(mac);
  const std::string another = "[ $1 = run ] && /Library/WendleUninstaller/WendleUninstaller --updates\n";
  addExecutable(mac, tools + "wendle-uninstall-report", asScript(reportCommand(), another));
  const mac::Snapshot before = mac.snapshot();
  const SessionResult seen =
      run(mac,
          "umask 777; cd /proc/1; exec <&-; export PATH=/no TMPDIR=/no HOME=/no USER=kim "
          "LC_ALL=xx IFS=a ZDOTDIR=/no; exec /host/bin/zsh -f " +
              uninstall + " --hard");
  EXPECT_EQ(seen.outcome, "exit 0") << seen.out;
  EXPECT_NE(seen.out.find(R"("mode": "--hard")"), seen.out.npos) << "another run's: " << seen.out;
  EXPECT_NE(seen.out.find(R"("failed": [], "removedLater": ["file:///Applications/Wendle.app/", )"),
            seen.out.npos)
      << seen.out;
  EXPECT_EQ(std::ranges::count(seen.journal, "/usr/bin/sudo", &mac::ToolRun::tool), 3);
  EXPECT_EQ(std::ranges::count_if(
                seen.journal,
                [](const auto& run) { return !run.arguments.empty() && run.arguments[0] == "asuser"; }),
            3);
  EXPECT_TRUE(seen.err.starts_with(me + "deleted /Applications/Wendle.app as root.\n")) << seen.err;
  EXPECT_EQ(seen.err.find("left"), seen.err.npos) << seen.err;
  const mac::Verdict verdict = mac::judge(mac, {"--hard"}, before, seen.processes);
  EXPECT_EQ(verdict.outside, Lines{"added: /var/run/wendle-uninstaller.lock"});
  EXPECT_EQ(verdict.leftBehind, Lines{});
  const std::string preview = tools + "report-for-console-user preview --hard";
  EXPECT_EQ(mac.run("/bin/sh", {"-c", preview}, {.startsProcesses = false, .asRoot = true}).outcome, "exit 0")
      << "a management tool would uninstall for ever";
}

TEST(ConsoleUserTest, DeletesAsRootOnlyTheClientsApplications) {
  SimulatedMac mac = SimulatedMac::scratch();
  const std::string client = "com.wendle.DesktopClient";
  for (const char* copy :
       {"The client's", "Deeper/Wendle", "Line\nfeed", "Cut off", "Wendle/Copy", "Wendle/Deeper/Copy"})
    mac.addBundle(std::string("/Applications/") + copy + ".app", client);
  for (const char* copy : {"/Mine.app", "/Users/pat/Mine.app"}) mac.addBundle(copy, client);
  mac.addBundle("/Applications/Fabrikam Notes.app", "com.fabrikam.Notes");
  mac.addBundle("/Applications/Resembles.app", client + "X");
  for (const char* link : {"Link.app", "Wendle.app"})
    mac.addLink(std::string("/Applications/") + link, "/Users/pat/Mine.app");
  mac.addLink("/Applications/Borrowed.app/Contents", "/Users/pat/Mine.app/Contents");
  mac.addLink("/Applications/Lent.app/Contents/Info.plist", "/Users/pat/Mine.app/Contents/Info.plist");
  mac.addFile("/Applications/No.app/Contents/Info.plist", "no property list");
  const std::string info = mac.read("/Mine.app/Contents/Info.plist");
  for (const char* directory : {"", "/Applications"})
    mac.addFile(std::string(directory) + "/Contents/Info.plist", info);
  std::string named;
  for (const char* path :
       {"/The client's.app", "/Fabrikam Notes.app", "/Resembles.app", "/Deeper/Wendle.app",
        "/Wendle/Copy.app", "/Wendle/Deeper/Copy.app", "/Line\nfeed.app", "/Link.app", "/Borrowed.app",
        "/Lent.app", "/No.app", "/../Users/pat/Mine.app", "/./Lent.app", "/..", "/.", "/", "/None.app"})
    named += std::string("/Applications") + path + '\0';
  for (const char* path : {"/Users/pat/Mine.app", "Mine.app", "/", ""}) named += std::string(path) + '\0';
  named += "/Applications/Cut off.app";
  install(mac, named);
  const mac::Snapshot before = mac.snapshot();
  const SessionResult seen = run(mac, uninstall + " --soft");
  EXPECT_EQ(seen.outcome, "exit 0") << seen.err;
  Lines gone;  // without what lies in another
  for (const std::string& path : mac::difference(before, mac.snapshot()).removed) {
    if (gone.empty() || !path.starts_with(gone.back() + "/")) gone.push_back(path);
  }
  EXPECT_EQ(gone, (Lines{"/Applications/The client's.app", "/Applications/Wendle.app",  // a link, itself
                         "/Applications/Wendle/Copy.app"}));
}

// By a user who may write to /Applications, and by a link where the folder should be.
TEST(ConsoleUserTest, DeletesNothingThatWasPutInThePlaceOfAnother) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addBundle("/Applications/Bait.app", "com.wendle.DesktopClient");
  mac.addBundle("/Applications/Fabrikam Notes.app", "com.fabrikam.Notes");
  mac.addBundle("/Users/kim/Lent.app", "com.wendle.DesktopClient");
  mac.addLink("/Applications/Wendle", "/Users/kim");
  install(mac, std::string("/Applications/Bait.app") + '\0' + "/Applications/Wendle/Lent.app" + '\0');
  addExecutable(
      mac, tools + "WendleUninstaller",
      "#!/bin/sh\ncd /Applications && /host/bin/mv Bait.app /Users/pat && /host/bin/mv Fab* Bait.app\n");
  EXPECT_EQ(run(mac, "/host/bin/chmod 755 /Applications; " + uninstall + " --soft").err,
            me + "could not delete all of /Applications/Wendle/Lent.app as root.\n");
  EXPECT_TRUE(mac.exists("/Users/kim/Lent.app/Contents/Info.plist"));
  EXPECT_TRUE(mac.exists("/Applications/Bait.app/Contents/Info.plist"));

  mac.addFile("/Users/kim/Wendle.app");
  const std::string link = "cd / && /host/bin/mv Applications Apps && /host/bin/ln -s Users/kim Applications";
  const std::string refusal = me + "could not delete all of /Applications/Wendle.app as root.\n";
  EXPECT_TRUE(run(mac, link + "; " + uninstall + " --hard").err.ends_with(refusal));
  EXPECT_TRUE(mac.exists("/Users/kim/Wendle.app"));
}

TEST(ConsoleUserTest, LeavesWhatHoldsAnotherVolume) {
  SimulatedMac mac = SimulatedMac::scratch();
  install(mac);
  mac.addDirectory("/Applications/Wendle/Disk");
  const SessionResult seen = run(mac,
                                 "/host/bin/mount -t tmpfs -o mode=555 none /Applications/Wendle/Disk && "
                                 "echo theirs >/Applications/Wendle/Disk/file;" +
                                     uninstall + " --hard; /host/bin/cat /Applications/Wendle/Disk/file");
  EXPECT_EQ(seen.out, "{}\ntheirs\n");
  EXPECT_EQ(seen.err, me + "left /Applications/Wendle, for another volume is mounted in it.\n");
}

TEST(ConsoleUserTest, DeletesNothingAsRootForAUserWhoLeft) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addDirectory("/Applications/Wendle");
  install(mac);
  mac.setFault({.tool = "scutil", .run = 2, .kind = mac::FaultKind::exits, .number = 0});
  const SessionResult seen = run(mac, uninstall + " --full");
  EXPECT_EQ(seen.outcome + "\n" + seen.out + seen.err,
            "exit 3\n" + me + "the user left meanwhile, so nothing was deleted as root.\n");
  EXPECT_TRUE(mac.exists("/Applications/Wendle"));
}

TEST(ConsoleUserTest, TellsTheVerdictOrThatThereIsNone) {
  SimulatedMac mac = SimulatedMac::scratch();
  install(mac, "", "one");
  const std::string report = tools + "wendle-uninstall-report";
  const auto runShell = [&](const std::string& script, const std::string& line) {
    addExecutable(mac, report, "#!/bin/sh\n" + script);
    const SessionResult seen = run(mac, line);
    return seen.outcome + "\n" + seen.out + seen.err;
  };
  mac.addDirectory("/Applications/Wendle.app");
  EXPECT_EQ(runShell("echo one; exit 1", uninstall + " --updates"), "exit 1\none\n");
  EXPECT_TRUE(mac.exists("/Applications/Wendle.app"));
  EXPECT_EQ(runShell("exit 1", uninstall + " --updates"), "exit 2\n");
  EXPECT_EQ(runShell("echo one", uninstall + " --updates 2>&-"), "exit 0\none\n");
  EXPECT_EQ(runShell("echo one", uninstall + " --updates >/dev/full"),
            "exit 2\n" + me + "cannot write the verdict.\n");
  EXPECT_EQ(runShell("[ $1 = run ] && echo one || exit 2", uninstall + " --hard"),
            "exit 0\none\n" + me + "the report could not tell what else needs root.\n" + me +
                "deleted /Applications/Wendle.app as root.\n");
  EXPECT_EQ(runShell("echo \"$@\" $LC_ALL; exit 1",
                     "export LC_ALL=xx; " + tools + "report-for-console-user run --json"),
            "exit 1\nrun --json\n");
}

struct EndCase {
  std::string name;
  std::string line;  // of shell
  std::string outcome;
  std::string console = "pat 501";  // who sits at the Mac
  std::string verdict = "{}";
  bool isRoot = true;

  friend void PrintTo(const EndCase& c, std::ostream* out) { *out << c.name; }
};

// A copy of the tools from which something can be missing.
const std::string inCopy = "cd /tmp && /host/bin/cp " + tools + "* . && ";

class UntouchedTest : public testing::TestWithParam<EndCase> {};

TEST_P(UntouchedTest, ChangesNothingAndSaysWhy) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addDirectory("/Applications/Wendle");
  install(mac);
  mac.addFile(mac::consoleUserFile, GetParam().console);
  mac.addFile("/var/run/wendle-uninstaller.lock");
  const mac::Snapshot before = mac.snapshot();
  const SessionResult seen = run(mac, GetParam().line, GetParam().isRoot);
  EXPECT_EQ(seen.outcome, GetParam().outcome);
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(seen.err.find('\n'), seen.err.size() - 1) << seen.err;
  EXPECT_TRUE(mac.snapshot() == before);
}

INSTANTIATE_TEST_SUITE_P(
    Ends, UntouchedTest,
    testing::ValuesIn<EndCase>({
        {"AtTheLoginWindow", uninstall + " --hard", "exit 3", "loginwindow 501"},
        {"InTheSetupAssistant", uninstall + " --hard", "exit 3", "_mbsetupuser 248"},
        {"AsRoot", uninstall + " --hard", "exit 3", "root 0"},
        {"WithNobody", uninstall + " --hard", "exit 3", ""},
        {"WithNobodyToAsk", tools + "report-for-console-user leftovers", "exit 3", ""},
        {"BesideAnother",
         "exec /bin/zsh -fc 'zmodload zsh/system && zsystem flock /var/run/wendle-uninstaller.lock && " +
             uninstall + " --hard'",
         "exit 3"},
        {"ByAUser", uninstall + " --hard", "exit 2", "pat 501", "", false},
        {"AskedByAUser", tools + "report-for-console-user leftovers", "exit 2", "pat 501", "", false},
        {"WithoutTheUninstaller",
         inCopy + "/host/bin/chmod -x Wendle* && ./uninstall-for-console-user --hard", "exit 2"},
        {"WithABrokenUninstaller",
         inCopy + "echo '#!/no' >WendleUninstaller && ./uninstall-for-console-user --hard", "exit 2"},
        {"WithoutTheReport", inCopy + "/host/bin/rm wendle* && ./report-for-console-user leftovers",
         "exit 2"},
        {"WithAClosedOutput", uninstall + " --hard >&-", "exit 2"},
        {"WithoutAMode", uninstall, "exit 2"},
        {"WithTwoModes", uninstall + " --hard --soft", "exit 2"},
        {"WithAnUnknownMode", uninstall + " hard", "exit 2"},
    }),
    [](const auto& c) { return c.param.name; });
}  // namespace
}  // namespace wendle::test
