// The macOS executable as a library of classes, and what its loader makes of what is none. WENDLE_EXECUTABLES
// names the directory of macOS executables.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>

#include "platform/linux/property_list_file.h"
#include "support/run_result.h"

namespace wendle::test {
namespace {
using mac::ProcessOutcome;
using mac::SimulatedMac;

const std::string dockPlist = "/Users/pat/Library/Preferences/com.apple.dock.plist";
const std::string folder = "/Users/pat/Tools & 100%";

// Somebody else's tile, with every kind of value a property list has.
const std::string foreignTile = R"(<dict><key>GUID</key><integer>-9223372036854775808</integer>
  <key>tile-data</key><dict><key>book</key><data>AAH/gA==</data><key>file-label</key><string>Späße "😀"</string>
  <key>two</key><real>2</real><key>scale</key><real>0.1</real><key>mod</key><date>2026-11-21T07:40:12Z</date>
  <key>dark</key><true/><key>one</key><integer>1</integer>
  <key>list</key><array><false/><array/><dict/></array></dict></dict>)";

#if defined(__aarch64__)
constexpr bool isArm = true;
#else
constexpr bool isArm = false;
#endif

std::string executable() { return uninstallerCommand().back(); }

RunResult send(SimulatedMac& mac, Lines message) {
  message.insert(message.begin(), executable());
  return runProbe(mac, "message_sender", message);
}

TEST(ExportedClasses, HaveOneInstanceAlsoForConcurrentFirstCalls) {
  SimulatedMac mac = SimulatedMac::scratch();
  EXPECT_EQ(send(mac, {"instances"}).out, "one uninstaller yes\none manager yes\none bundle yes\n");
}

TEST(ExportedClasses, AskApplicationsToQuit) {
  SimulatedMac mac = SimulatedMac::scratch();
  for (const char* identifier : {"com.wendle.DesktopClient", "com.wendle.DesktopClient.WendleAgent"})
    mac.addProcess({.name = "Wendle", .identifier = identifier});
  EXPECT_EQ(send(mac, {"terminate"}).processes,
            (std::vector{ProcessOutcome::quit, ProcessOutcome::leftAlone}));
}

TEST(ExportedClasses, ReportAnUncaughtExceptionOfTheSystemBeforeThePreviousHandler) {
  SimulatedMac mac = SimulatedMac::scratch();
  const RunResult seen = send(mac, {"raise", "--updates"});
  EXPECT_EQ(seen.out, "previous handler\n");
  EXPECT_EQ(joined(seen.log),
            "[1] module: Ended by an uncaught exception: Name: reason - newest log file: none\n");
}

TEST(ExportedClasses, ReportAnUncaughtExceptionOfTheProgram) {
  SimulatedMac mac = SimulatedMac::scratch();
  const RunResult seen = send(mac, {"throw", "--updates"});
  EXPECT_EQ(seen.outcome + seen.out, "signal 6");
  EXPECT_EQ(joined(seen.log),
            "[1] module: Ended by an uncaught exception: a Dock tile needs a folder that exists - newest log "
            "file: none\n");
}

TEST(ExportedDockShortcutManager, SpeaksForItsFlagItselfAndFixesTrailingSlashes) {
  SimulatedMac mac = SimulatedMac::scratch();
  EXPECT_EQ(send(mac, {"manager"}).out,
            "flag is automatic no\nothers are yes\nfile:///Users/\nfile:///Nowhere/%C3%A9%3B\nnone\n");
}

class ChangeTest : public testing::TestWithParam<const char*> {};

// Setting the flag to the value that it has tells observers nothing.
TEST_P(ChangeTest, TellsObserversAndKeepsEveryKindOfValue) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addDirectory(folder);
  const std::string tiles = "<key>persistent-others</key><array>" + foreignTile + "</array>";
  mac.addPropertyList(dockPlist, "<dict><key>same</key>" + foreignTile + tiles + "</dict>", true);
  const std::string before = mac.read(dockPlist);
  const std::string flag = "isChangingPersistenceOfShortcutInDock from ";
  const RunResult seen = send(mac, {GetParam(), folder});
  const std::regex noDock("No matching processes belonging to you were found\n");
  EXPECT_EQ(std::regex_replace(seen.err, noDock, ""), "");
  EXPECT_EQ(seen.outcome + "\n" + seen.out, "exit 0\ntile no\n" + flag + "0 to 1\nflag yes\n" + flag +
                                                "1 to 0\ncompleted yes\nflag no\ntile yes\n" + flag +
                                                "0 to 1\n" + flag + "1 to 0\ntile no\n");
  EXPECT_EQ(parsePropertyList(mac.read(dockPlist))->content, parsePropertyList(before)->content);
}

INSTANTIATE_TEST_SUITE_P(Instances, ChangeTest, testing::Values("change", "overlap"),
                         [](const auto& verb) { return std::string(verb.param); });

TEST(ExportedDockShortcutManager, KeepsValuesThatAreRare) {
  SimulatedMac mac = SimulatedMac::scratch();
  EXPECT_EQ(send(mac, {"rare"}).out, "kept yes\n");
}

