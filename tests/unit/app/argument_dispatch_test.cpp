#include "app/argument_dispatch.h"

#include <gtest/gtest.h>

namespace wendle {

TEST(ArgumentDispatch, TakesTheFirstExactSwitch) {
  EXPECT_EQ(chosenMode({"tool", "--hard"}), Mode::hard);
  EXPECT_EQ(chosenMode({"tool", "--updates", "--updates"}), Mode::updates);
  EXPECT_EQ(chosenMode({"tool", "-v", "--full", "--soft"}), Mode::full);
  EXPECT_EQ(chosenMode({"--soft", "--hard"}), Mode::soft);
  EXPECT_EQ(chosenMode({"--FULL", "full", "-full", "--full=1", "--har", " --soft", ""}), std::nullopt);
}

}  // namespace wendle
