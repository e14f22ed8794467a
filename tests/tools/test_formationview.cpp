#include <gtest/gtest.h>

#include "support/server.h"

namespace vok::test {
namespace {

/// Runs the program: its status, and what it wrote on both streams.
std::pair<int, std::string> run(const std::string& arguments) {
  return runCommand(VOK_BIN_DIR "/formationview " + arguments);
}

std::string drawn(const std::string& arguments) {
  return run(SHIPPED_CONFIG + (" " + arguments)).second;
}

// What it draws is also compared with the pictures in docs/.
TEST(Formationview, TellsTheBandAndTheOffsideLineUnderEachBall) {
  // The band of a ball at the centre: 26.25 m that end 2 m behind the offside line.
  EXPECT_EQ(count(drawn("--offside 10"),
                  ">Ball 0, 0. Band -18.2 to 8.0 (thin), our offside line 10.0 (dashed).<"),
            1U);
  const std::string sheet = drawn("--ball -40,0:40,8:5 --ball 52.5,-34");
  for (const char* ball : {"-40, 0", "-20, 2", "0, 4", "20, 6", "40, 8", "52.5, -34"})
    EXPECT_EQ(count(sheet, std::string(">Ball ") + ball + "."), 1U) << ball;
}

TEST(Formationview, WrongInputGetsOneLineAndStatus1) {
  const ChangedConfig huge("Form0_def_PosX", "Form0_def_PosX = 1e308, 2, 2, 8, 32");
  const std::string shipped = SHIPPED_CONFIG;
  for (const std::string& arguments :
       {std::string("no/such/file"), huge.path, shipped + " --bogus", shipped + " --ball 1,2,3",
        shipped + " --ball nan,0", shipped + " --ball 0,0:1,1:1", shipped + " --form-def 3",
        shipped + " --out /no/such/file"}) {
    const auto [status, output] = run(arguments);
    EXPECT_EQ(status, 1) << arguments;
    EXPECT_EQ(lines(output).size(), 1U) << output;
    EXPECT_TRUE(output.starts_with("formationview: ")) << output;
  }
}

}  // namespace
}  // namespace vok::test
