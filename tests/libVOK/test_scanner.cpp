// The scanner and the parser against sscanf with the server's formats, over mutated texts.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Parser.h"
#include "scanner.h"
#include "support/param_keeper.h"
#include "support/scanf_reference.h"
#include "support/server.h"

namespace vok::test {
namespace {

/// Well-formed texts and up to four edits of single characters. The letters of "inf", "nan" and
/// "0x" are not inserted: those numbers are read differently on purpose.
class Mutator {
 public:
  explicit Mutator(std::vector<std::string> someSeeds) : seeds(std::move(someSeeds)) {}

  std::string operator()() {
    static const std::string letters = " \t()\"\".-+eE0123456789tpbglr_,";
    std::string text = seeds[below(seeds.size())];
    for (std::size_t edits = below(5); edits > 0 && !text.empty(); --edits) {
      const std::size_t at = below(text.size());
      const char letter = letters[below(letters.size())];
      const std::size_t kind = below(4);
      if (kind == 0) text.erase(at, 1);
      if (kind == 1) text[at] = letter;
      if (kind == 2) text.insert(at, 1, letter);
      if (kind == 3 && below(4) == 0) text.resize(at);
    }
    return text;
  }

 private:
  std::size_t below(std::size_t n) { return rng() % n; }

  std::vector<std::string> seeds;
  std::mt19937 rng{20};
};

const std::vector<std::string> numberSeeds = {"12",  " -7 x", "+3.5e2)",  ".5", "6.06825e-16 0",
                                              "-0.", "1e+",   "\t-3E-2t", "",   "4.94066e-324"};

template <typename Number>
void expectAsScanf(const char* format, bool (Scanner::*step)(Number&)) {
  Mutator texts(numberSeeds);
  for (int i = 0; i < 8000; ++i) {
    const std::string text = texts();
    Number wanted{};
    Number got{};
    int consumed = 0;
    const bool read = std::sscanf(text.c_str(), format, &wanted, &consumed) == 1;
    long wide = 0;
    if (std::is_same_v<Number, short> && std::sscanf(text.c_str(), "%ld", &wide) == 1 &&
        wide != static_cast<long>(wanted))
      continue;
    if (!std::isfinite(static_cast<double>(wanted))) continue;

    Scanner at(text);
    ASSERT_EQ((at.*step)(got), read) << format << " of '" << text << "'";
    ASSERT_EQ(got, wanted) << format << " of '" << text << "'";
    ASSERT_EQ(text.size() - at.rest().size(), static_cast<std::size_t>(consumed)) << text;
  }
}

TEST(Scanner, ReadsNumbersAsScanfDoes) {
  expectAsScanf<int>("%d%n", &Scanner::integer);
  expectAsScanf<short>("%hd%n", &Scanner::integer);
  expectAsScanf<double>("%lf%n", &Scanner::real);
}

TEST(Scanner, RefusesNumbersThatDoNotFitAndStaysBeforeThem) {
  const std::string huge = std::string(400, '1') + "e-5";
  for (const std::string& text : {std::string("inf"), std::string(" -nan"), std::string("1e400"),
                                  huge, std::string("+-1"), std::string(".")}) {
    double value = 7;
    Scanner at(text);
    EXPECT_FALSE(at.real(value)) << text;
    EXPECT_EQ(value, 7) << text;
    EXPECT_EQ(at.rest(), text);
    EXPECT_EQ(at.atUnfitReal(), text.find_first_of("n4") != std::string::npos || text == huge);
  }
  int integer = 7;
  short small = 7;
  EXPECT_FALSE(Scanner("2147483648").integer(integer));
  EXPECT_FALSE(Scanner("32768").integer(small));
  EXPECT_FALSE(Scanner().integer(integer));

  double value = 7;
  Scanner hexadecimal("0x10");
  EXPECT_TRUE(hexadecimal.real(value));
  EXPECT_EQ(hexadecimal.rest(), "x10");
  const std::string minute = "0." + std::string(400, '0') + "1";
  for (const std::string& tiny : {std::string("-1e-400"), minute, minute + "e+10"}) {
    EXPECT_TRUE(Scanner(tiny).real(value)) << tiny << ": too small is zero";
    EXPECT_EQ(value, 0) << tiny;
  }
}

TEST(Scanner, ReadsTextsAsScanfDoes) {
  using Step = bool (*)(Scanner&, std::string_view&);
  const std::pair<const char*, Step> steps[] = {
      {" %99s%n", [](Scanner& s, std::string_view& found) { return s.word(found); }},
      {"%99[^)]%n", [](Scanner& s, std::string_view& found) { return s.until(')', found); }},
      {"%3[a-z]%n", [](Scanner& s, std::string_view& found) { return s.run(isLower, found, 3); }},
      {" ( %1[o]ur %n", [](Scanner& s, std::string_view& found) {
         found = "o";
         return s.pattern(" ( our ");
       }}};
  Mutator texts({" our  (p \"Alpha\" 3) x", "(our", "\tword)", "( our)"});
  for (int i = 0; i < 8000; ++i) {
    const std::string text = texts();
    for (const auto& [format, step] : steps) {
      char wanted[100] = "";
      int consumed = 0;
      std::sscanf(text.c_str(), format, wanted, &consumed);
      std::string_view found;
      Scanner at(text);
      ASSERT_EQ(step(at, found), consumed > 0) << format << " of '" << text << "'";
      ASSERT_EQ(text.size() - at.rest().size(), static_cast<std::size_t>(consumed)) << text;
      ASSERT_EQ(consumed > 0 ? found : wanted, wanted) << text;
    }
  }
}

TEST(ParserAgainstScanf, ReadsTheSameGlobalView) {
  Mutator texts(
      {"((g r) 52.5 0) ((b) 6.06825e-16 -0 0 0) ((p \"Alpha\" 1 goalie) -50 0 0 0 45 10))",
       "((p \"Beta\" 11) -3.5 12 0.25 -1e-05 -110 7 90 t) ((B) 0 0 0 0))",
       "( (p \"Alpha\" 7) 1 2 3 4 -180 0 t) ((P \"A-_b\" 10)1 2 3 4 5 6 70) )"});
  const StderrCapture quiet;
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  int understood = 0;
  for (int i = 0; i < 10000; ++i) {
    const std::string list = texts();
    SensorData wanted;
    SensorData got;
    bool isFinite = true;
    const bool read = scanView(list.c_str(), wanted, isFinite);
    if (!isFinite) continue;
    ASSERT_EQ(parser.parseServerString("(see_global 5 " + list, got), read) << list;
    ASSERT_EQ(motion(got.exactball), motion(wanted.exactball)) << list;
    for (std::size_t g = 0; g < 2; ++g)
      ASSERT_EQ(motion(got.exactgoal[g]), motion(wanted.exactgoal[g])) << list;
    for (std::size_t p = 0; p < 3; ++p) {
      ASSERT_EQ(motion(got.exactplayer[p]), motion(wanted.exactplayer[p])) << list;
      ASSERT_EQ(person(got.exactplayer[p]), person(wanted.exactplayer[p])) << list;
    }
    understood += read ? 1 : 0;
  }
  EXPECT_GT(understood, 2000);
}

TEST(ParserAgainstScanf, HearsTheSame) {
  Mutator texts({"referee kick_off_l)", "referee goal_r_12)", "coach hello all)", "self \"a(b)\")",
                 "online_coach_right (info (1))", "online_coach_left (freeform \"a b.+*/?<>_\"))",
                 "our 7)", "opp)", "-190 our 7 \"abc\")", "12.5 opp \"a-b\")", "80 \"p3\")",
                 "(  ) \"blank\")", "(p \"Alpha\" 3) \"p3l45\")",
                 "( p \"Beta\" 1 goalie) \"(x)\")"});
  const StderrCapture quiet;
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  int understood = 0;
  for (int i = 0; i < 12000; ++i) {
    const std::string text = texts();
    if (text.empty() || isBlank(text[0])) continue;  // belongs to the head
    Heard wanted;
    SensorData got;
    const bool read = scanHeard(text.c_str(), wanted);
    ASSERT_EQ(parser.parseServerString("(hear 62 " + text, got), read) << text;
    if (!read) continue;
    ++understood;
    ASSERT_EQ(got.sender, wanted.sender) << text;
    ASSERT_STREQ(got.message.data(), wanted.text) << text;
    ASSERT_STREQ(got.sender_name.data(), wanted.name) << text;
    ASSERT_EQ(got.sender_num, shirt(wanted.number)) << text;
    ASSERT_EQ(got.score, wanted.score) << text;
    if (wanted.direction < NO_ANGLE) continue;  // no such angle in a view
    ASSERT_EQ(got.sender_dir, radians(wanted.direction)) << text;
  }
  EXPECT_GT(understood, 4000);
}

/// Two items a text, so that every row is seen in both places.
std::vector<std::string> itemSeeds(const std::vector<Token>& rows) {
  std::vector<std::string> items;
  for (const Token& row : rows) {
    const std::string format(row.fmt);
    const std::size_t keyEnd = format.find_first_of(" %", 1);
    const char* value = format.find("lf") != std::string::npos     ? " -0.25)"
                        : format.find("[^)]") != std::string::npos ? " \"./\")"
                                                                   : " 3)";
    items.push_back(format.substr(1, keyEnd - 1) + value);
  }
  std::vector<std::string> pairs;
  for (std::size_t i = 0; i < items.size(); ++i)
    pairs.push_back(items[i] + items[items.size() - 1 - i]);
  return pairs;
}

TEST(ParserAgainstScanf, StoresTheSameParameters) {
  const ParamKeeper keeper;
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  const auto compare = [&](const std::vector<Token>& rows, const std::string& head, auto parse) {
    Mutator texts(itemSeeds(rows));
    for (int i = 0; i < 2000; ++i) {
      const std::string items = texts();
      scanParams(items.c_str(), rows);
      const std::vector<double> wanted = ParamKeeper::values();
      keeper.restore();
      ASSERT_TRUE((parser.*parse)(head + items));
      ASSERT_EQ(ParamKeeper::values(), wanted) << items;
      keeper.restore();
    }
  };
  compare(Parser::serverParamTokens, "(server_param ", &Parser::parseServerParam);
  compare(Parser::playerParamTokens, "(player_param ", &Parser::parsePlayerParam);
}

}  // namespace
}  // namespace vok::test
