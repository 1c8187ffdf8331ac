// wendle-uninstall-report on the logs of real runs, and on logs as a run that went wrong leaves them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "simulated_mac/shared.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
using mac::SimulatedMac;

const std::string logs = "/Users/pat/Library/Logs/Wendle/";

const std::string start = "2016-11-21T07:59:59.900Z [1] uninstaller: Wendle Uninstaller - started in ";
const std::string later = "2016-11-21T08:00:02.150Z ";
const std::string progress = "[1] uninstaller: ", error = "[error] uninstaller: ";
const std::string noSuchFile = R"(: Error Domain=NSPOSIXErrorDomain Code=2 "No such file or directory")";
const std::string goodbye = progress + "Removal Completed - 😔 Sorry to see you go. 😔";

// The log of a run whose records behind the first one are these.
std::string makeLog(const std::string& mode, const Lines& records) {
  std::string log = start + mode + " mode\n";
  for (const std::string& record : records) log += later + record + "\n";
  return log;
}

struct LogCase {
  std::string name;
  std::string log;

  friend void PrintTo(const LogCase& c, std::ostream* out) { *out << c.name; }
};

class LogTest : public testing::TestWithParam<LogCase> {};

TEST_P(LogTest, IsToldAsItIs) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile("/etc/passwd", "pat:x:501:20::/Users/pat:/bin/zsh\n");
  mac.addFile("/some.log", GetParam().log);
  const RunResult seen = runReport(mac, {"--json", "/some.log"});
  expectText("report.txt", GetParam().name, mac::split(seen.out + seen.err + seen.outcome, '\n'));
}

INSTANTIATE_TEST_SUITE_P(
    Logs, LogTest,
    testing::ValuesIn<LogCase>(
        {{"AllThatCanBeTold",
          makeLog("uninstall completely", {progress + "Delete Folder - file:///A/m/ - success",
                                           progress + "Delete Folder - file:///A/ - success",
                                           error + "Delete Folder - file:///A/x" + noSuchFile,
                                           error + "Delete File - file:///B" + noSuchFile,
                                           error + "Delete File - file:///AA" + noSuchFile,
                                           progress + "Delete Folder - file:///A.app/ - success",
                                           error + "Delete Folder - file:///A.app" + noSuchFile,
                                           error + "Delete Folder - file:///A/y/z/" + noSuchFile,
                                           progress + "Reset permissions for com.wendle",
                                           progress + "Removed defaults for com.wendle",
                                           progress + "Delete Keychain Item - Wendle - at /k - success",
                                           progress + "Remove dock folder - no dock item found",
                                           progress + "Remove /C - finished", goodbye})},
         {"Failures",
          makeLog("keep applications",
                  {error + "Delete Folder - file:///A/: Error Domain=NSPOSIXErrorDomain Code=22 "
                           "\"Invalid argument\"",
                   error + "Failed to run `launchctl unload -w /a`" + noSuchFile,
                   "[4] uninstaller: Invalid dock item location: a\\nb \\\\ \\x1b\\xc2\\x9b\u2028\"\xff",
                   progress + "Failed to reset permissions for com.wendle: why", goodbye})},
         {"AnAbnormalEnd", makeLog("full", {"[1] module: Ended by an uncaught exception: no shell"})},
         {"AStopHalfWay", makeLog("updates", {progress + "Unload Wendle agent - started"})},
         {"AStopWithinALine",
          makeLog("keep applications", {goodbye}) + later + progress + "Delete Folder - file:///A/"},
         {"DamagedLines", start + "full mode\nsegmentation fault\n" + later + progress + "\\q\n" + later +
                              progress + "\\x1\n" + later + progress +
                              "Delete Folder - file:///WendleExtension.app/ - success\n"},
         {"Empty", ""},
         {"NoMode", later + progress + "Delete Folder - file:///A/ - success\n"},
         {"AnotherProgramsText", "segmentation fault\n" + makeLog("full", {})},
         {"NoDate", "2026-13-41" + start.substr(10) + "full mode\n"}}),
    [](const auto& c) { return c.param.name; });

TEST(ReportTest, CountsForPeopleWhatAGoodRunRemoved) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile("/a", makeLog("keep applications", {progress + "Delete File - file:///A - success", goodbye}));
  EXPECT_EQ(runReport(mac, {"/a"}).out,
            "--soft, started 2016-11-21T07:59:59.900Z\nRemoved: 1\n  file:///A\nNot there: nothing\n"
            "Tools that ran to their end: nothing\nFailed: nothing\n"
            "--soft took 2.250 seconds: 1 removed, 0 not there, 0 failed; it reached its last line.\n");
}

std::string complaint(const std::string& sentence) { return "wendle-uninstall-report: " + sentence + ".\n"; }

