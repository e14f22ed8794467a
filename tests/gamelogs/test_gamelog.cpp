#include "gamelog.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "gamelogwriter.h"

namespace vok::gamelogs {
namespace {

using analysis::Told;

std::string data(const std::string& name) {
  return VOK_SOURCE_DIR "/tests/data/" + name;
}

/// What a log told: all of it written anew as version 6, and how many frames.
struct Telling {
  std::string text;
  int frames = 0;
  std::string error;
};

Telling tell(GameLog& log, const std::string& file) {
  Telling telling;
  std::ostringstream out;
  GameLogWriter writer(out);
  if (!log.open(file, telling.error)) return telling;
  bool begun = false;
  for (Told told = log.next(); told != Told::END; told = log.next()) {
    if (!begun) writer.head(log.head());
    begun = true;
    telling.frames += told == Told::FRAME ? 1 : 0;
    if (told == Told::FRAME) writer.frame(log.frame());
    if (told == Told::CALL) writer.call(log.call());
    if (told == Told::SCORE) writer.score(log.score());
    if (told == Told::MESSAGE) writer.message(log.message());
  }
  telling.text = out.str();
  return telling;
}

Telling tellText(GameLog& log, const std::string& text) {
  const std::string file = testing::TempDir() + "vok-" + std::to_string(getpid()) + ".rcg";
  std::ofstream(file, std::ios::binary) << text;
  Telling told = tell(log, file);
  std::remove(file.c_str());
  return told;
}

TEST(GameLog, ReadsEveryVersionAndWritesItAsVersion6) {
  struct Case {
    const char* file;
    int version;
    int frames;
    const char* line;  // one line of what is written
  };
  // The lines are those of the samples, with what their versions lack as 0.
  const Case cases[] = {
      {"log4.rcg.gz", 4, 65, "\n(team 512 Alpha Beta 0 1)\n(show 512 ((b) -53.9601 5.3513 0 0) "},
      {"log5.rcg.gz", 5, 47, "\n(playmode 452 foul_charge_r)\n(show 452 ((b) "},
      {"log6.rcg.gz", 6, 71, "\n(playmode 1078 goal_r)\n(team 1078 Alpha Beta 0 1)\n(show 1078 "},
      {"logjson.rcg.gz", -1, 46, "\n(msg 600 1 \"(result 202611211519 Alpha_0-vs-Beta_0)\")\n"}};
  for (const Case& c : cases) {
    GameLog log;
    const Telling first = tell(log, data(c.file));
    EXPECT_EQ(log.head().version, c.version) << c.file;
    EXPECT_EQ(first.frames, c.frames) << c.file;
    EXPECT_TRUE(log.complete()) << c.file;
    EXPECT_EQ(log.remark(), "") << c.file;
    EXPECT_EQ(log.date().substr(0, 8), "20261121") << c.file;
    EXPECT_EQ(log.rules().types.size(), 18U) << c.file;
    EXPECT_NE(first.text.find(c.line), std::string::npos) << c.file;
    const Telling again = tellText(log, first.text);
    EXPECT_EQ(again.text, first.text) << c.file;
    EXPECT_TRUE(log.complete()) << c.file;
  }
}

TEST(GameLog, MarksWhatAVersionLacks) {
  GameLog log;
  std::string error;
  for (const int version : {4, 5, 6}) {
    ASSERT_TRUE(log.open(data("log" + std::to_string(version) + ".rcg.gz"), error)) << error;
    while (log.next() != Told::FRAME) {
    }
    const analysis::FramePlayer& player = log.frame().players[21];
    EXPECT_EQ(analysis::isAbsent(player.capacity), version < 5);
    EXPECT_EQ(analysis::isAbsent(player.focusDistance), version < 6);
    EXPECT_EQ(player.counts[analysis::COUNT_CHANGE_FOCUS] == analysis::NONE, version < 6);
  }
}

TEST(GameLog, KnowsWhoIsNotThere) {
  GameLog log;
  std::string text = tell(log, data("log6.rcg.gz")).text;
  const std::size_t show = text.rfind("\n(show ");
  const std::string state = " 0x9 ";
  text.replace(text.find(state, show), state.size(), " 0 ");
  const Telling telling = tellText(log, text);
  EXPECT_EQ(telling.text, text);
  EXPECT_EQ(log.remark(), "");
  EXPECT_FALSE(log.frame().players[0].there());
  EXPECT_TRUE(log.frame().players[1].there());
}

TEST(CoachRecording, ShowsTheCardOfWhoIsSentOffOnce) {
  const std::string file = testing::TempDir() + "vok-" + std::to_string(getpid()) + ".txt";
  const auto view = [](int time, const std::string& more) {
    return std::to_string(time) + "\t(see_global " + std::to_string(time) +
           " ((b) 0 0 0 0) ((p \"A\" 1 goalie) -50 0 0 0 0 0)" + more +
           " ((p \"B\" 1 goalie) 50 0 0 0 180 0))\n";
  };
  std::ofstream(file) << "0\t(init l ok)\n1\t(hear 0 referee kick_off_l)\n"
                      << view(1, " ((p \"A\" 7) 3 0 0 0 0 0)")
                      << "1\t(hear 1 referee red_card_l_7)\n"
                      << view(2, "") << view(3, "");
  std::string error;
  const auto log = openMatchLog(file, error);
  std::remove(file.c_str());
  ASSERT_NE(log, nullptr) << error;
  std::string states;
  for (Told told = log->next(); told != Told::END; told = log->next())
    if (told == Told::FRAME) states += std::to_string(log->frame().players[6].state) + " ";
  EXPECT_EQ(states, "1 " + std::to_string(analysis::STATE_RED_CARD) + " 0 ");
}

TEST(GameLog, ReadsOnBehindDamageAndSaysWhatItWas) {
  GameLog log;
  const std::string text = tell(log, data("log6.rcg.gz")).text;
  const std::size_t show = text.find("(show 1070 ");
  const std::size_t end = text.size();
  const auto with = [&](const std::string& more) {
    return text.substr(0, show) + more + text.substr(show);
  };
  struct Case {
    std::string text;
    int frames;
    std::string remark;
    std::string error = {};
  };
  const std::string far(600000, '7');
  const Case cases[] = {
      {text.substr(0, end - 1), 71, ""},
      {text.substr(0, end - 3), 71, "it ends in the middle of a line"},
      {text.substr(0, show + 1000), 10, "it ends in the middle of a line"},
      {with("(show 1 ((b) 0 0 0 0))\n(show\n"), 71, "line 34 is damaged and 1 more of 106"},
      {with("(weather 1070 rain)\n\n(new_line)\n"), 71, ""},
      {with("(msg 1070 1 \"say \")\" and (\")\n"), 71, ""},
      {with(far + "\n" + far + "\n"), 71, "line 34 is damaged and 1 more of 106"},
      {"ULG\x02rest", 0, "", "is a binary game log of version 2, which is too old to be read"},
      {"ULG9\n", 0, "", "is no game log"},
      {"", 0, "", "is no game log"},
      {"ULG6\n", 0, "it holds no frame"},
      {"[{\"show\":{\"time\":1}},\n{\"show", 0,
       "object 1 is damaged; it ends in the middle of a line; it holds no frame"}};
  for (const Case& c : cases) {
    const Telling telling = tellText(log, c.text);
    EXPECT_EQ(telling.error, c.error);
    EXPECT_EQ(telling.frames, c.frames) << c.remark;
    if (!telling.error.empty()) continue;
    EXPECT_EQ(log.remark(), c.remark);
    EXPECT_EQ(log.complete(), c.remark.empty()) << c.remark;
  }
}

TEST(GameLog, ReadsTheShortLivedVariantsOfJson) {
  const std::string objects =
      "{\"playmode\":{\"time\":7,\"mode\":\"kick_off_l\"}}\n"
      "{\"team\":{\"time\":7,\"l\":{\"name\":\"A\\u00e9\",\"score\":2,\"new\":[1,{\"a\":null}]},"
      "\"r\":{\"name\":null,\"score\":1}}}\n";
  for (const std::string head : {"ULG6\n", "JSON\n", "[", "[\n"}) {
    GameLog log;
    const Telling telling = tellText(log, head + objects + (head[0] == '[' ? "]" : ""));
    EXPECT_EQ(log.head().version, -1) << head;
    EXPECT_NE(telling.text.find("\n(playmode 7 kick_off_l)\n(team 7 A\xc3\xa9 null 2 1)\n"),
              std::string::npos)
        << head << telling.text;
    EXPECT_EQ(log.remark(), "it holds no frame") << head;
  }
}

TEST(GameLog, OutlivesEveryCutAndFlippedByte) {
  for (const char* name : {"log6.rcg.gz", "logjson.rcg.gz"}) {
    std::ifstream file(data(name), std::ios::binary);
    std::stringstream packed;
    packed << file.rdbuf();
    const std::string whole = packed.str();
    GameLog log;
    // The last place cuts the checksum alone.
    for (std::size_t at = whole.size() - 2; at < whole.size(); at -= whole.size() / 25) {
      const Telling cut = tellText(log, whole.substr(0, at));
      EXPECT_FALSE(cut.error.empty() && log.complete()) << at;
      std::string flipped = whole;
      flipped[at] = static_cast<char>(flipped[at] ^ 0x10);
      tellText(log, flipped);
    }
  }
}

}  // namespace
}  // namespace vok::gamelogs
