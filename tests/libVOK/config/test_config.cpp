#include "Config.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace vok {
namespace {

/// What reading a file with this text writes to standard error.
std::string read(const std::string& text) {
  const std::string fileName = testing::TempDir() + "config-" + std::to_string(getpid());
  std::ofstream(fileName, std::ios::binary) << text;
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Config::readFile(fileName.c_str()));
  std::remove(fileName.c_str());
  return testing::internal::GetCapturedStderr();
}

TEST(Config, TakesTheFirstWordAsKeyAndTheRestAsValue) {
  EXPECT_EQ(read("a = 1 # = 2\nb c = 3\n\ttab=  \tx y \nequals==\n#\ntwice=1\ntwice=2\nTwice="),
            "");
  const std::pair<const char*, const char*> entries[] = {
      {"a", "1 "}, {"b", "3"}, {"tab", "\tx y "}, {"equals", "="}, {"twice", "2"}, {"Twice", ""}};
  for (const auto& [key, value] : entries) EXPECT_STREQ(Config::getValue(key), value);
}

TEST(Config, ReportsLinesInErrorAndReadsOn) {
  EXPECT_EQ(read("\n \t\nfoo bar\n=5\n \t = 3\n# no = line\nbehindErrors=1"),
            "error parsing config file. line 3: can't find '=' sign.\n"
            "error parsing config file. line 4: can't parse key\n"
            "error parsing config file. line 5: can't parse key\n");
  EXPECT_EQ(Config::getValueAsInt("behindErrors"), 1);

  // A line that is too long for one piece counts as several.
  const std::string longKey(255, 'k');
  EXPECT_EQ(read("long=" + std::string(1023 - 5, 'x') + "second=7\nbad\n" + longKey + "k=1"),
            "error parsing config file. line 1: value cut to 255 characters\n"
            "error parsing config file. line 3: can't find '=' sign.\n"
            "error parsing config file. line 4: key cut to 255 characters\n");
  EXPECT_EQ(Config::getValue("long"), std::string(255, 'x'));
  EXPECT_EQ(Config::getValueAsInt("second"), 7);
  EXPECT_EQ(Config::getValueAsInt(longKey.c_str()), 1);
}

TEST(Config, SurvivesNulBytesAndADirectory) {
  using namespace std::string_literals;
  EXPECT_EQ(read("nul = 1\0 rest = 2\n\0\n\0hidden = 1\nafterNul = 2\n"s), "");
  EXPECT_STREQ(Config::getValue("nul"), "1");
  EXPECT_EQ(Config::getValueAsInt("afterNul"), 2);
  EXPECT_FALSE(Config::readFile(testing::TempDir().c_str()));
  EXPECT_FALSE(Config::readFile((testing::TempDir() + "no/such/file").c_str()));
}

TEST(Config, KeepsAValueInPlaceWhileOthersAreAdded) {
  setEntry("stays", "here");
  const char* value = Config::getValue("stays");
  for (int i = 0; i < 1000; ++i) setEntry(("other" + std::to_string(i)).c_str(), "1");
  EXPECT_EQ(Config::getValue("stays"), value);
  EXPECT_STREQ(value, "here");
}

TEST(Config, ConvertsTheLongestValidPrefix) {
  read("int = 12abc\nreal = 3.5\nvector = 1.0,2.0\nblanks = -1 , 2e1 tail\nlist=1, +2.5,x, 4\n");
  EXPECT_EQ(std::pair(Config::getValueAsInt("int"), Config::getValueAsInt("real")),
            std::pair(12, 3));
  EXPECT_EQ(Config::getValueAsDouble("real"), 3.5);
  EXPECT_EQ(Config::getValueAsVector("vector"), Vector2d(1, 2));
  EXPECT_EQ(Config::getValueAsVector("blanks"), Vector2d(-1, 20));
  EXPECT_EQ(Config::getValueAsDoubleFromList("list", 1), 2.5);
  EXPECT_EQ(Config::getValueAsIntFromList("list", 3), 4);
  testing::internal::CaptureStderr();
  EXPECT_EQ(Config::getOptionalInt("int", 3), 12);
  EXPECT_EQ(Config::getOptionalInt("nowhere", 3), 3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ConfigDeathTest, EndsTheProcessForAMissingOrMalformedValue) {
  read("word = x\nhuge = 99999999999\nfar = 1e999\nspace = 1.0 2.0\ntwo = 1, 2\n");
  const std::pair<void (*)(), const char*> cases[] = {
      {[] { Config::getValueAsInt("none"); },
       "^WARNING: configuration entry for 'none' not found.\n"
       "FATAL: no value for key 'none' found.\n$"},
      {[] { Config::getOptionalInt("word", 1); }, "^FATAL: value 'x' for key 'word' not an int"},
      {[] { Config::getValueAsInt("huge"); }, "not an integer.\n$"},
      {[] { Config::getValueAsDouble("word"); },
       "FATAL: value 'x' for key 'word' not a double.\n$"},
      {[] { Config::getValueAsDouble("far"); }, "not a double.\n$"},
      {[] { Config::getValueAsVector("space"); },
       "value '1.0 2.0' for key 'space' not an vector.\n$"},
      {[] { Config::getValueAsDoubleFromList("two", 2); },
       "value '1, 2' for key 'two' has not enough entries for No: 2.\n$"}};
  for (const auto& [ask, line] : cases) EXPECT_EXIT(ask(), testing::ExitedWithCode(10), line);
  EXPECT_DEATH(Config::getValue(nullptr), "key");
}

}  // namespace
}  // namespace vok