TEST(ReportTest, CountsNoFailureToDeleteWhatIsGoneByNow) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addLink("/link to nothing", "/nothing");
  mac.addDirectory("/left");
  mac.addDirectory("/closed");
  std::filesystem::permissions(mac.at("/closed"), std::filesystem::perms::none);
  const std::string denied = R"(: Error Domain=NSPOSIXErrorDomain Code=13 "Permission denied")";
  const std::string gone = error + "Delete Folder - file:///gone%20%C3%A9/" + denied;
  mac.addFile("/a", makeLog("full", {gone, error + "Delete Folder - file:///left/" + denied,
                                     error + "Delete Folder - file:///closed/x/" + denied,
                                     error + "Delete File - file:///link%20to%20nothing" + denied,
                                     "[4] uninstaller: Invalid dock item location: none"}));
  const std::string seen = runReport(mac, {"--json", "--recheck", "/a"}).out;
  EXPECT_NE(seen.find("\"removedLater\": [\"file:///gone%20%C3%A9/\"]"), seen.npos) << seen;
  for (const char* item :
       {"file:///left/", "file:///closed/x/", "file:///link%20to%20nothing", "Invalid dock item location"})
    EXPECT_NE(seen.find(std::string("{\"item\": \"") + item), seen.npos) << seen;
  mac.addFile("/a", makeLog("keep applications", {gone, goodbye}));
  EXPECT_EQ(runReport(mac, {"/a"}).outcome, "exit 1");
  EXPECT_EQ(runReport(mac, {"--recheck", "/a"}).outcome, "exit 0");
}

TEST(ReportTest, TakesTheNewestLogAndRefusesWrongUse) {
  SimulatedMac mac = SimulatedMac::scratch();
  EXPECT_EQ(runReport(mac, {}).err, complaint("this user has no log of the uninstaller"));
  mac.addFile(logs + "uninstaller-20161121T075959Z-9.log", start + "full mode\n");
  mac.addFile(logs + "uninstaller-20161121T075959Z-10.log", start + "updates mode\n");
  mac.addDirectory(logs + "uninstaller-20161121T080000Z-10.log");
  ASSERT_EQ(::mkfifo(mac.at(logs + "uninstaller-20161121T080000Z-9.log").c_str(), S_IRUSR), 0);
  EXPECT_TRUE(runReport(mac, {}).out.starts_with("--updates"));
  EXPECT_TRUE(runReport(mac, {"--process", "9"}).out.starts_with("--full"));
  mac.addFile("/a", makeLog("full", {"[4] uninstaller: a\\n\\x1b\u2028"}));
  EXPECT_NE(runReport(mac, {"/a"}).out.find("\n  a\\n\\x1b\\xe2\\x80\\xa8\n"), std::string::npos);
  EXPECT_TRUE(runReport(mac, {"--help"}).out.starts_with("usage: "));
  EXPECT_EQ(runReport(mac, {"/Users"}).err, complaint("cannot read /Users: Is a directory"));
  EXPECT_EQ(runReport(mac, {"/no\nthing"}).err,
            complaint("cannot open /no\\nthing: No such file or directory"));
  for (const std::string words :
       {"--jsno", "/a /a", " ", "/nothing",

        "--since", "--since -1", "--since 2016-11-21", "--since 2016-11-21T24:00:00Z", "--process",
        "--process 09", "--process 0", "--process 1 /a", "preview", "preview --hrd", "preview --hard --soft",
        "preview --hard x", "preview --hard --json --needs-root", "leftovers --hard",
        "leftovers --since 1"}) {
    const RunResult seen = runReport(mac, mac::split(words, ' '));
    EXPECT_EQ(seen.outcome + seen.out, "exit 2") << words;
    EXPECT_EQ(std::count(seen.err.begin(), seen.err.end(), '\n'), 1) << seen.err;
  }
}

TEST(ReportTest, TellsOfNoRunButTheOneAskedAbout) {
  SimulatedMac mac = SimulatedMac::scratch();
  const std::string newest = logs + "uninstaller-20161121T075959Z-9.log";
  mac.addFile(newest, start + "full mode\n");
  for (const char* time : {"0", "1479715199", "2016-11-21T07:59:59Z", "2016-11-21T07:59:59.901Z"})
    EXPECT_EQ(runReport(mac, {"--since", time}).outcome, "exit 1") << time;
  for (const std::string& time : Lines{"1479715200", "2016-11-21T08:00:00Z"}) {
    const RunResult seen = runReport(mac, {"--since", time, "--json"});
    EXPECT_EQ(seen.outcome + seen.out, "exit 2");
    EXPECT_EQ(seen.err,
              complaint(newest + " is of a run that began at 2016-11-21T07:59:59.900Z, before " + time));
  }
  mac.addFile("/a", "2116" + start.substr(4) + "full mode\n");
  EXPECT_EQ(runReport(mac, {"/a", "--since", "0"}).outcome, "exit 2");
}

TEST(ReportTest, FailsWhenItCannotBeWritten) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile("/a", start + "full mode\n");
  for (const std::string argument : {"/a", "--help"}) {
    Lines words{"-c", "\"$@\" >/dev/full", "sh"};
    for (const std::string& word : reportCommand()) words.push_back(word);
    words.push_back(argument);
    const mac::SessionResult seen = mac.run("/bin/sh", words);
    EXPECT_EQ(seen.outcome, "exit 2");
    EXPECT_EQ(seen.err, complaint("cannot write the report: No space left on device"));
  }
}
}  // namespace
}  // namespace wendle::test
