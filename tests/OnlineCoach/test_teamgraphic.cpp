// The team's picture: what is read of a file, and when its tiles are sent.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "Config.h"
#include "support/coach.h"
#include "teamgraphic.h"

namespace vok::test {
namespace {

TEST(Xpm, TellsWhatIsWrongWithAFile) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"static char* x[] = {\n\"2 1 2 1\",\n\"a c #ff0000 m white\", /* \" */ \"b s no c None\", "
       "\"ab\"",
       ""},
      {"GIF89a", "line 1: the file ends before a string with the size of a picture"},
      {"/* \"1 1 1 1\"", "line 1: the file ends before a string with the size of a picture"},
      {"\"1 1 1\"", "line 1: no width, height, and numbers of colours and characters"},
      {"\n\"257 64 1 1\"", "line 2: the picture is 257 x 64, not 1 x 1 to 256 x 64"},
      {"\"1 1 0 1\"", "line 1: no usable number of colours"},
      {"\"1 1 1 5\"", "line 1: not 1 to 4 characters a pixel"},
      {"\"1 1 1 1\"\n\"a c red", "line 2: the file ends before the last colour"},
      {"\"1 1 1 1\"\"a m red\"", "line 1: no usable colour behind \"c\""},
      {"\"1 1 1 1\"\"a c red)(bye\"", "line 1: no usable colour behind \"c\""},
      {"\"1 1 2 1\"\"a c red\"\"a c blue\"", "line 1: these characters have a colour already"},
      {"\"2 1 1 2\"\"ab c red\"\"aba\"", "line 1: the row has 3 characters, not 4"},
      {"\"1 1 1 1\"\"a c red\"\"b\"", "line 1: a pixel of no colour"},
      {"\"1 2 1 1\"\"a c red\"\"a\"", "line 1: the file ends before the last row of pixels"}};
  for (const auto& c : cases) {
    std::string error;
    EXPECT_EQ(readXpm(c.text, error).has_value(), *c.error == '\0') << c.text;
    EXPECT_EQ(error, c.error) << c.text;
  }
}

class Graphic : public CoachTest {
 protected:
  /// Three tiles beside each other, of which the middle one is transparent.
  Graphic() {
    const std::string file = testing::TempDir() + "graphic.xpm";
    std::ofstream(file) << R"("17 1 3 1""a c red""b c dark green"". c None""abaaaaaa........b")";
    setEntry("team_graphic", file.c_str());
    checkIn();
    setEntry("team_graphic", "");
  }

  /// What is sent of the picture in a cycle.
  std::string sentIn(long time) {
    hear(view(time));
    hear("(think)");
    const std::string sent = server.sent();
    return sent.substr(std::min(sent.find("(team_graphic "), sent.size()));
  }
};

TEST_F(Graphic, GoesOutTileByTileAndAgainWhereItWasNotConfirmed) {
  const std::string first = sentIn(0);
  EXPECT_TRUE(first.starts_with(
      R"((team_graphic (0 0 "8 8 3 1" "a c red" "b c dark green" "c c None" "abaaaaaa" "cccccccc")"))
      << first;
  hear("(ok team_graphic 0 0)");
  EXPECT_TRUE(
      sentIn(0).starts_with(R"((team_graphic (2 0 "8 8 2 1" "a c dark green" "b c None" "abb)"));
  EXPECT_TRUE(sentIn(0).starts_with("(team_graphic (2 0 ")) << "not confirmed";
  hear("(ok team_graphic 2 0)");
  EXPECT_EQ(sentIn(0), "");
  EXPECT_EQ(errors.take(), "Coach: the team graphic is complete\n");
}

TEST_F(Graphic, WaitsForTheNextKickOffWhereTheServerWantsThat) {
  hear("(hear 1 referee kick_in_l)");
  EXPECT_NE(sentIn(1), "") << "other servers may take it";
  hear("(warning only_before_kick_off)");
  EXPECT_EQ(sentIn(2), "");
  hear("(hear 3 referee before_kick_off)");
  EXPECT_NE(sentIn(3), "");
  hear("(error invalid_xpm_data)");
  EXPECT_EQ(sentIn(3), "");
}

}  // namespace
}  // namespace vok::test
