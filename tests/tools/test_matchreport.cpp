#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
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
  const std::string data = VOK_SOURCE_DIR "/tests/analysis/data/";
  const auto [status, output] =
      matchreport("--json - log4.rcg.gz log5.rcg.gz " + data + "full6.rcg.gz");
  EXPECT_EQ(status, 0);
  int withTextLog = 0;
  const std::set<std::string> known = described();
  const std::regex side("sides\\.[lr]\\.");
  const std::regex ball("with(out)?_ball");
  const std::regex count("by_half\\.[a-z]+\\.([a-z_]*)$");
  const std::regex half("^by_half\\.[a-z]+\\.");
  ASSERT_EQ(lines(output).size(), 3U) << output.substr(0, 1000);
  for (const std::string& line : lines(output)) {
    gamelogs::JsonText in(line);
    std::set<std::string> paths;
    EXPECT_TRUE(collect(in, "", paths)) << line.substr(0, 200);
    withTextLog += paths.contains("text_log.coach_messages[].text") ? 1 : 0;
    EXPECT_GT(paths.size(), 60U);
    for (std::string path : paths) {
      path = std::regex_replace(path, side, "sides.S.");
      path = std::regex_replace(path, ball, "B");
      path = std::regex_replace(path, count, "by_half.H.$1");
      if (!known.contains(path)) path = std::regex_replace(path, half, "");
      EXPECT_TRUE(known.contains(path)) << path;
    }
  }
  EXPECT_EQ(withTextLog, 1);
}

/// Every plain value by its path with indices: "players[3].passes.out".
using Values = std::map<std::string, std::string>;

bool collect(gamelogs::JsonText& in, const std::string& path, Values& values) {
  if (in.peek() == '{') {
    return in.object(
        [&](std::string_view name) { return collect(in, path + "." + std::string(name), values); });
  }
  int index = 0;
  if (in.peek() == '[') {
    values[path + "[]"];
    return in.array(
        [&] { return collect(in, path + "[" + std::to_string(index++) + "]", values); });
  }
  std::string_view value;
  if (!in.skip(value)) return false;
  values[path] = value;
  return true;
}

Values valuesOf(const std::string& command) {
  const auto [status, output] = runCommand(command);
  Values values;
  gamelogs::JsonText in(output);
  EXPECT_TRUE(status == 0 && collect(in, "", values)) << command;
  return values;
}

// Written from the same definitions by another hand: tests/analysis/reference.py. It says
// the number of cycles twice.
TEST(MatchReport, HasTheNumbersOfTheReference) {
  const std::set<std::string> apart = {".match.source", ".match.key", ".cycles", ".play_cycles"};
  for (const std::string cut : {"full6", "json", "pen", "v4", "v5"}) {
    const std::string file = VOK_SOURCE_DIR "/tests/analysis/data/" + cut;
    const Values expected = valuesOf("zcat " + file + ".json.gz");
    const Values found = valuesOf(VOK_BIN_DIR "/matchreport --json - " + file + ".rcg.gz");
    EXPECT_GT(expected.size(), 5000U);
    for (const auto& [path, value] : expected) {
      if (apart.contains(path)) continue;
      const auto at = found.find(path);
      ASSERT_NE(at, found.end()) << cut << path;
      const char* const text = at->second.c_str();
      char* end = nullptr;
      const double number = std::strtod(value.c_str(), &end);
      if (end == value.c_str()) {
        EXPECT_EQ(text, value) << cut << path;  // a text, null, true
      } else {
        EXPECT_NEAR(std::strtod(text, &end), number, 1e-9 * std::abs(number)) << cut << path;
        EXPECT_NE(end, text) << cut << path;
      }
    }
  }
}

