// What the pages in docs/ show is compared with the programs and the library.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "Parser.h"
#include "mcommand.h"
#include "playmodes.h"
#include "support/server.h"
#include "support/world.h"

namespace vok::test {
namespace {

/// What a command of the shell writes that runs in the sources' folder.
std::string shown(const std::string& command) {
  const auto [status, output] = runCommand("cd " VOK_SOURCE_DIR " && " + command);
  EXPECT_EQ(status, 0) << command;
  return output;
}

/// What the expression's group matches in a text, each time.
Lines all(const std::string& text, const char* expression) {
  const std::regex wanted(expression);
  return {std::sregex_token_iterator(text.begin(), text.end(), wanted, 1), {}};
}

/// The text between the lines "```name" and "```".
std::string block(const std::string& page, const std::string& name) {
  return all(page, ("```" + name + "\n([^`]*)```\n").c_str()).at(0);
}

TEST(SayMessagePage, ReadsInItsTableAndInTheProgramAsItSays) {
  const std::string page = shown("cat docs/say-message.md");
  std::string joined;
  for (const std::string& part : all(page, R"(\n\| \d+ \| `(.*?)` \|)")) {
    const std::string place = std::to_string(joined.size());
    EXPECT_EQ(count(page, "\n| " + place + " | `" + part + "` |"), 1U) << part;
    joined += part;
  }
  EXPECT_EQ(joined + "\n", block(page, "message"));
  EXPECT_EQ(shown(VOK_BIN_DIR "/saydecode --svg /dev/stdout " + joined),
            block(page, "output") + shown("cat docs/say-message.svg"));
}

/// The names that the expression finds. The keys of all formations have one form, and of all
/// players.
std::set<std::string> namesIn(const std::string& text, const char* expression) {
  const std::regex varying("^(Form[0-2]_(def|off)|FormN_HALF|player([2-9]|10|11|N)_)");
  std::set<std::string> keys;
  for (const std::string& key : all("\n" + text, expression))
    keys.insert(std::regex_replace(key, varying, key.substr(0, 4)));
  return keys;
}

TEST(ConfigurationPage, HasTheKeysThatTheCoachAsksForAsTheShippedFileDoes) {
  const auto asked = namesIn(shown(VOK_BIN_DIR "/confcheck --keys"), R"(\n(\w+):)");
  EXPECT_EQ(namesIn(shown("cat docs/configuration.md"), R"(\n\| `(\w+)` \|)"), asked);
  EXPECT_EQ(namesIn(shown("cat conf/agent.conf"), R"(\n(\w+) =)"), asked);
}

TEST(ConfigurationPage, ShowsThePicturesThatItsCommandsDraw) {
  const auto commands =
      all(shown("cat docs/configuration.md"), "\n    build/bin/(formationview [^\n]*)");
  ASSERT_EQ(commands.size(), 3U);
  for (const std::string& command : commands) {
    const std::size_t out = command.find(" --out ");
    EXPECT_EQ(shown(VOK_BIN_DIR "/" + command.substr(0, out)),
              shown("cat " + command.substr(out + 7)));
  }
}

TEST(ServerMessagesPage, NamesEveryPlayModeAndWhatItMeans) {
  std::set<play_mode> named;
  const auto cell = [](bool holds) { return std::string(holds ? " yes |" : " no |"); };
  for (const std::string& row : lines(shown("cat docs/server-messages.md"))) {
    if (!row.ends_with(cell(true)) && !row.ends_with(cell(false))) continue;
    for (const std::string& call : all(row.substr(0, row.find(" | ")), "`(.*?)`")) {
      const play_mode mode = Parser::parsePlaymode(call, SIDE_LEFT);
      EXPECT_TRUE(row.ends_with(cell(isSetPlay(mode)) + cell(isStopped(mode)))) << row;
      named.insert(mode);
    }
  }
  // From the kick-off on, the modes are ours and theirs in turn.
  EXPECT_EQ(named.size(), 1U + (PLAY_MODE_KICK_OFF_US + PLAY_MODE_PENALTY_SCORE_US) / 2);
}

TEST(ServerMessagesPage, QuotesTheDiagnosticsThatExist) {
  const std::string sources = shown("cat libVOK/*.* libVOK/*/*.* modules/*/*.* OnlineCoach/*.*");
  const std::string page = shown("sed '1,/^## Diagnostics/d' docs/server-messages.md");
  const auto diagnostics = all(page, "\n\\| `(.*?)`");
  ASSERT_GT(diagnostics.size(), 15U);
  for (const std::string& line : diagnostics) {
    for (const std::string& piece : all(line + "...", "(.*?)\\.\\.\\."))
      EXPECT_NE(sources.find(piece), std::string::npos) << "\"" << piece << "\" of " << line;
  }

  // The other way round, but for what only players and mistaken programs write.
  const std::string written = shown(
      "grep -rhE '(cerr|rror\\(\\)) *<<' --include=*.cpp --exclude-dir=base "
      "--exclude=comm_commands.cpp --exclude=*players.cpp libVOK modules OnlineCoach | grep -vE "
      "'Usage|only one|more than one Comm|Team::|readToken|unknown object type'");
  for (const std::string& text : all(written, "<< \"([^\"\\\\]{18,})"))
    EXPECT_NE(page.find(text), std::string::npos) << text;
}

TEST(ManualPages, HaveTheOptionsOfTheHelp) {
  for (const std::string tool : {"confcheck", "formationview", "matchreport", "practicematch",
                                 "saydecode", "seecheck", "typecheck"}) {
    EXPECT_EQ(namesIn(shown("tr -d '\\\\' <man/" + tool + ".1"), "\n\\.B[IR]? \"?(-[-a-z]+)"),
              namesIn(shown(VOK_BIN_DIR "/" + tool + " --help"), "\n  (-[-a-z]+)"));
  }
}

TEST(MonitorCommandsPage, ShowsWhatTheLibraryWrites) {
  const Vector2d a(1, -2);
  const Vector2d b(0.25, 34);
  const Lines written = {MLog("hello", 7).encoded,
                         MMarker(a, "here\"there", 5).encoded,
                         MDPosition(a, 5).encoded,
                         MDCircle(a, 9.15, true, MDot, 5).encoded,
                         MDLine(a, b, MSolid, 5).encoded,
                         MDVLine(10.5, MDash, 20).encoded,
                         MDBox(a, b, MDashDot, 5).encoded,
                         MDCorridor(a, b, 2, Angle(0.5), MDashDotDot, 5).encoded,
                         MDLabel(a, "free text", 5).encoded,
                         MStop().encoded,
                         MDropBall({1.0 / 3, -52.123456}).encoded,
                         MFreekickUs(a).encoded,
                         MFreekickThem(a).encoded,
                         MSetPlayer(true, 11, a, Angle(-1)).encoded,
                         MELog(3, 42, "pass", "to", "7", "a \"good\" one", 9).encoded};
  const std::string page = shown("cat docs/monitor-commands.md");
  EXPECT_EQ(all(page, "\n\\| `M[^|]*\\|[^|]*\\| `(.*?)` \\|"), written);

  Worldmodel world = newWorld();
  world.adjust(parsed("(see_global 42 ((g l) -52.5 0) ((b) -20.5 -3 0.25 0) "
                      "((p \"Alpha\" 1 goalie) -50 0.5 0 0.1 90 0) "
                      "((p \"Alpha\" 2) -35.5 -9 0.2 0.1 -45 0))"),
               {.mode = PLAY_MODE_FREE_KICK_US, .lastAction = {}, .neckTurn = {}});
  EXPECT_TRUE(MSnapshot(world).encoded.starts_with(block(page, "snapshot")));
}

}  // namespace
}  // namespace vok::test
