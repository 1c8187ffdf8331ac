// The rehearsal tells a good uninstaller from a bad one, and says why there is none.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "support/expected_text.h"

namespace wendle::test {
namespace {
namespace fs = std::filesystem;

struct Shown {
  int status = -1;
  std::string text;
};

// A directory with a blank in its name, empty in the beginning, in which rehearse also makes its Macs.
class RehearseTest : public testing::Test {
 protected:
  RehearseTest() { fs::create_directory(directory_); }
  ~RehearseTest() override { fs::remove_all(directory_); }

  Shown rehearse(const std::string& arguments, const std::string& environment = "") const {
    const std::string program = fs::canonical("/proc/self/exe").parent_path() / "simulated_mac_rehearse";
    const std::string command = "cd '" + directory_.string() + "' && TMPDIR=. " + environment + " '" +
                                program + "' 2>&1 " + arguments;
    Shown shown;
    FILE* output = ::popen(command.c_str(), "r");
    std::array<char, 4096> block{};
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), output))
      shown.text.append(block.data(), count);
    shown.status = WEXITSTATUS(::pclose(output));
    return shown;
  }

  // Rehearses --updates with a shell script as the uninstaller.
  Shown rehearseScript(const std::string& script) const {
    std::ofstream(directory_ / "script") << "#!/host/bin/sh\n" << script << "\n";
    fs::permissions(directory_ / "script", fs::perms::owner_all);
    return rehearse("--uninstaller script --updates");
  }

  const fs::path directory_ = fs::path(testing::TempDir()) / ("rehearse test " + std::to_string(::getpid()));
};

TEST_F(RehearseTest, PassesAGoodUninstallerAndKeepsTheMac) {
  EXPECT_EQ(rehearse("--keep Mac --hard").status, 0);
  EXPECT_TRUE(fs::exists(directory_ / "Mac/Users/pat/Documents/letter.txt"));
  EXPECT_FALSE(fs::exists(directory_ / "Mac/Applications/Wendle.app"));
  EXPECT_EQ(rehearse("--keep Mac --hard").text, "rehearse: Mac is not empty.\n");
  EXPECT_EQ(rehearse("-- --nonsense").status, 0);
}

TEST_F(RehearseTest, FailsABadOne) {
  const Shown idle = rehearseScript("echo cannot go on >&2; exit 7");
  EXPECT_EQ(idle.status, 1);
  EXPECT_NE(idle.text.find("\nError output\n  cannot go on\n"), std::string::npos) << idle.text;
  EXPECT_TRUE(
      idle.text.ends_with("The uninstaller ended with exit 7. Not all of the mode's list was done. "
                          "Nothing outside the mode's list was touched.\n"))
      << idle.text;
  for (const char* act :
       {"rm Documents/letter.txt", "echo more >>Documents/letter.txt", "chmod 777 Documents", "touch new",
        "rm -r /Applications/Wendle.app", "kill -9 -1"}) {
    const Shown bad = rehearseScript("cd; PATH=/host/bin; " + std::string(act));
    EXPECT_EQ(bad.status, 1) << act;
    EXPECT_TRUE(bad.text.ends_with("Something outside the mode's list was touched.\n")) << bad.text;
  }
}

TEST_F(RehearseTest, SaysWhyThereIsNone) {
  for (const auto& [arguments, reason] : std::vector<std::pair<std::string, std::string>>{
           {"", "A mode is missing"},
           {"--sfot", "'--sfot' is no mode"},
           {"--soft --hard", "'--soft --hard' is no mode"},
           {"--keep", "--keep needs a path"},
           {"--keep none/Mac --soft", "There can be no directory none/Mac."},
           {"--uninstaller none --soft", "There is no executable none."},
           {"--soft >/dev/full", "The standard output cannot be written."}}) {
    const Shown shown = rehearse(arguments);
    EXPECT_EQ(shown.status, 2) << arguments;
    EXPECT_TRUE(shown.text.starts_with("rehearse: " + reason)) << shown.text;
  }
  EXPECT_EQ(rehearse("--soft", "PATH=/nowhere").text, "rehearse: bubblewrap (bwrap) is not installed.\n");
  EXPECT_EQ(rehearse("--soft", "TMPDIR=/nowhere").text, "rehearse: TMPDIR names no directory.\n");
  EXPECT_TRUE(fs::is_empty(directory_));
}
}  // namespace
}  // namespace wendle::test
