// The shipped configuration with one line changed, and every line that the program prints about it.
#include <gtest/gtest.h>

#include "support/server.h"

namespace vok::test {
namespace {

const std::string CONFCHECK = VOK_BIN_DIR "/confcheck ";

/// The shipped file with one line replaced: what is found, each with its line, counted from the
/// first replaced one, and '-' for none; and '!' behind it when it ends the coach. In the text '@2'
/// stands for the number of the second line after that.
void expectFindings(const std::string& begin, const std::string& text, const Lines& findings) {
  const ChangedConfig changed(begin, text);
  ASSERT_GT(changed.line, 0) << begin;
  std::string expected;
  int fatal = 0;
  for (const std::string& found : findings) {
    fatal += found[1] == '!';
    const std::string line = ":" + std::to_string(changed.line + found[0] - '0');
    std::string what = found.substr(2);
    if (const std::size_t at = what.find('@'); at != std::string::npos)
      what.replace(at, 2, std::to_string(changed.line + what[at + 1] - '0'));
    expected += changed.path + (found[0] == '-' ? "" : line) + ": " + what + "\n";
  }
  expected += changed.path + (findings.empty()
                                  ? ": all is well with its 218 keys\n"
                                  : ": " + std::to_string(findings.size()) + " found, of which " +
                                        std::to_string(fatal) + " end the coach\n");
  EXPECT_EQ(runCommand(CONFCHECK + changed.path), std::pair(findings.empty() ? 0 : 1, expected));
}

TEST(Confcheck, TellsWhatIsWrongAndWhere) {
  using namespace std::string_literals;
  expectFindings("Form1_off_Watch3", "form1_OFF_Wtc4 = -1, -1, -1, -1, -1",
                 {"0 nothing asks for 'form1_OFF_Wtc4'; is 'Form1_off_Watch3' meant?",
                  "-!no value for key 'Form1_off_Watch3' found."});
  // The last definition counts, whether it is right or wrong.
  expectFindings("goal_maxAge", "goal_maxAge = 3\n\ngoal_maxAge = x",
                 {"0 'goal_maxAge' does not count: it is defined again in line @2",
                  "2!value 'x' for key 'goal_maxAge' not an integer."});
  expectFindings("Form1_off_PosX", "Form1_off_PosX = 1, 2, 3, 4",
                 {"0!'Form1_off_PosX' has only 4 of the 5 values that are read"});
  expectFindings("Form1_off_PosX", "Form1_off_PosX = 1, 2, 3,5 6, 4, 5",
                 {"0 of '5 6' for key 'Form1_off_PosX' only '5' is read",
                  "0 'Form1_off_PosX' has 6 values, of which only 5 are read"});
  expectFindings("ourOffenders", "ourOffenders = 1",
                 {"0 the head counts 4 + 2 + 2 + 1 make 9 field players, not ten"});
  expectFindings("team_graphic", "team_graphic = /dev/null",
                 {"0 'team_graphic' is '/dev/null': cannot be read, or is empty"});
  // Lines keep their numbers, though the configuration reads long ones in pieces.
  expectFindings(
      "# --- Passes",
      "no equals sign\n# " + std::string(1100, 'x') + "\nn\x1b = 1\0\ngoal_mxg = 1"s,
      {"0 can't find '=' sign.",
       "1 line longer than 1023 characters: what is behind them counts as a line of its own",
       "1 can't find '=' sign.", "2 a NUL byte ends the line", "2 nothing asks for 'n\\x1b'",
       "3 nothing asks for 'goal_mxg'"});
}

TEST(Confcheck, TellsWhichNumbersMakeNoSense) {
  const std::string wish = ", more than 0.2 from what any type can have, -0.1 to 0.1";
  for (const auto& [text, problem] :
       {std::pair("types_withinLimits = 2", std::string("2, not 0 or 1")),
        {"Form1_off_tact = 1, 2, 0, 4, 3", "3, not 0, 1, 2 or 4"},
        {"Form2_def_Watch2 = -1, 11, 1, 2, 12", "12, not a tactical number or -1"},
        {"StartFormationOff = 3", "3, but there is no such formation: 0 is taken"},
        {"async_waitForSeeTime = 45", "45, not 0, 10, ... or 90"},
        {"skill_staminaCapacity = -1", "-1, not 0 or more"},
        {"types_byAbility = 3", "3, not 0, 1 or 2"},
        {"ability_defender = 1, 1, -1, 1, 1, 1, 0.4", "-1, not 0 to 10"},
        {"player2_decay_inertia_delta = 0.4", "0.4" + wish},
        {"player3_extra_stamina_effort_weight = -0.5", "-0.5, not 0 or more"}}) {
    const std::string line = text;
    const std::string key = line.substr(0, line.find(' '));
    expectFindings(key, line, {"0 '" + key + "' is " + problem});
  }
  expectFindings("player3_extra_stamina_effort_d", "player3_extra_stamina_effort_delta = 200", {});
}

TEST(Confcheck, NeedsTheWishesOnlyWhereTypesAreGiven) {
  const std::string withoutWishes = "sed '/^player/d; s/^use_.*/use_heterogenous_players = ";
  for (const auto& [number, status] : {std::pair("0", 0), std::pair("1", 1), std::pair("x", 1)}) {
    const std::string changed = withoutWishes + number + "/' " + SHIPPED_CONFIG;
    EXPECT_EQ(runCommand(changed + " | " + CONFCHECK + "-").first, status) << number;
  }
  EXPECT_TRUE(runCommand(CONFCHECK + "/dev/null").second.ends_with("of which 205 end the coach\n"));
}

TEST(Confcheck, ListsTheKeysAndWhatIsReadFromEach) {
  const std::string keys = runCommand(CONFCHECK + "--keys").second;
  for (const auto& [kind, times] : {std::pair("list of 5, each a whole number", 24U),
                                    {"whole number", 32U},
                                    {"whole number, optional", 8U},
                                    {"text, optional", 2U}})
    EXPECT_EQ(count(keys, std::string(": ") + kind + "\n"), times) << kind;
}

}  // namespace
}  // namespace vok::test
