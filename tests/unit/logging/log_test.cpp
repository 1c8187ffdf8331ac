#include <fcntl.h>
#include <sys/resource.h>

#include "logging/log_file.h"
#include "platform/process_environment.h"
#include "support/each.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {
using namespace std::chrono_literals;

static const LogTime start = std::chrono::sys_days(std::chrono::year(2016) / 11 / 21) + 7h + 40min + 45'999us;
static const std::string folder = "Library/Logs/Wendle";
static const std::string ownName = "uninstaller-20161121T074000Z-" + std::to_string(::getpid()) + ".log";
static const std::string ownFile = folder + "/" + ownName;

static LogDirectory directoryIn(const TempDirectory& temp) { return {temp / "Library", "uninstaller"}; }
static void logTo(const TempDirectory& temp) { LogFile(directoryIn(temp), start).write("record\n"); }

TEST(LogRecord, IsOneEscapedLine) {
  EXPECT_EQ(logRecord(start, LogLevel::progress, "module", "Unload Wendle - é😔\xFF \"a\""),
            "2016-11-21T07:40:00.045Z [1] module: Unload Wendle - é😔\xFF \"a\"\n");
  EXPECT_EQ(logRecord(start, LogLevel::failure, "module", "\\n\n\r\t" + std::string("\0\x1B[31m\x1F\x7F", 8)),
            "2016-11-21T07:40:00.045Z [4] module: \\\\n\\n\\r\\t\\x00\\x1b[31m\\x1f\\x7f\n");
  EXPECT_EQ(
      errorRecord(start, "module", "\u0080\u009F\u061C\u200E\u200F\u2028\u202E\u2066\u2069"),
      "2016-11-21T07:40:00.045Z [error] module: \\xc2\\x80\\xc2\\x9f\\xd8\\x9c\\xe2\\x80\\x8e\\xe2\\x80\\x8f"
      "\\xe2\\x80\\xa8\\xe2\\x80\\xae\\xe2\\x81\\xa6\\xe2\\x81\\xa9\n");
  EXPECT_EQ(escapedText("\u00A0\u200D\u2027\u202F\u2065\u206A\x9B"),
            "\u00A0\u200D\u2027\u202F\u2065\u206A\x9B");
}

TEST(LogFile, IsMadePrivateWithTheFirstRecord) {
  const TempDirectory temp;
  LogFile log(directoryIn(temp), start);
  EXPECT_EQ(temp.contents(), Texts());
  const mode_t usual = ::umask(0777);
  log.write("one\n");
  EXPECT_EQ(::umask(usual), 0777U);
  logTo(temp);  // a run of the same second and process number continues it
  log.write("two\n");
  EXPECT_EQ(temp.contents(), (Texts{"Library", "Library/Logs", folder, ownFile}));
  EXPECT_EQ(temp.text(ownFile), "one\nrecord\ntwo\n");
  const auto mode = [&](const std::string& item) {
    return std::filesystem::status(temp / item).permissions();
  };
  EXPECT_EQ(mode(ownFile), std::filesystem::perms(0600));
  expectAll(std::filesystem::perms(0700), mode, {"Library", "Library/Logs", folder});
}

TEST(LogFile, NewestTenAreKeptAndOtherNamesAreLeftAlone) {
  const TempDirectory temp;
  const auto name = [](const std::string& run) { return "uninstaller-201" + run + ".log"; };
  const auto plant = [&](const std::string& file) { return temp.file(folder + "/" + file); };
  Texts kept = each(name, {"60102T000000Z-1234", "60102T000000Z-1233", "60102T000000Z-77", "60102T000000Z-10",
                           "60102T000000Z-9", "60102T000000Z-8", "60101T235959Z-9999", "51231T000000Z-2",
                           "51231T000000Z-1"});
  Texts others = each(name, {"00101T000000Z", "00101T000000Z-x", "0-01-01-1", "00101T000000Z-1.log/a"});
  others.push_back("Uninstaller-20100101T000000Z-1.log");
  for (const Texts& names : {kept, others, each(name, {"51230T235959Z-9", "00101T000000Z-1"})})
    each(plant, names);
  logTo(temp);
  kept.insert(kept.begin(), ownName);
  EXPECT_EQ(directoryIn(temp).sortedNames(), kept);
  expectAll(
      "kept", [&](const std::string& other) { return temp.text(folder + "/" + other); }, others);
}

