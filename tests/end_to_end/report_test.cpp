// wendle-uninstall-report on the logs of real runs, and on logs as a run that went wrong leaves them.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <sstream>

#include "report/run_report.h"
#include "simulated_mac/client_fixture.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {

using mac::SimulatedMac;

const std::string logs = "/Users/pat/Library/Logs/Wendle/";

class ReportedModeTest : public testing::TestWithParam<const char*> {};

TEST_P(ReportedModeTest, IsGoodAndCountsWhatTheRunRemoved) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac::installClient(mac);
  const RunResult run = runUninstaller(mac, {GetParam()});
  const RunResult seen = runReport(mac, {});

  EXPECT_EQ(seen.outcome, "exit 0");
  const auto removed = std::count_if(run.log.begin(), run.log.end(), [](const std::string& line) {
    return line.starts_with("[1] uninstaller: Delete ") && line.ends_with(" - success");
  });
  EXPECT_TRUE(seen.out.starts_with(GetParam())) << seen.out;
  EXPECT_NE(seen.out.find("\nRemoved: " + std::to_string(removed) + "\n"), std::string::npos) << seen.out;
  EXPECT_NE(seen.out.find("\nNot there: nothing\n"), std::string::npos) << seen.out;
  EXPECT_NE(seen.out.find("\nFailed: nothing\n"), std::string::npos) << seen.out;
  EXPECT_TRUE(seen.out.ends_with(" 0 failed; it reached its last line.\n")) << seen.out;
}

INSTANTIATE_TEST_SUITE_P(Modes, ReportedModeTest, testing::Values("--updates", "--soft", "--hard", "--full"),
                         [](const auto& mode) { return std::string(mode.param).substr(2); });

struct LogCase {
  std::string name;
  std::string log;
  std::string outcome;
  std::string json = {};  // all of it; nothing is printed when empty

  friend void PrintTo(const LogCase& c, std::ostream* out) { *out << c.name; }
};

const std::string start = "2016-11-21T07:59:59.900Z [1] uninstaller: Wendle Uninstaller - started in ";
const std::string later = "2016-11-21T08:00:02.150Z ";
const std::string noSuchFile = R"(: Error Domain=NSPOSIXErrorDomain Code=2 "No such file or directory")";
const std::string goodbye = later + "[1] uninstaller: Removal Completed - 😔 Sorry to see you go. 😔\n";

std::string json(const std::string& mode, const std::string& lists, bool reachedEnd) {
  return R"({"schema": 1, "uninstallerVersion": "99.0", "user": "pat", "log": "/some.log", "mode": ")" +
         mode + R"(", "started": "2016-11-21T07:59:59.900Z", "seconds": 2.250, )" + lists +
         ", \"reachedEnd\": " + (reachedEnd ? "true" : "false") + "}\n";
}

class LogTest : public testing::TestWithParam<LogCase> {};

