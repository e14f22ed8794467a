#include "Config.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

namespace vok {
namespace {

/// What reading a file with this text writes to standard error.
std::string read(const std::string& text) {
  const std::string fileName = testing::TempDir() + "config-" + std::to_string(getpid());
  std::ofstream(fileName, std::ios::binary) << text;
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Config::readFile(fileName.c_str()));
  unlink(fileName.c_str());
  return testing::internal::GetCapturedStderr();
}

void expectEntries(const std::vector<std::pair<const char*, std::string>>& entries) {
  for (const auto& [key, value] : entries) EXPECT_EQ(Config::getValue(key), value) << key;
}

TEST(Config, TakesTheFirstWordAsKeyAndTheRestAsValue) {
  using namespace std::string_literals;
  EXPECT_EQ(read("a = 1 # = 2\nb c = 3\n\ttab=  \tx y \nequals==\ntwice=1\ntwice=2\nTwice=\n"
                 "nul = 1\0 rest = 2\n\0\n\0hidden = 1\nlast=7"s),
            "");
  expectEntries({{"a", "1 "}, {"b", "3"}, {"tab", "\tx y "}, {"equals", "="}, {"twice", "2"}});
  expectEntries({{"Twice", ""}, {"nul", "1"}, {"last", "7"}});
}

TEST(Config, ReportsLinesInErrorAndReadsOn) {
  // A line that is too long for one piece counts as several.
  const std::string longKey(255, 'k');
  EXPECT_EQ(read("\n \t\nfoo bar\n \t = 3\n# no = line\nlong=" + std::string(1023 - 5, 'x') +
                 "second=7\n" + longKey + "k=1"),
            "error parsing config file. line 3: can't find '=' sign.\n"
            "error parsing config file. line 4: can't parse key\n"
            "error parsing config file. line 6: value cut to 255 characters\n"
            "error parsing config file. line 8: key cut to 255 characters\n");
  expectEntries({{"long", std::string(255, 'x')}, {"second", "7"}, {longKey.c_str(), "1"}});
  EXPECT_FALSE(Config::readFile(testing::TempDir().c_str())) << "a directory";
}

TEST(Config, ConvertsTheLongestValidPrefix) {
  EXPECT_EQ(read("int = 12abc\nreal = 3.5\nblanks = -1 , 2e1 tail\t \nlist=1, +2.5,x, 4\n"), "");
  EXPECT_EQ(Config::getOptionalInt("int", 3) + Config::getValueAsInt("real"), 12 + 3);
  EXPECT_EQ(Config::getOptionalInt("nowhere", 3), 3);
  EXPECT_EQ(Config::getOptionalText("blanks", "x") + Config::getOptionalText("nowhere", "x"),
            "-1 , 2e1 tailx");
  EXPECT_EQ(Config::getValueAsVector("blanks"), Vector2d(-1, 20));
  EXPECT_EQ(Config::getValueAsDoubleFromList("list", 1), 2.5);
  EXPECT_EQ(Config::getValueAsIntFromList("list", 3), 4);
}

TEST(ConfigDeathTest, EndsTheProcessForAMissingOrMalformedValue) {
  read("word = x\nhuge = 99999999999\nspace = 1.0 2.0\ntwo = 1, 2\n");
  const std::pair<void (*)(), const char*> cases[] = {
      {[] { Config::getValueAsInt("none"); },
       "^WARNING: configuration entry for 'none' not found.\n"
       "FATAL: no value for key 'none' found.\n$"},
      {[] { Config::getOptionalInt("huge", 1); }, "'huge' not an integer.\n$"},
      {[] { Config::getValueAsDouble("word"); }, "value 'x' for key 'word' not a double.\n$"},
      {[] { Config::getValueAsVector("space"); }, "'1.0 2.0' for key 'space' not an vector.\n$"},
      {[] { Config::getValueAsDoubleFromList("two", 2); }, "has not enough entries for No: 2.\n$"}};
  for (const auto& [ask, line] : cases) EXPECT_EXIT(ask(), testing::ExitedWithCode(10), line);
  EXPECT_DEATH(Config::getValue(nullptr), "key");
}

}  // namespace
}  // namespace vok