TEST(LogFile, IsSortedByItsOwnTimeWhenItsNameLiesAhead) {
  const TempDirectory temp;
  const auto plant = [&](const std::string& run, std::chrono::sys_seconds written) {
    std::string name = "uninstaller-" + run + ".log";
    std::filesystem::last_write_time(temp.file(folder + "/" + name),
                                     std::chrono::file_clock::from_sys(written));
    return name;
  };
  const auto noon = std::chrono::sys_days(std::chrono::year(2016) / 1 / 1) + 12h;
  const auto future = std::chrono::sys_days(std::chrono::year(2098) / 1 / 1) + 0h;
  const Texts newestFirst{plant("20160101T120001Z-1", noon),  // the file system's clock was a little behind
                          plant("20160101T120000Z-1", noon + 1h), plant("20990101T000000Z-1", noon),
                          plant("20160101T115959Z-1", noon), plant("20980101T000000Z-1", future)};
  ASSERT_EQ(::mkfifo((temp / folder + "/uninstaller-20160101T130000Z-1.log").c_str(), S_IRUSR), 0);
  EXPECT_EQ(directoryIn(temp).sortedNames(), newestFirst);
}

TEST(LogFile, StaysThoughTheOthersAreOfALaterTime) {
  const TempDirectory temp;
  for (int i = 0; i < 11; ++i)
    temp.file(folder + "/uninstaller-20990101T000000Z-" + std::to_string(i) + ".log");
  logTo(temp);
  EXPECT_EQ(temp.text(ownFile), "record\n");
  EXPECT_EQ(directoryIn(temp).sortedNames().size(), LogDirectory::filesKept);
}

TEST(LogFile, ATornRecordStaysALineOfItsOwn) {
  const TempDirectory temp;
  inFork([&] {
    initProcessState();  // a file that grows too large is no signal then
    LogFile log(directoryIn(temp), start);
    const auto writeUpTo = [&](rlim_t size, std::string_view record) {
      const rlimit limit{size, RLIM_INFINITY};
      ::setrlimit(RLIMIT_FSIZE, &limit);
      log.write(record);
    };
    writeUpTo(4, "one\n");
    writeUpTo(4, "lost\n");
    writeUpTo(7, "torn one\n");
    writeUpTo(7, "lost\n");
    writeUpTo(RLIM_INFINITY, "next\n");
    log.write("last\n");
    const std::string name = "uninstaller-20161121T074000Z-" + std::to_string(::getpid()) + ".log";
    EXPECT_EQ(temp.text(folder + "/" + name), "one\ntor\nnext\nlast\n");
  });
}

TEST(LogFile, IsNeverWrittenThroughALink) {
  for (const std::string& place : {std::string("Library/Logs"), folder, ownFile}) {
    const TempDirectory temp;
    temp.file("bystander/file");
    temp.link(place, temp / (place == ownFile ? "bystander/file" : "bystander"));
    const Texts before = temp.contents();
    logTo(temp);
    EXPECT_EQ(temp.contents(), before);
    EXPECT_EQ(temp.text("bystander/file"), "kept");
  }
}

TEST(LogFile, HardLinkOrFifoInItsPlaceIsLeftAlone) {
  const TempDirectory temp;
  temp.directory(folder);
  std::filesystem::create_hard_link(temp.file("bystander"), temp / ownFile);
  logTo(temp);
  EXPECT_EQ(temp.text("bystander"), "kept");
  std::filesystem::remove(temp / ownFile);
  ASSERT_EQ(::mkfifo((temp / ownFile).c_str(), S_IRUSR | S_IWUSR), 0);
  logTo(temp);  // does not block
  const UniqueFd reader(::open((temp / ownFile).c_str(), O_RDONLY | O_NONBLOCK));
  logTo(temp);
  char byte = 0;
  EXPECT_EQ(::read(reader.get(), &byte, 1), 0);
}

TEST(LogFile, AnotherUsersFileInItsPlaceIsLeftAlone) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file to another user";
  const TempDirectory temp;
  ASSERT_EQ(::chown(temp.file(ownFile).c_str(), 1, 1), 0);
  logTo(temp);
  EXPECT_EQ(temp.text(ownFile), "kept");
}
}  // namespace wendle
