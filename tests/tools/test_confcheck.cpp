// The shipped configuration with one line changed, and every line that the program prints about it.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "support/server.h"

namespace vok::test {
namespace {

/// Runs the program with arguments for the shell: its status, and what it wrote on both streams.
std::pair<int, std::string> confcheck(const std::string& arguments) {
  return runCommand(VOK_BIN_DIR "/confcheck " + arguments);
}

/// The shipped file with one line replaced: what is found, each with its line, counted from the
/// first replaced one, and '-' for none; and how many of the findings end the coach.
void expectFindings(const std::string& begin, const std::string& text, const Lines& findings,
                    int fatal = 0) {
  const ChangedConfig changed(begin, text);
  ASSERT_GT(changed.line, 0) << begin;
  std::string expected;
  for (const std::string& found : findings) {
    const std::string line = ":" + std::to_string(changed.line + found[0] - '0');
    expected += changed.path + (found[0] == '-' ? "" : line) + ": " + found.substr(2) + "\n";
  }
  expected += changed.path + (findings.empty()
                                  ? ": all is well with its 205 keys\n"
                                  : ": " + std::to_string(findings.size()) + " found, of which " +
                                        std::to_string(fatal) + " end the coach\n");
  EXPECT_EQ(confcheck(changed.path), std::pair(findings.empty() ? 0 : 1, expected));
}

TEST(Confcheck, TellsWhatIsWrongAndWhere) {
  using namespace std::string_literals;
  expectFindings("Form1_off_Watch3", "form1_OFF_Wtch4 = -1, -1, -1, -1, -1",
                 {"0 nothing asks for 'form1_OFF_Wtch4'; is 'Form1_off_Watch3' meant?",
                  "- no value for key 'Form1_off_Watch3' found."},
                 1);
  expectFindings("# --- Passes", "goal_mxg = 1\ncolor\x1b = 1",
                 {"0 nothing asks for 'goal_mxg'", "1 nothing asks for 'color\\x1b'"});
  // The last definition counts, whether it is right or wrong.
  expectFindings("goal_maxAge", "goal_maxAge = 3\n\ngoal_maxAge = x",
                 {"0 'goal_maxAge' does not count: it is defined again in line 48",
                  "2 value 'x' for key 'goal_maxAge' not an integer."},
                 1);
  expectFindings("Form1_off_PosX", "Form1_off_PosX = 1, 2, 3, 4",
                 {"0 'Form1_off_PosX' has only 4 of the 5 values that are read"}, 1);
  expectFindings("Form1_off_PosX", "Form1_off_PosX = 1, 2, 3,5 6, 4, 5",
                 {"0 of '5 6' for key 'Form1_off_PosX' only '5' is read",
                  "0 'Form1_off_PosX' has 6 values, of which only 5 are read"});
  expectFindings("ourOffenders", "ourOffenders = 3",
                 {"0 the head counts 4 + 2 + 2 + 3 make 11 field players, not ten"});
  // Lines keep their numbers, though the configuration reads long ones in pieces.
  expectFindings(
      "# --- Passes", "no equals sign\n# " + std::string(1100, 'x') + "\nnul = 1\0\n"s,
      {"0 can't find '=' sign.",
       "1 line longer than 1023 characters: what is behind them counts as a line of its own",
       "1 can't find '=' sign.", "2 a NUL byte ends the line", "2 nothing asks for 'nul'"});
}

TEST(Confcheck, TellsWhichNumbersMakeNoSense) {
  const std::string wish = ", more than 0.2 from what any type can have, -0.1 to 0.1";
  for (const auto& [key, value, problem] :
       {std::tuple("#types_withinLimits", "2", std::string(", not 0 or 1")),
        {"Form1_off_tact", "1, 2, 0, 4, 3", ", not 0, 1, 2 or 4"},
        {"Form2_def_Watch2", "-1, 11, 1, 2, 12", ", not a tactical number or -1"},
        {"StartFormationOff", "3", ", but there is no such formation: 0 is taken"},
        {"async_waitForSeeTime", "45", ", not 0, 10, ... or 90"},
        {"player2_decay_inertia_delta", "0.4", wish},
        {"player3_extra_stamina_effort_weight", "-0.5", ", not 0 or more"}}) {
    const std::string name = key[0] == '#' ? key + 1 : key;
    const std::string last = std::string(value).substr(std::string(value).find_last_of(' ') + 1);
    expectFindings(key, name + " = " + value, {"0 '" + name + "' is " + last + problem});
  }
  expectFindings("player3_extra_stamina_effort_delta", "player3_extra_stamina_effort_delta = 200",
                 {});
}

TEST(Confcheck, NeedsTheWishesOnlyWhereTypesAreGiven) {
  for (const auto& [number, status] : {std::pair("0", 0), std::pair("1", 1), std::pair("x", 1)}) {
    const std::string changed =
        std::string("sed '/^player/d; s/^use_.*/use_heterogenous_players = ") + number + "/' " +
        SHIPPED_CONFIG;
    EXPECT_EQ(runCommand(changed + " | " VOK_BIN_DIR "/confcheck -").first, status) << number;
  }
}

TEST(Confcheck, AcceptsEveryShippedFileAndMissesAllKeysInAnEmptyOne) {
  for (const auto& entry : std::filesystem::directory_iterator(VOK_SOURCE_DIR "/conf")) {
    EXPECT_EQ(confcheck(entry.path().string()).first, 0) << entry.path();
  }
  const auto [status, output] = confcheck("/dev/null");
  EXPECT_EQ(status, 1);
  EXPECT_TRUE(output.ends_with("/dev/null: 205 found, of which 205 end the coach\n")) << output;
}

TEST(Confcheck, ListsTheKeysAndWhatIsReadFromEach) {
  const std::regex whole(
      "async_.*|world_.*|our.*|tac_.*|types_.*|use_.*|goal_max(Age|Kick.*|Sim.*)|"
      "pass_maxKickDuration|.*_score_.*|StartFormation.*|Form.*(_tact|_Watch.)");
  const Lines keys = lines(confcheck("--keys").second);
  EXPECT_EQ(keys.size(), 207U);
  for (const std::string& line : keys) {
    const std::string key = line.substr(0, line.find(':'));
    const bool isOptional = key == "tac_typesFromDecay" || key == "types_withinLimits";
    EXPECT_EQ(line, key + (key.starts_with("Form") ? ": list of 5, each a " : ": ") +
                        (std::regex_match(key, whole) ? "whole number" : "number") +
                        (isOptional ? ", optional" : ""));
  }
}

}  // namespace
}  // namespace vok::test
