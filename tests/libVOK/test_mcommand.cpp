#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "mcommand.h"

using namespace vok;

TEST(MCommand, EachIsOneText) {
  const Vector2d a(1, -2);
  const Vector2d b(0.25, 34);
  const std::string longText(300, 'x');
  const std::vector<std::pair<MCommand, std::string>> texts = {
      {MLog("hello", 7), "(log hello)"},
      {MMarker(a, "here\"there", 5), "(mark 5 ( 1, -2 )\"here\" )"},
      {MMarker(a, longText.c_str(), 5), "(mark 5 ( 1, -2 )\"" + longText.substr(0, 200) + "\" )"},
      {MDPosition(a, 5), "(pos 5 ( 1, -2 ))"},
      {MDCircle(a, 9.15, true, MDot, 5), "(cir 5 ( 1, -2 ) 9.15 1 2)"},
      {MDLine(a, b, MSolid, 5), "(line 5 ( 1, -2 ) ( 0.25, 34 ) 0)"},
      {MDVLine(10.5, MDash, 20), "(vline 20 10.5 1)"},
      {MDBox(a, b, MDashDot, 5), "(box 5 ( 1, -2 ) ( 0.25, 34 ) 3)"},
      {MDCorridor(a, b, 2, Angle(0.5), MDashDotDot, 5), "(corr 5 ( 1, -2 ) ( 0.25, 34 ) 2 0.5 4)"},
      {MDLabel(a, "free text", 5), "(lab 5 ( 1, -2 ) free text)"},
      {MStop(), "(stop)"},
      {MDropBall({1.0 / 3, -52.123456}), "(drball 1 ( 0.333333, -52.1235 ))"},
      {MFreekickUs(a), "(fkus 1 ( 1, -2 ))"},
      {MFreekickThem(a), "(fkth 1 ( 1, -2 ))"},
      {MSetPlayer(true, 11, a, Angle(-1)), "(setpl 1 11 1 ( 1, -2 ) -1)"},
      {MELog(3, 42, "pass", "to", "7", "a \"good\" one", 9),
       "(elog 3  42 pass to 7 \"a 'good' one\")"},
  };
  for (const auto& [command, text] : texts) {
    std::ostringstream out;
    out << command;
    EXPECT_EQ(out.str(), text);
  }
}
