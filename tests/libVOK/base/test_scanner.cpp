// What fuzz_scanner does not hold against sscanf: odd numbers, and the exact values of plain ones.
#include "scanner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

namespace vok {
namespace {

TEST(Scanner, RefusesNumbersThatDoNotFitAndStaysBeforeThem) {
  const std::string huge = std::string(400, '1') + "e-5";
  for (const std::string text : {"inf", " -nan", "1e400", huge.c_str(), "+-1", "."}) {
    double value = 7;
    Scanner at(text);
    EXPECT_FALSE(at.real(value)) << text;
    EXPECT_EQ(value, 7) << text;
    EXPECT_EQ(at.rest(), text);
    EXPECT_EQ(at.atUnfitReal(), text.find_first_of("n4") != std::string::npos || text == huge);
  }
  int integer = 7;
  short small = 7;
  EXPECT_FALSE(Scanner("2147483648").integer(integer) || Scanner().integer(integer));
  EXPECT_FALSE(Scanner("32768").integer(small));
}

TEST(Scanner, ReadsTheNearestReal) {
  double value = 7;
  std::mt19937 random(41);
  for (int i = 0; i < 4000; ++i) {
    std::string number(1 + random() % 19, '0');
    for (char& digit : number) digit = static_cast<char>('0' + random() % 10);
    number.insert(1 + random() % number.size(), ".0");
    if (i % 2 == 1) number.insert(0, " -");
    ASSERT_TRUE(Scanner(number).real(value)) << number;
    ASSERT_EQ(value, std::strtod(number.c_str(), nullptr)) << number;
  }
  Scanner hexadecimal("0x10");
  EXPECT_TRUE(hexadecimal.real(value));
  EXPECT_EQ(hexadecimal.rest(), "x10");
  const std::string minute = "0." + std::string(400, '0') + "1";
  for (const std::string& tiny : {std::string("-1e-400"), minute, minute + "e+10"}) {
    EXPECT_TRUE(Scanner(tiny).real(value)) << tiny << ": too small is zero";
    EXPECT_EQ(value, 0) << tiny;
  }
}

TEST(Scanner, TakesAnExponentWithoutDigitsAlong) {
  for (const std::string text : {"1ex", "1E+x", "1e-x", "1.e5x", "1x"}) {
    double value = 7;
    Scanner at(text);
    EXPECT_TRUE(at.real(value)) << text;
    EXPECT_EQ(value, text == "1.e5x" ? 1e5 : 1) << text;
    EXPECT_EQ(at.rest(), "x") << text;
  }
}

}  // namespace
}  // namespace vok
