#include "app/argument_dispatch.h"

#include <gtest/gtest.h>

namespace wendle {

TEST(ArgumentDispatch, TakesTheFirstExactSwitch) {
  EXPECT_EQ(chosenModeSwitch({"tool", "--hard"}), "--hard");
  EXPECT_EQ(chosenModeSwitch({"tool", "--updates", "--updates"}), "--updates");
  EXPECT_EQ(chosenModeSwitch({"tool", "-v", "--full", "--soft"}), "--full");
  EXPECT_EQ(chosenModeSwitch({"--soft", "--hard"}), "--soft");
  EXPECT_EQ(chosenModeSwitch({"--FULL", "full", "-full", "--full=1", "--har", " --soft", ""}), std::nullopt);
}

TEST(Version, IsWhatOthersReadFromTheExecutable) {
  EXPECT_EQ(WendleUninstallerVersionNumber, 99.0);
  EXPECT_STREQ(reinterpret_cast<const char*>(WendleUninstallerVersionString),
               "@(#)PROGRAM:WendleUninstaller  PROJECT:Applications-99\n");
}

}  // namespace wendle