TEST_P(LogTest, IsToldAsItIs) {
  const LogCase& c = GetParam();
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile("/etc/passwd", "pat:x:501:20::/Users/pat:/bin/zsh\n");
  mac.addFile("/some.log", c.log);
  const RunResult seen = runReport(mac, {"--json", "/some.log"});
  EXPECT_EQ(seen.outcome, c.outcome);
  EXPECT_EQ(seen.out, c.json);
  EXPECT_EQ(seen.err,
            c.json.empty() ? "wendle-uninstall-report: /some.log is no log of the uninstaller.\n" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Logs, LogTest,
    testing::ValuesIn<LogCase>({
        {"AllThatCanBeTold",
         start + "uninstall completely mode\n" + later +
             "[1] uninstaller: Delete Folder - file:///A/m/ - success\n" + later +
             "[1] uninstaller: Delete Folder - file:///A/ - success\n" + later +
             "[error] uninstaller: Delete Folder - file:///A/x" + noSuchFile + "\n" + later +
             "[error] uninstaller: Delete File - file:///B" + noSuchFile + "\n" + later +
             "[error] uninstaller: Delete File - file:///AA" + noSuchFile + "\n" + later +
             "[1] uninstaller: Delete Folder - file:///A.app/ - success\n" + later +
             "[error] uninstaller: Delete Folder - file:///A/y/z/" + noSuchFile + "\n" + later +
             "[1] uninstaller: Reset permissions for com.wendle\n" + later +
             "[1] uninstaller: Removed defaults for com.wendle\n" + later +
             "[1] uninstaller: Delete Keychain Item - Wendle - at /k - success\n" + later +
             "[1] uninstaller: Remove dock folder - no dock item found\n" + later +
             "[1] uninstaller: Remove /C - finished\n" + goodbye,
         "exit 0",
         json(
             "--hard",
             R"("removed": ["file:///A/m/", "file:///A/", "file:///A.app/", "keychain item Wendle - at /k"], )"
             R"("notThere": ["file:///B", "file:///AA", "the client's tile in the Dock"], )"
             R"("toolsRun": ["Reset permissions for com.wendle", "Removed defaults for com.wendle", "rm -rf /C"], "failed": [])",
             true)},
        {"Failures",
         start + "keep applications mode\n" + later +
             "[error] uninstaller: Delete Folder - file:///A/: Error Domain=NSPOSIXErrorDomain Code=22 "
             "\"Invalid argument\"\n" +
             later + "[error] uninstaller: Failed to run `launchctl unload -w /a`" + noSuchFile + "\n" +
             later + "[4] uninstaller: Invalid dock item location: a\\nb \\\\ \\x1b\\xc2\\x9b\u2028\"\xff\n" +
             later + "[1] uninstaller: Failed to reset permissions for com.wendle" + noSuchFile + "\n" +
             goodbye,
         "exit 1",
         json(
             "--soft",
             R"("removed": [], "notThere": [], "toolsRun": [], "failed": [)"
             R"({"item": "file:///A/", "cause": "Error Domain=NSPOSIXErrorDomain Code=22 \"Invalid argument\""}, )"
             R"({"item": "Failed to run `launchctl unload -w /a`", "cause": )"
             R"("Error Domain=NSPOSIXErrorDomain Code=2 \"No such file or directory\""}, )"
             R"({"item": "Invalid dock item location", "cause": "a\u000ab \\ \u001b\u009b\u2028\"\ufffd"}, )"
             R"({"item": "Failed to reset permissions for com.wendle", "cause": )"
             R"("Error Domain=NSPOSIXErrorDomain Code=2 \"No such file or directory\""}])",
             true)},
        {"AnAbnormalEnd",
         start + "full mode\n" + later + "[1] module: Ended by an uncaught exception: no shell\n", "exit 1",
         json("--full",
              R"("removed": [], "notThere": [], "toolsRun": [], "failed": )"
              R"([{"item": "Ended by an uncaught exception", "cause": "no shell"}])",
              false)},
        {"AStopHalfWay",
         start + "updates mode\n" + later + "[1] uninstaller: Unload Wendle agent - started\n", "exit 1",
         json("--updates", R"("removed": [], "notThere": [], "toolsRun": [], "failed": [])", false)},
        {"AStopWithinALine",
         start + "keep applications mode\n" + goodbye + later +
             "[1] uninstaller: Delete Folder - file:///A/ - success",
         "exit 1", json("--soft", R"("removed": [], "notThere": [], "toolsRun": [], "failed": [])", false)},
        {"Empty", "", "exit 2"},
        {"NoMode", later + "[1] uninstaller: Delete Folder - file:///A/ - success\n", "exit 2"},
        {"DamagedLines",
         start + "full mode\nsegmentation fault\n" + later + "[1] uninstaller: \\q\n" + later +
             "[1] uninstaller: \\x1\n" + later +
             "[1] uninstaller: Delete Folder - file:///WendleExtension.app/ - success\n",
         "exit 1",
         json("--full",
              R"("removed": ["file:///WendleExtension.app/"], "notThere": [], "toolsRun": [], "failed": [)"
              R"({"item": "line 2 of the log", "cause": "is no record"}, )"
              R"({"item": "line 3 of the log", "cause": "is no record"}, )"
              R"({"item": "line 4 of the log", "cause": "is no record"}])",
              false)},
        {"AnotherProgramsText", "segmentation fault\n" + start + "full mode\n", "exit 2"},
        {"NoDate", "2026-13-41T08:00:02.150Z [1] uninstaller: Wendle Uninstaller - started in full mode\n",
         "exit 2"},
    }),
    [](const auto& c) { return c.param.name; });

