#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "jsontext.h"
#include "support/server.h"

namespace vok::test {
namespace {

std::pair<int, std::string> matchreport(const std::string& arguments) {
  return runCommand("cd " VOK_SOURCE_DIR "/tests/data && " VOK_BIN_DIR "/matchreport " + arguments);
}

/// Collects the path of every plain value: "sides.l.passes.out", "players[].touches".
bool collect(gamelogs::JsonText& in, const std::string& path, std::set<std::string>& paths) {
  if (in.peek() == '{') {
    return in.object([&](std::string_view name) {
      return collect(in, path + (path.empty() ? "" : ".") + std::string(name), paths);
    });
  }
  if (in.peek() == '[') return in.array([&] { return collect(in, path + "[]", paths); });
  std::string_view value;
  if (!in.skip(value)) return false;
  if (value != "null") paths.insert(path);
  return true;
}

/// The paths that the page lists, its S, B and halves as in the output.
std::set<std::string> described() {
  const std::string page = runCommand("cat " VOK_SOURCE_DIR "/docs/match-report.md").second;
  std::set<std::string> paths;
  const std::size_t begin = page.find("```members\n") + 11;
  std::istringstream list(page.substr(begin, page.find("```", begin) - begin));
  for (std::string line; std::getline(list, line);) {
    const std::size_t colon = line.find(':');
    std::istringstream names(line.substr(colon + 1));
    for (std::string name; names >> name;) paths.insert(line.substr(0, colon) + "." + name);
  }
  return paths;
}

TEST(MatchReport, WritesTheJsonThatThePageDescribes) {
  const auto [status, output] = matchreport("--json - log4.rcg.gz log5.rcg.gz log6.rcg.gz");
  EXPECT_EQ(status, 0);
  const std::set<std::string> known = described();
  ASSERT_EQ(lines(output).size(), 3U) << output.substr(0, 1000);
  for (const std::string& line : lines(output)) {
    gamelogs::JsonText in(line);
    std::set<std::string> paths;
    EXPECT_TRUE(collect(in, "", paths)) << line.substr(0, 200);
    EXPECT_GT(paths.size(), 60U);
    for (std::string path : paths) {
      path = std::regex_replace(path, std::regex("sides\\.[lr]\\."), "sides.S.");
      path = std::regex_replace(path, std::regex("with(out)?_ball"), "B");
      if (!known.contains(path))
        path = std::regex_replace(path, std::regex("^halves\\[\\]\\."), "");
      EXPECT_TRUE(known.contains(path)) << path;
    }
  }
}

// The kicks, the goal and the foul are those that stand in the logs.
TEST(MatchReport, FindsWhatHappenedInTheLogs) {
  const std::string json = matchreport("--json - log4.rcg.gz log5.rcg.gz").second;
  for (const char* const part :
       {R"("key":"202611211519-Alpha_0-vs-Beta_1","left":"Alpha","right":"Beta","score":[0,1],)",
        R"("cycles":514,"play_cycles":12,"complete":true,)",
        R"("shots":[{"cycle":506,"side":"r","number":9,"on_target":true,"outcome":"goal"}])",
        R"("goals":[{"cycle":512,"side":"r","number":9,"own":false,"way":[{"cycle":506,)",
        R"("fouls":[{"cycle":452,"side":"r","kind":"foul_charge"}])"}) {
    EXPECT_NE(json.find(part), std::string::npos) << part;
  }
  const auto [status, text] = matchreport("log4.rcg.gz - <log5.rcg.gz");
  EXPECT_EQ(status, 0);
  EXPECT_NE(text.find("Alpha 0 : 1 Beta\n"), std::string::npos) << text;
  EXPECT_NE(text.find("    512  Beta number 9\n"), std::string::npos) << text;
  EXPECT_NE(text.find("    452  Beta: foul_charge\n"), std::string::npos) << text;
  for (const std::string& line : lines(text)) EXPECT_LE(line.size(), 80U) << line;
  EXPECT_EQ(matchreport("plain.conf log5.rcg.gz").first, 1);
}

}  // namespace
}  // namespace vok::test
