// The command lines of all tools, which one table reads.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <tuple>

#include "support/server.h"

namespace vok::test {
namespace {

/// Runs a tool with arguments for the shell: its status, and what it wrote on both streams.
std::pair<int, std::string> run(const std::string& toolAndArguments) {
  return runCommand(VOK_BIN_DIR "/" + toolAndArguments + " </dev/null");
}

TEST(CommandLines, HelpAndVersionAreShownByEveryTool) {
  for (const std::string tool : {"confcheck", "formationview", "heterotable", "matchreport",
                                 "practicematch", "saydecode", "seecheck", "typecheck"}) {
    const auto [status, help] = run(tool + " --help");
    EXPECT_EQ(status, 0) << tool;
    EXPECT_TRUE(help.starts_with("Usage: " + tool + " ")) << help;
    EXPECT_EQ(run(tool + " --version"), std::pair(0, tool + " (VOK) " VOK_VERSION "\n"));
    EXPECT_EQ(run(tool + " --bogus").first, 2) << tool;
  }
}

TEST(CommandLines, AWrongOneGetsOneLineAndStatus2) {
  const std::string recording = VOK_SOURCE_DIR "/tests/data/realtime_left.txt";
  const ScriptedServer taken;
  const std::string port = std::to_string(taken.port());
  const ChangedConfig huge("Form0_def_PosX", "Form0_def_PosX = 1e308, 2, 2, 8, 32");
  // How the line goes on behind "TOOL: ".
  std::vector<std::tuple<std::string, std::string, int>> cases = {
      {"confcheck", "wants one FILE, or --keys", 2},
      {"confcheck a b", "unexpected argument 'b'", 2},
      {"confcheck " VOK_SOURCE_DIR, VOK_SOURCE_DIR ": cannot be read", 2},
      {"formationview no/such", "cannot read the configuration 'no/such'", 2},
      {std::string("formationview --out no/such/file ") + SHIPPED_CONFIG,
       "cannot write 'no/such/file'", 2},
      {"formationview " + huge.path, "the formation's values are too large to draw", 1},
      {"heterotable -f no/such " + recording, "no/such: cannot be read", 2},
      {std::string("heterotable -f ") + SHIPPED_CONFIG + " no/such", "no/such: cannot be read", 2},
      {std::string("heterotable -f ") + SHIPPED_CONFIG + " " + SHIPPED_CONFIG,
       std::string(SHIPPED_CONFIG) + ": names no player types", 1},
      {"matchreport", "SOURCE... is missing", 2},
      {"matchreport --json no/such/file a", "no/such/file cannot be written", 2},
      {"matchreport no/such", "no/such cannot be opened", 1},
      {"practicematch --quiet=1", "--quiet has no value", 2},
      {"practicematch --synch --step 10", "--synch does not go with --step", 2},
      {"practicematch --speed 2", "--speed goes only with --replay", 2},
      {"practicematch --port " + port, "port " + port + ": ", 1},
      {"practicematch --replay no/such", "--replay no/such: cannot be opened", 2},
      {"practicematch --synch --replay " + recording, "--synch: " + recording + " was rec", 2},
      {"saydecode '--a\x1b'", "unknown option '--a\\x1b'", 2},
      {"saydecode --svg no/such/file -- a", "no message found", 1},
      {"seecheck no/such b", "no/such: cannot be opened", 2},
      {"seecheck " + recording + " b", recording + ": line 1 is not", 2},
      {"typecheck a b --side l", "--team is missing", 2},
      {"typecheck no/such b --team A --side l", "no/such: cannot be opened", 2},
  };
  for (const auto& [option, values] :
       {std::pair("formationview --ball", "1,2,3 nan,0 0,0:1,1:1 0,0:1,1:101 52.6,0 0,-34.1"),
        {"formationview --form-def", "3 -1 1x"},
        {"formationview --offside", "-0.1 52.6"},
        {"practicematch --cycles", "1 100001"},
        {"practicematch --team", "a.b sixteen-letters-"},
        {"typecheck --side", "x"}}) {
    const std::string name = std::string(option).substr(std::string(option).find("--"));
    cases.emplace_back(option, name + " needs a value", 2);
    std::istringstream words(values);
    for (std::string value; words >> value;)
      cases.emplace_back(option + (" " + value), name + " cannot be '" + value + "'", 2);
  }
  for (const auto& [arguments, line, status] : cases) {
    const auto [ended, output] = run(arguments);
    EXPECT_EQ(ended, status) << arguments;
    EXPECT_EQ(lines(output).size(), 1U) << output;
    EXPECT_EQ(output.find(": " + line), arguments.substr(0, arguments.find(' ')).size()) << output;
  }
  const auto [status, output] = run("practicematch --quiet --port 0 --wait 1");
  EXPECT_EQ(status, 1);
  EXPECT_TRUE(output.ends_with("practicematch: no coach came within 1 s\n")) << output;
}

TEST(CommandLines, NoProgramShowsControlCharactersOfItsInputRaw) {
  const ChangedConfig config(
      "Form0_def_PosX", "key" + CONTROLS + "=1\n" + CONTROLS + "\nForm0_def_PosX = 1," + CONTROLS);
  const std::string recording = testing::TempDir() + "vok-" + std::to_string(getpid()) + ".txt";
  std::ofstream(recording) << "0\t(init l ok)\n0\t" << SERVER_PARAM << "\n0\t" << PLAYER_PARAM
                           << "\n0\t(see_global 1 ((p \"" << CONTROLS << "\" 1) 0 0 0 0 0 0))\n0\t("
                           << CONTROLS << ")\n";
  for (const std::string& command : {"confcheck " + config.path, "formationview " + config.path,
                                     "onlinecoach -p 0 -f " + config.path,
                                     "practicematch --port 0 --wait 1 --replay " + recording,
                                     "typecheck --team A --side l " + recording +
                                         " " VOK_SOURCE_DIR "/tests/data/types_left.truth.tsv"}) {
    const std::string output = run(command).second;
    EXPECT_TRUE(isPlain(output)) << testing::PrintToString(output);
    EXPECT_GT(count(output, SHOWN_CONTROLS), 0U) << output;
  }
  EXPECT_TRUE(isPlain(runCommand(VOK_BIN_DIR "/saydecode <" + recording).second));
  std::remove(recording.c_str());
}

// Whole pictures are compared with those in docs/.
TEST(CommandLines, AFormationIsDrawnForBallsInARowAndAnOffsideLine) {
  const std::string options = " --offside 10 --ball -40,0:40,8:5 --ball 0,0";
  const std::string sheet = run("formationview " + (SHIPPED_CONFIG + options)).second;
  for (const char* ball : {"-40, 0.", "-20, 2.", "40, 8.", "0, 0. Band -18.2 to 8.0 (thin), our"})
    EXPECT_EQ(count(sheet, std::string(">Ball ") + ball), 1U) << ball;
}

}  // namespace
}  // namespace vok::test
