#include <sys/resource.h>

#include "logging/log_file.h"
#include "platform/process_start.h"
#include "support/each.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {

using namespace std::chrono_literals;

static const LogTime start = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + 7h + 40min + 45'999us;
static const std::string folder = "Logs/Wendle";
static const std::string ownName = "uninstaller-20261121T074000Z-" + std::to_string(::getpid()) + ".log";
static const std::string ownFile = folder + "/" + ownName;

static void logTo(const TempDirectory& temp) { LogFile({temp / "", "uninstaller"}, start).write("record\n"); }

TEST(LogRecord, IsOneEscapedLine) {
  EXPECT_EQ(logRecord(start, LogLevel::progress, "module", "Unload Wendle - é😔\xFF \"a\""),
            "2026-11-21T07:40:00.045Z [1] module: Unload Wendle - é😔\xFF \"a\"\n");
  EXPECT_EQ(logRecord(start, LogLevel::failure, "module", "\\n\n\r\t" + std::string("\0\x1B[31m\x1F\x7F", 8)),
            "2026-11-21T07:40:00.045Z [4] module: \\\\n\\n\\r\\t\\x00\\x1b[31m\\x1f\\x7f\n");
  EXPECT_EQ(errorRecord(start, "module", "a\nb"), "2026-11-21T07:40:00.045Z [error] module: a\\nb\n");
}

TEST(LogFile, IsMadePrivateWithTheFirstRecord) {
  const TempDirectory temp;
  LogFile log({temp / "", "uninstaller"}, start);
  EXPECT_EQ(temp.contents(), Texts());
  log.write("one\n");
  log.write("two\n");
  EXPECT_EQ(temp.contents(), (Texts{"Logs", folder, ownFile}));
  EXPECT_EQ(temp.text(ownFile), "one\ntwo\n");
  std::filesystem::remove(temp / ownFile);
  const mode_t usual = ::umask(0777);
  logTo(temp);
  ::umask(usual);
  EXPECT_EQ(std::filesystem::status(temp / ownFile).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(std::filesystem::status(temp / folder).permissions(), std::filesystem::perms(0700));
}

TEST(LogFile, NewestTenAreKeptAndOtherNamesAreLeftAlone) {
  const TempDirectory temp;
  const auto name = [](const std::string& run) { return "uninstaller-202" + run + ".log"; };
  const auto plant = [&](const std::string& file) { return temp.file(folder + "/" + file); };
  Texts kept = each(name, {"60102T000000Z-1234", "60102T000000Z-1233", "60102T000000Z-77", "60102T000000Z-10",
                           "60102T000000Z-9", "60102T000000Z-8", "60101T235959Z-9999", "51231T000000Z-2",
                           "51231T000000Z-1"});
  Texts others = each(name, {"00101T000000Z", "00101T000000Z-x", "0-01-01-1", "00101T000000Z-1.log/a"});
  others.push_back("Uninstaller-20200101T000000Z-1.log");
  for (const Texts& names : {kept, others, each(name, {"51230T235959Z-9", "00101T000000Z-1"})})
    each(plant, names);
  logTo(temp);
  kept.insert(kept.begin(), ownName);
  EXPECT_EQ(LogFolder(temp / "", "uninstaller").sortedNames(), kept);
  expectAll(
      "kept", [&](const std::string& other) { return temp.text(folder + "/" + other); }, others);
}

TEST(LogFile, StaysThoughTheOthersAreOfALaterTime) {
  const TempDirectory temp;
  for (int i = 0; i < 11; ++i)
    temp.file(folder + "/uninstaller-20990101T000000Z-" + std::to_string(i) + ".log");
  logTo(temp);
  EXPECT_EQ(temp.text(ownFile), "record\n");
  EXPECT_EQ(LogFolder(temp / "", "uninstaller").sortedNames().size(), LogFolder::filesKept);
}

TEST(LogFile, ATornRecordStaysALineOfItsOwn) {
  const TempDirectory temp;
  inFork([&] {
    settleProcess();  // a file that grows too large is no signal then
    LogFile log({temp / "", "uninstaller"}, start);
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
    const std::string name = "uninstaller-20261121T074000Z-" + std::to_string(::getpid()) + ".log";
    EXPECT_EQ(temp.text(folder + "/" + name), "one\ntor\nnext\nlast\n");
  });
}

TEST(LogFile, IsNeverWrittenThroughALink) {
  for (const std::string& place : {std::string("Logs"), folder, ownFile}) {
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
}

}  // namespace wendle
