#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "Parser.h"
#include "constants.h"
#include "support/server.h"

namespace vok::test {
namespace {

class ParamsTest : public testing::Test {
 protected:
  Parser parser{"Alpha", CLIENT_ONLINECOACH, 7, 8};
  StderrCapture errors;
};

TEST_F(ParamsTest, TheFirstItemThatNoRowTakesEndsTheReading) {
  EXPECT_TRUE(parser.parseServerParam(
      "(server_param (port 6010)\n(game_log_directory \"./\")(half_time  60))"));
  EXPECT_EQ(std::pair(HALF_TIME, PORT), std::pair(60, 6000));
  EXPECT_FALSE(parser.parseServerParam("(player_param (half_time 1))"));
  EXPECT_FALSE(parser.parsePlayerParam("(server_param (pt_max 1))"));

  DROP_BALL_TIME = 1;
  for (const std::string item :
       {"(unknown 1)", "(synch_mode)", "(hear_max nan)", "(half_time 3000000000)", "( half_time 5)",
        "(module_dir)", "(log_times 0 1)", "(half_time 300 s)"}) {
    EXPECT_TRUE(parser.parseServerParam("(server_param " + item + "(drop_ball_time 7))"));
    EXPECT_EQ(DROP_BALL_TIME, 1) << item;
    EXPECT_EQ(HALF_TIME, item.ends_with("s)") ? 300 : 60) << "the number is stored all the same";
  }

  std::string tooMany = "(player_param (random_seed 0)";
  for (int i = 1; i <= 23; ++i) tooMany += "(subs_max " + std::to_string(i) + ")";
  EXPECT_TRUE(parser.parsePlayerParam(tooMany));
  EXPECT_EQ(playerParams.subs_max, 22) << "one item a row";
}

TEST_F(ParamsTest, APartGoesOnWhereTheLastCallStopped) {
  SensorData record;
  int number = 0;
  const Token token = {" (x %d)%n", &number, DT_INT};
  EXPECT_FALSE(parser.parseExact() || parser.parsePlayerType()) << "nothing to read yet";
  EXPECT_TRUE(parser.parseServerString("(error (x 3)(x 4 )((b) 1 2))", record));
  EXPECT_EQ(std::pair(parser.readToken(token), number), std::pair(0, 3));
  EXPECT_EQ(parser.readToken({}), 1) << "the row that ends a table";
  EXPECT_EQ(parser.readToken({" (x %d)%n", &number, static_cast<DataType>(7)}), -1);
  EXPECT_EQ(errors.take(), "Parser::readToken: unknown data type 7\n");
}

TEST_F(ParamsTest, CountsAreUsableAsSizes) {
  playerParams.player_types = -1;
  playerParams.subs_max = 2000000000;
  EXPECT_EQ(std::pair(numPlayerTypes(), numSubsMax()), std::pair(0, 1000));
  std::swap(playerParams.player_types, playerParams.subs_max);
  EXPECT_EQ(std::pair(numPlayerTypes(), numSubsMax()), std::pair(1000, 0));
}

}  // namespace
}  // namespace vok::test