std::string complaint(const std::string& sentence) { return "wendle-uninstall-report: " + sentence + ".\n"; }

TEST(ReportTest, CountsNoFailureToDeleteWhatIsGoneByNow) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addLink("/link to nothing", "/nothing");
  mac.addDirectory("/left");
  std::string log = start + "uninstall completely mode\n";
  for (const char* item : {"gone%20%C3%A9/", "left/", "link%20to%20nothing/"}) {
    log += later + "[error] uninstaller: Delete Folder - file:///" + item +
           ": Error Domain=NSPOSIXErrorDomain Code=13 \"Permission denied\"\n";
  }
  mac.addFile("/a", log + later + "[4] uninstaller: Invalid dock item location: none\n" + goodbye);
  const std::string seen = runReport(mac, {"--json", "--recheck", "/a"}).out;
  EXPECT_NE(seen.find("\"removedLater\": [\"file:///gone%20%C3%A9/\"]"), seen.npos) << seen;
  for (const char* item : {"file:///left/", "file:///link%20to%20nothing/", "Invalid dock item location"})
    EXPECT_NE(seen.find(std::string("{\"item\": \"") + item), seen.npos) << seen;
  mac.addFile("/a",
              start + "uninstall completely mode\n" + later +
                  "[error] uninstaller: Delete Folder - file:///gone/: Error Domain=X Code=13 \"denied\"\n" +
                  goodbye);
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
  mac.addFile("/a", start + "full mode\n" + later + "[4] uninstaller: a\\n\\x1b\u2028\n");
  EXPECT_NE(runReport(mac, {"/a"}).out.find("\n  a\\n\\x1b\\xe2\\x80\\xa8\n"), std::string::npos);
  EXPECT_TRUE(runReport(mac, {"--help"}).out.starts_with("usage: "));
  EXPECT_EQ(runReport(mac, {"/no\nthing"}).err,
            complaint("cannot open /no\\nthing: No such file or directory"));
  for (const Lines& arguments :
       {Lines{"--jsno"}, Lines{"/a", "/a"}, Lines{""}, Lines{"/nothing"}, Lines{"/Users"}, Lines{"--since"},
        Lines{"--since", "-1"}, Lines{"--since", "2016-11-21"}, Lines{"--since", "2016-11-21T24:00:00Z"},
        Lines{"--process"}, Lines{"--process", "09"}, Lines{"--process", "1"},
        Lines{"--process", "1", "/a"}}) {
    const RunResult seen = runReport(mac, arguments);
    EXPECT_EQ(seen.outcome + seen.out, "exit 2") << joined(arguments);
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
  const auto rehearse =
      std::filesystem::canonical("/proc/self/exe").replace_filename("simulated_mac_rehearse");
  for (const std::string argument : {"--updates", "--help"}) {
    const std::string command = (std::ostringstream() << rehearse << " " << argument << " >/dev/full").str();
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 2) << argument;
  }
}

// Of the processor.
std::clock_t timeForItems(int count) {
  LogText log{{{{}, RecordKind::progress, "", "Wendle Uninstaller - started in full mode"}}, {}, false};
  for (int i = 0; i < count; ++i) {
    const std::string item = "Delete Folder - file:///" + std::to_string(i);
    log.records.push_back({{}, RecordKind::progress, "", item + "/ - success"});
    log.records.push_back({{}, RecordKind::error, "", item + noSuchFile});
  }
  const std::clock_t before = std::clock();
  EXPECT_TRUE(makeReport(log)->notThere.empty());
  return std::clock() - before;
}

TEST(ReportTest, TakesTimeInProportionToTheItems) {
  EXPECT_LT(timeForItems(40'000), 24 * timeForItems(5'000));
}

}  // namespace
}  // namespace wendle::test