TEST(Arguments, MayBeNoUtf8AndTheHomeUnset) {
  SimulatedMac mac = SimulatedMac::scratch();
  Lines command{"-u", "HOME"};
  for (const std::string& word : uninstallerCommand()) command.push_back(word);
  const mac::SessionResult seen = [&] {
    command.insert(command.end(), {"\xFF", "--updates"});
    return mac.run("/usr/bin/env", command);
  }();
  EXPECT_EQ(seen.outcome + seen.err, "exit 0");
  EXPECT_EQ(seen.log.size(), logIn(expectedLines("bare.txt", "updates")).size());
}

TEST(Imports, EndTheProgramRatherThanGuess) {
  SimulatedMac mac = SimulatedMac::scratch();
  EXPECT_EQ(std::regex_replace(send(mac, {"unknown"}).err, std::regex("macos_program: "), ""),
            R"(unlinkat has an argument that is unknown here: 2048.
posix_spawn has a flag that is unknown here: 128.
a lock begins with a word that is unknown here.
the standard directory 9 in the domain 1 is unknown here.
)");
}

// The content of the universal file, and places in its half for this processor.
class UniversalFile {
 public:
  UniversalFile() {
    std::ostringstream content;
    content << std::ifstream(executable().substr(std::strlen("/host")), std::ios::binary).rdbuf();
    bytes = content.str();
    half = std::size_t{__builtin_bswap32(at<std::uint32_t>(8 + (isArm ? 20 : 0) + 8))};
  }

  // The first load command of that kind.
  std::size_t command(std::uint32_t kind) {
    std::size_t place = half + 32;
    while (at<std::uint32_t>(place) != kind) place += at<std::uint32_t>(place + 4);
    return place;
  }

  template <typename T>
  T& at(std::size_t place) {
    return *reinterpret_cast<T*>(&bytes[place]);
  }

  std::string bytes;
  std::size_t half = 0;
};

struct BadFile {
  std::string name;
  void (*spoil)(UniversalFile& file);
  std::string sentence;
  friend void PrintTo(const BadFile& c, std::ostream* out) { *out << c.name; }
};

class BadFileTest : public testing::TestWithParam<BadFile> {};

TEST_P(BadFileTest, IsRefusedWithASentence) {
  UniversalFile file;
  GetParam().spoil(file);
  SimulatedMac mac = SimulatedMac::scratch();
  mac.addFile("/bad", file.bytes);
  const RunResult seen = runProbe(mac, "macos_program", {"/bad", "--full"});
  EXPECT_EQ(seen.outcome, "exit 2");
  EXPECT_EQ(seen.err, "macos_program: /bad cannot be run: " + GetParam().sentence + ".\n");
}

constexpr std::uint32_t segment = 0x19, dyldInfo = 0x80000022, mainEntry = 0x80000028;

INSTANTIATE_TEST_SUITE_P(
    Files, BadFileTest,
    testing::ValuesIn<BadFile>({
        {"OfLinux",
         [](auto& file) {
           file.bytes =
               "\x7F"
               "ELF" +
               std::string(100, '\2');
         },
         "it is no macOS executable"},
        {"WithoutThisHalf", [](auto& file) { file.bytes[8] ^= 64, file.bytes[28] ^= 64; },
         "it has no half for this processor"},
        {"Truncated", [](auto& file) { file.bytes.resize(file.half + 50'000); },
         "it is damaged: a half lies outside of it"},
        {"NoExecutable", [](auto& file) { file.bytes[file.half + 12] = 6; },
         "it is a Mach-O file, but no executable"},
        {"UnknownCommand",
         [](auto& file) { file.template at<std::uint32_t>(file.command(dyldInfo)) = 0x80000034; },
         "its load command 52, which dyld must know, is unknown here"},
        {"NoMain", [](auto& file) { file.template at<std::uint32_t>(file.command(mainEntry)) = 1; },
         "it is damaged: it has no main"},
        {"SegmentElsewhere", [](auto& file) { file.bytes[file.command(segment) + 72 + 24 + 5] = 1; },
         "it is damaged: the place of segment __DATA_CONST"},
        {"ContentElsewhere", [](auto& file) { file.bytes[file.command(segment) + 72 + 40] = 64; },
         "it is damaged: the content of segment __DATA_CONST"},
        {"UnknownSection",
         [](auto& file) {
           file.bytes.replace(file.bytes.find("__mod_init_func", file.half), 15, "__init_offsets\0", 15);
         },
         "it has a section __init_offsets, which is unknown here"},
        {"UnknownOpcode",
         [](auto& file) {
           file.bytes[file.half + file.template at<std::uint32_t>(file.command(dyldInfo) + 16)] = '\xD0';
         },
         "it has a binding opcode 208, which is unknown here"},
        {"UnknownImport", [](auto& file) { file.bytes[file.bytes.find("_objc_msgSend", file.half)] = '-'; },
         "nothing stands for -objc_msgSend, which it needs"},
    }),
    [](const auto& c) { return c.param.name; });
}  // namespace
}  // namespace wendle::test