// A folder has its logs and recordings in the order of their names, whoever is ready first; the
// text log, the player's recording and the coach's one beside a log are none of them.
TEST(MatchReport, ReadsSeveralMatchesAtOnce) {
  const std::string folder = testing::TempDir() + "matchreport-" + std::to_string(getpid());
  runCommand("mkdir " + folder + " && cd " VOK_SOURCE_DIR "/tests/data && cp log*.rcg.gz " +
             folder + " && cp types_left.txt " + folder +
             "/log6.coach.txt && cp realtime_left.txt "
             "player_left_7.txt plain.conf " +
             folder);
  const std::string sources = folder + " - log6.rcg.gz <log5.rcg.gz";
  const auto [status, output] = matchreport("--jobs 1 --json - " + sources);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(matchreport("--jobs 4 --json - " + sources), std::pair(0, output));
  std::string names;
  const std::regex name(R"re("key":"([^ ]*)[^"]*","left".*"source":"(/[^"]*/)?([^"]*)")re");
  for (const std::string& line : lines(output)) {
    std::smatch found;
    if (std::regex_search(line.cbegin(), line.cbegin() + 500, found, name))
      names += found[3].str() + " ";
  }
  EXPECT_EQ(names,
            "log4.rcg.gz log5.rcg.gz log6.rcg.gz logjson.rcg.gz realtime_left.txt - log6.rcg.gz ");
  EXPECT_NE(output.find("-2\",\"left\""), std::string::npos);
  const auto [failed, rest] = matchreport("--jobs 3 " + folder + " no/such /dev log4.rcg.gz");
  EXPECT_EQ(failed, 1);
  EXPECT_NE(rest.find("matchreport: no/such cannot be opened"), std::string::npos);
  EXPECT_NE(rest.find("matchreport: /dev holds no game log"), std::string::npos);
  EXPECT_NE(rest.find("\n6 matches\n"), std::string::npos);
  runCommand("rm -r " + folder);
}

// The tables have the columns of the page, whatever is in a team's name.
TEST(MatchReport, WritesTheTablesThatThePageDescribes) {
  const std::string folder = testing::TempDir() + "csv-" + std::to_string(getpid());
  const std::string quoted = "zcat log5.rcg.gz | sed 's/ Beta / B,\"a /' | ";
  const std::string run = quoted + VOK_BIN_DIR "/matchreport --jobs 2 --csv " + folder;
  EXPECT_EQ(runCommand("cd " VOK_SOURCE_DIR "/tests/data; " + run + " log4.rcg.gz -"),
            std::pair(0, std::string()));
  std::string page = runCommand("cat " VOK_SOURCE_DIR "/docs/match-report.md").second;
  page = page.substr(page.find("```columns\n") + 11);
  page = std::regex_replace(page.substr(0, page.find("```")), std::regex("\n  "), " ");
  const std::regex inQuotes("\"[^,]*,[^,]*\",");
  std::map<std::string, std::size_t> rowsOf;
  std::string all;
  for (const std::string& table : lines(page)) {
    const std::string name = table.substr(0, table.find(':'));
    const std::string text = runCommand("cat " + folder + "/" + name).second;
    const auto rows = lines(text);
    std::string header = table.substr(table.find(':') + 2);
    std::replace(header.begin(), header.end(), ' ', ',');
    ASSERT_FALSE(rows.empty()) << name;
    EXPECT_EQ(rows[0], header);
    EXPECT_TRUE(rows.back().starts_with(R"("202611211519 Alpha_0-vs-B,""a_0",)")) << rows.back();
    for (const std::string& row : rows) {
      const std::string plain = std::regex_replace(row, inQuotes, "x,");
      EXPECT_EQ(std::count(plain.begin(), plain.end(), ','),
                std::count(header.begin(), header.end(), ','))
          << row;
    }
    rowsOf[name] = rows.size() - 1;
    all += text;
  }
  EXPECT_EQ(rowsOf["tracking.csv"], 23U * (65 + 47));
  EXPECT_EQ(rowsOf["players.csv"], 2U * 3 * 22);
  // As they stand in the log, and what led to its goal.
  for (const char* const row :
       {",506,0,play_on,ball,,-42.529,10.0088,-2.0712,-0.8891,,,,\n",
        ",506,0,play_on,l,3,-40.1926,8.0159,-0.0738,0.0125,91.938,-50,2,7920.78\n",
        ",506,second,shot,on_target,r,9,-40.3255,10.9546,,,,,goal\n",
        ",512,second,goal,,r,9,,,,,,,\n"}) {
    EXPECT_NE(all.find("\n202611211519 Alpha_0-vs-Beta_1" + std::string(row)), std::string::npos)
        << row;
  }
  runCommand("rm -r " + folder);
}

// The message is the example of docs/say-message.md; at 1080 Alpha's number 5 gave no command, and
// at 1079 two.
TEST(MatchReport, TellsWhatTheTextLogHas) {
  const std::string folder = testing::TempDir() + "rcl-" + std::to_string(getpid());
  const std::string source = folder + "/a.rcg.gz";
  const std::string page = runCommand("cat " VOK_SOURCE_DIR "/docs/say-message.md").second;
  const std::string message = page.substr(page.find("\nvok") + 1, 126);
  runCommand("mkdir " + folder + "; cp " VOK_SOURCE_DIR "/tests/data/log6.rcg.gz " + source);
  std::ofstream(folder + "/a.rcl")
      << "1079,0\tRecv Alpha_5: (dash 100)(turn 3)\n"
      << "1079,0\tRecv Alpha_5: (say \"(kick 1 2)\")\n"
      << "1081,0\tRecv Alpha_5: (turn 5)(turn_neck 5)(say \"(kick 1 2)\")\n"
      << "1081,0\tRecv Alpha_Coach: (say (freeform \"" << message
      << "\"))\n1081,0\tRecv Alpha_Coach: (change_player_type 5 4)\n"
      << "1082,0\tRecv Alpha_Coach: (say (freeform \"(true)\"))\n";
  const auto [status, json] = matchreport("--json - " + source);
  EXPECT_EQ(status, 0) << json.substr(0, 300);
  const std::string types = "[null,null,null,null,null,null,null,null,3,null,null]";
  for (const std::string& part :
       {R"("told":{"kicker":5,"opponents":[11,10],"our_goalie":7,"their_goalie":1,"their_types":)" +
            types + R"(,"our_team":[[-4,-15],)",
        std::string(R"x({"cycle":1082,"side":"l","text":"(true)","told":null})x"),
        std::string(R"({"cycle":1081,"side":"l","number":5,"type":4,"granted":false})"),
        std::string(R"("silent":[],"holes":1,"doubles":1,)")}) {
    EXPECT_NE(json.find(part), std::string::npos) << part;
  }
  const std::string text = matchreport(source).second;
  for (const char* const part :
       {"   1081  asks for type 4 for number 5, in vain\n",
        "   1081  types - - - - - - - - 3 - -; kicker 5; opponents 11, 10\n",
        "   5  1 hole; 1 double\n"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << text;
  }
  EXPECT_EQ(matchreport("--rcl plain.conf log6.rcg.gz").first, 1);
  EXPECT_EQ(matchreport("--rcl plain.conf log6.rcg.gz log5.rcg.gz").first, 2);
  runCommand("rm -r " + folder);
}

/// With one blank for several, so that no column's width matters.
std::string narrow(const std::string& text) {
  return std::regex_replace(text, std::regex(" +"), " ");
}

// Three matches: 0:1, 0:0 and 1:0 (the log of the first one with the teams exchanged). The
// interval of the three goals of Alpha is 4.303 * sqrt(1/3) / sqrt(3) around 1/3.
TEST(MatchReport, SumsSeveralMatchesUp) {
  const auto [status, text] =
      runCommand("cd " VOK_SOURCE_DIR
                 "/tests/data; zcat log4.rcg.gz | sed 's/ Alpha Beta / Beta Alpha /' | " VOK_BIN_DIR
                 "/matchreport --team Alpha log4.rcg.gz log5.rcg.gz -");
  EXPECT_EQ(status, 0);
  for (const char* const part :
       {"      1         3    1      1     1      1:1       4  Alpha\n",
        "      1  Alpha number 9\n", "Goals 0.3 +- 1.4", "mean of 3 matches"}) {
    EXPECT_NE(narrow(text).find(narrow(part)), std::string::npos) << part << text;
  }
  EXPECT_EQ(text.find("Beta, mean of"), std::string::npos);
}

// In the second source the numbers 9 and 10 of the right side, who scored, are exchanged. The last
// two have no touch in common.
TEST(MatchReport, ComparesTwoSources) {
  const std::string exchanged =
      "cd " VOK_SOURCE_DIR
      "/tests/data; zcat log6.rcg.gz | sed 's/((r 9)/((r X)/; s/((r 10)/((r 9)/; s/((r X)/((r 10)/'"
      " | " VOK_BIN_DIR "/matchreport --compare log6.rcg.gz -";
  const std::string text = narrow(runCommand(exchanged).second);
  for (const char* const part : {"\nCycles of play 18 18 0\n", "\nPasses tried 0 0 0.0\n",
                                 "\n only the first: 1078 r 10\n", "\n only the second: 1078 r 9\n",
                                 "\n touches 2 100.00 %", "\n the side is right 2 100.00 %",
                                 "\n the player is right 1 50.00 %", "\n invented 0 0.00 %"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << text;
  }
  const std::string other = narrow(matchreport("--compare log6.rcg.gz log4.rcg.gz").second);
  EXPECT_NE(other.find("\n the side is right 0 0.00 %"), std::string::npos) << other;
  EXPECT_NE(other.find("\n invented 1 50.00 %"), std::string::npos) << other;
}

// The pairs of the same seed do not differ at all; those in the order of the names would.
TEST(MatchReport, ComparesTwoFolders) {
  const std::string folder = testing::TempDir() + "folders-" + std::to_string(getpid());
  runCommand("mkdir -p " + folder + "/a " + folder +
             "/b; cd " VOK_SOURCE_DIR "/tests/data; cp log4.rcg.gz " + folder +
             "/a/seed1.rcg.gz; cp log5.rcg.gz " + folder + "/a/seed2.rcg.gz; cp log4.rcg.gz " +
             folder + "/b/y-seed-1.rcg.gz; cp log5.rcg.gz " + folder + "/b/x-seed-2.rcg.gz");
  const std::string compare = "--compare " + folder + "/a " + folder + "/b";
  const std::string paired = narrow(matchreport(compare + " --team Beta").second);
  EXPECT_NE(paired.find("Goals 0.5 0.5 0.0 +- 0.0\n"), std::string::npos) << paired;
  runCommand("mv " + folder + "/b/y-seed-1.rcg.gz " + folder + "/b/seed3.rcg.gz");
  const std::string single = narrow(matchreport(compare + " --team Beta").second);
  EXPECT_NE(single.find("Goals 0.5 0.5 0.0 +- 3.0\n"), std::string::npos) << single;
  EXPECT_EQ(matchreport(compare + "/x-seed-2.rcg.gz").first, 2);
  runCommand("rm -r " + folder);
}

// The kicks, the goal and the foul are those that stand in the logs.
TEST(MatchReport, FindsWhatHappenedInTheLogs) {
  const std::string json = matchreport("--json - log4.rcg.gz log5.rcg.gz").second;
  for (
      const char* const part :
      {R"("key":"202611211519 Alpha_0-vs-Beta_1","left":"Alpha","right":"Beta","score":[0,1],)",
       R"("cycles":15,"play_cycles":12,"complete":true,)",
       R"("shots":[{"cycle":506,"side":"r","number":9,"on_target":true,"outcome":"goal"}])",
       R"("goals":[{"cycle":512,"side":"r","number":9,"own":false,"way":{"touchings":[{"cycle":506,)",
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
