#include <gtest/gtest.h>

#include "support/server.h"

namespace vok::test {
namespace {

std::string drawn(const std::string& arguments) {
  return runCommand(VOK_BIN_DIR "/formationview " + (SHIPPED_CONFIG + (" " + arguments))).second;
}

// test_pages.cpp compares whole pictures with those in docs/.
TEST(Formationview, TellsTheBandAndTheOffsideLineUnderEachBall) {
  // The band of a ball at the centre: 26.25 m that end 2 m behind the offside line.
  EXPECT_EQ(count(drawn("--offside 10"),
                  ">Ball 0, 0. Band -18.2 to 8.0 (thin), our offside line 10.0 (dashed).<"),
            1U);
  const std::string sheet = drawn("--ball -40,0:40,8:5 --ball 52.5,-34");
  for (const char* ball : {"-40, 0", "-20, 2", "0, 4", "20, 6", "40, 8", "52.5, -34"})
    EXPECT_EQ(count(sheet, std::string(">Ball ") + ball + "."), 1U) << ball;
}

}  // namespace
}  // namespace vok::test
