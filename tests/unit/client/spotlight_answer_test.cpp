#include "client/application_bundles.h"
#include "support/each.h"

namespace wendle {
TEST(SpotlightAnswer, HasAnAbsolutePathALineTheLastOneIncluded) {
  EXPECT_EQ(pathsInAnswer("/nowhere/a\n\nb\n/nowhere/c"), (Texts{"/nowhere/a", "/nowhere/c"}));
}
}  // namespace wendle
