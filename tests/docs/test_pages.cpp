// What the pages in docs/ show is compared with the programs and the library.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "Parser.h"
#include "asyncinfo.h"
#include "mcommand.h"
#include "playmodes.h"
#include "support/server.h"
#include "support/world.h"

namespace vok::test {
namespace {

const std::string ROOT = std::string(VOK_SOURCE_DIR) + "/";

std::string fileText(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What a program draws into the file whose name is its last argument.
std::string picture(const std::string& command) {
  // Tests run in parallel, so each process has its own file.
  const std::string name = testing::TempDir() + "pages" + std::to_string(getpid()) + ".svg";
  EXPECT_EQ(runCommand(command + name).first, 0) << command;
  std::string text = fileText(name);
  std::remove(name.c_str());
  return text;
}

/// What the expression's group matches in a text, each time.
Lines all(const std::string& text, const char* expression) {
  const std::regex wanted(expression);
  return {std::sregex_token_iterator(text.begin(), text.end(), wanted, 1), {}};
}

/// The cells of all tables' rows.
std::vector<Lines> rows(const std::string& page) {
  std::vector<Lines> found;
  for (const std::string& line : lines(page)) {
    if (line.starts_with("| ")) found.push_back(all(line, R"(\| ([^|]*?) ?(?=\|))"));
  }
  return found;
}

/// The text between the lines "```name" and "```".
std::string block(const std::string& page, const std::string& name) {
  const std::string head = "```" + name + "\n";
  const std::size_t begin = page.find(head) + head.size();
  return page.substr(begin, page.find("```\n", begin) - begin);
}

TEST(SayMessagePage, ReadsInItsTableAndInTheProgramAsItSays) {
  const std::string page = fileText(ROOT + "docs/say-message.md");
  const std::string message = block(page, "message");
  std::string joined;
  for (const auto& row : rows(page)) {
    if (row.size() != 3 || !row[1].starts_with('`')) continue;
    EXPECT_EQ(row[0], std::to_string(joined.size())) << row[1];
    joined += row[1].substr(1, row[1].size() - 2);
  }
  EXPECT_EQ(joined + "\n", message);

  const std::string program = VOK_BIN_DIR "/saydecode " + joined;
  EXPECT_EQ(runCommand(program), std::pair(0, block(page, "output")));
  EXPECT_EQ(picture(program + " --svg "), fileText(ROOT + "docs/say-message.svg"));
}

/// Keys as the page writes them: one form for all formations, and one for all players.
std::set<std::string> forms(const Lines& keys) {
  std::set<std::string> all;
  for (const std::string& key : keys) {
    const auto form = std::regex_replace(key, std::regex("^Form[0-2]_(def|off)"), "FormN_HALF");
    all.insert(std::regex_replace(form, std::regex("^player([2-9]|10|11)_"), "playerN_"));
  }
  return all;
}

TEST(ConfigurationPage, HasTheKeysThatTheCoachAsksForAsTheShippedFileDoes) {
  const std::string page = fileText(ROOT + "docs/configuration.md");
  const std::string asked = runCommand(VOK_BIN_DIR "/confcheck --keys").second;
  const auto keys = forms(all("\n" + asked, R"(\n(\w+):)"));
  EXPECT_GT(keys.size(), 50U);
  EXPECT_EQ(forms(all(page, R"(\n\| `(\w+)` \|)")), keys);
  // Optional keys stand in comments.
  EXPECT_EQ(forms(all("\n" + fileText(SHIPPED_CONFIG), R"(\n#?(\w+) =)")), keys);
}

TEST(ConfigurationPage, ShowsThePicturesThatItsCommandsDraw) {
  const std::string page = fileText(ROOT + "docs/configuration.md");
  const auto commands = all(page, "\n    build/bin/(formationview [^\n]*)");
  ASSERT_EQ(commands.size(), 3U);
  for (const std::string& command : commands) {
    const std::size_t out = command.find(" --out ");
    const std::string program = "cd " + ROOT + " && " VOK_BIN_DIR "/" + command.substr(0, out);
    EXPECT_EQ(picture(program + " --out "), fileText(ROOT + command.substr(out + 7))) << command;
  }
}

TEST(ServerMessagesPage, NamesEveryPlayModeAndWhatItMeans) {
  std::set<play_mode> named;
  for (const auto& row : rows(fileText(ROOT + "docs/server-messages.md"))) {
    if (row.size() != 4 || row[0] == "call") continue;
    for (const std::string& call : all(row[0], "`(.*?)`")) {
      const play_mode mode = Parser::parsePlaymode(call, SIDE_LEFT);
      EXPECT_EQ(row[2], isSetPlay(mode) ? "yes" : "no") << call;
      EXPECT_EQ(row[3], isStopped(mode) ? "yes" : "no") << call;
      named.insert(mode);
    }
  }
  for (int mode = 0; mode <= PLAY_MODE_PENALTY_SCORE_US;
       mode += mode < PLAY_MODE_KICK_OFF_US ? 1 : 2) {
    EXPECT_EQ(named.count(static_cast<play_mode>(mode)), 1U) << mode;
  }
  EXPECT_EQ(named.count(PLAY_MODE_UNKNOWN), 0U);
}

TEST(ServerMessagesPage, QuotesOnlyDiagnosticsThatExist) {
  std::string sources;
  for (const char* folder : {"libVOK", "modules", "OnlineCoach"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(ROOT + folder)) {
      if (entry.is_regular_file()) sources += fileText(entry.path().string());
    }
  }
  const std::string page = fileText(ROOT + "docs/server-messages.md");
  const std::string table = page.substr(page.find("## Diagnostics"));
  const auto diagnostics = all(table, "\n\\| `(.*?)`");
  ASSERT_GT(diagnostics.size(), 15U);
  for (const std::string& line : diagnostics) {
    for (const std::string& piece : all(line + "...", "(.*?)\\.\\.\\.")) {
      EXPECT_NE(sources.find(piece), std::string::npos) << "\"" << piece << "\" of " << line;
    }
  }
}

TEST(ManualPages, HaveTheOptionsOfTheHelp) {
  for (const std::string tool :
       {"confcheck", "formationview", "practicematch", "saydecode", "typecheck"}) {
    const std::string help = runCommand(VOK_BIN_DIR "/" + tool + " --help").second;
    std::string page = fileText(ROOT + "man/" + tool + ".1");
    std::erase(page, '\\');
    const Lines told = all(help, "\n  (-[-a-z]+)");
    const Lines documented = all(page, "\n\\.B[IR]? \"?(-[-a-z]+)");
    EXPECT_EQ(std::set(documented.begin(), documented.end()), std::set(told.begin(), told.end()));
  }
}

TEST(MonitorCommandsPage, ShowsWhatTheLibraryWrites) {
  const Vector2d a(1, -2);
  const Vector2d b(0.25, 34);
  const std::vector<MCommand> commands = {MLog("hello", 7),
                                          MMarker(a, "here\"there", 5),
                                          MDPosition(a, 5),
                                          MDCircle(a, 9.15, true, MDot, 5),
                                          MDLine(a, b, MSolid, 5),
                                          MDVLine(10.5, MDash, 20),
                                          MDBox(a, b, MDashDot, 5),
                                          MDCorridor(a, b, 2, Angle(0.5), MDashDotDot, 5),
                                          MDLabel(a, "free text", 5),
                                          MStop(),
                                          MDropBall({1.0 / 3, -52.123456}),
                                          MFreekickUs(a),
                                          MFreekickThem(a),
                                          MSetPlayer(true, 11, a, Angle(-1)),
                                          MELog(3, 42, "pass", "to", "7", "a \"good\" one", 9)};
  const std::string page = fileText(ROOT + "docs/monitor-commands.md");
  Lines written;
  for (const MCommand& command : commands) written.push_back(command.encoded);
  EXPECT_EQ(all(page, "\n\\| `M[^|]*\\|[^|]*\\| `(.*?)` \\|"), written);

  Worldmodel world = newWorld();
  ServerState state;
  state.mode = PLAY_MODE_FREE_KICK_US;
  world.adjust(parsed("(see_global 42 ((g l) -52.5 0) ((b) -20.5 -3 0.25 0) "
                      "((p \"Alpha\" 1 goalie) -50 0.5 0 0.1 90 0) "
                      "((p \"Alpha\" 2) -35.5 -9 0.2 0.1 -45 0))"),
               state);
  EXPECT_TRUE(MSnapshot(world).encoded.starts_with(block(page, "snapshot")));
}

}  // namespace
}  // namespace vok::test
