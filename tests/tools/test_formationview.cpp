#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "support/server.h"

namespace vok::test {
namespace {

std::string fileText(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Result {
  int status;
  std::string output;
  std::string errors;
};

/// Runs the program with arguments for the shell.
Result formationview(const std::string& arguments) {
  const std::string out = testing::TempDir() + "formationview" + std::to_string(getpid()) + ".out";
  const std::string err = out + ".err";
  const std::string program = VOK_BIN_DIR "/formationview ";
  const int status = std::system((program + ">" + out + " 2>" + err + " " + arguments).c_str());
  Result result = {WIFEXITED(status) ? WEXITSTATUS(status) : -1, fileText(out), fileText(err)};
  std::remove(out.c_str());
  std::remove(err.c_str());
  return result;
}

std::size_t count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

/// Where the only picture has a tactical number, as "x,y".
std::string placeOf(const std::string& svg, int number) {
  const std::string begin = "translate(";
  const auto label = svg.find(">" + std::to_string(number) + "</text>");
  const auto at = svg.rfind(begin, label);
  if (label == std::string::npos || at == std::string::npos) return "";
  const auto from = at + begin.size();
  return svg.substr(from, svg.find(')', from) - from);
}

const std::string config = std::string(shippedConfig) + " ";

TEST(Formationview, DrawsTenPlacesAndAreasColouredByRole) {
  const Result result = formationview(config + "--offside 10");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  for (int n = 2; n <= 11; ++n) EXPECT_NE(placeOf(result.output, n), "") << n;
  EXPECT_EQ(count(result.output, "<g transform="), 10U);
  EXPECT_EQ(count(result.output, "class='area'"), 10U);
  for (const auto& [colour, players] : {std::pair{"2456c8", 4U}, {"b87400", 4U}, {"c4281f", 2U}}) {
    EXPECT_EQ(count(result.output, std::string("fill='#") + colour), players);
  }
  // The band of a ball at the centre: 26.25 m that end 2 m behind the offside line.
  EXPECT_EQ(count(result.output,
                  ">Ball 0, 0. Band -18.2 to 8.0 (thin), our offside line 10.0 (dashed).<"),
            1U);
  // 3 rests at 2 + 2 per cent of it, at -0.42 + 0.02 of a width of 14.74887 m.
  EXPECT_EQ(placeOf(result.output, 3), "-17.2,-5.89955");
}

TEST(Formationview, ASweepIsOneSheetWithACaptionForEachBall) {
  const Result result = formationview("-f " + config + "--ball -40,0:40,8:5 --ball 52.5,-34");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(count(result.output, "<svg "), 1U);
  EXPECT_EQ(count(result.output, "class='picture'"), 6U);
  for (const char* ball : {"-40, 0", "-20, 2", "0, 4", "20, 6", "40, 8", "52.5, -34"}) {
    EXPECT_EQ(count(result.output, std::string(">Ball ") + ball + "."), 1U) << ball;
  }
  // Whatever the team did before, it settles in the same places.
  const std::string alone = formationview(config + "--ball 0,4").output;
  EXPECT_NE(result.output.find(placeOf(alone, 9)), std::string::npos);
}

TEST(Formationview, EitherHalfCanBeOfAnotherFormation) {
  const std::string shipped = formationview(config).output;
  const std::string mixed = formationview(config + "--form-def 2 --form-off 1").output;
  const std::string behind = formationview(config + "--form-def 2").output;
  for (int n = 2; n <= 11; ++n) {
    EXPECT_NE(placeOf(mixed, n), placeOf(shipped, n)) << n;
    EXPECT_EQ(placeOf(behind, n), placeOf(n <= 6 ? mixed : shipped, n)) << n;
  }
}

TEST(Formationview, WrongInputGetsOneLineAndStatus1) {
  const ChangedConfig huge("Form0_def_PosX", "1e308, 2, 2, 8, 32");
  for (const std::string& arguments : {std::string("no/such/file"),
                                       std::string("/"),
                                       config + config,
                                       config + "--bogus",
                                       config + "--ball",
                                       config + "--ball 1",
                                       config + "--ball 1,2,3",
                                       config + "--ball nan,0",
                                       config + "--ball 53,0",
                                       config + "--ball 0,0:",
                                       config + "--ball 0,0:1,1",
                                       config + "--ball 0,0:1,1:1",
                                       config + "--ball 0,0:1,1:101",
                                       config + "--form-def 3",
                                       config + "--form-off -1",
                                       config + "--offside -1",
                                       config + "--offside 1e999",
                                       config + "--out /no/such/file",
                                       config + "--out ''",
                                       config + ">/dev/full",
                                       huge.path}) {
    const Result result = formationview(arguments);
    EXPECT_EQ(result.status, 1) << arguments;
    EXPECT_EQ(lines(result.errors).size(), 1U) << arguments << "\n" << result.errors;
    EXPECT_TRUE(result.errors.starts_with("formationview: ")) << result.errors;
    EXPECT_EQ(result.output, "") << arguments;
  }
  EXPECT_EQ(formationview("--help").status, 0);
}

TEST(Formationview, AMissingKeyEndsItAsItEndsTheCoach) {
  const ChangedConfig incomplete("ourOffenders");
  const Result result = formationview(incomplete.path);
  EXPECT_EQ(result.status, 10);
  EXPECT_EQ(lines(result.errors).back(), "FATAL: no value for key 'ourOffenders' found.");
}

}  // namespace
}  // namespace vok::test
