// The coach follows a recorded match: tests/data/realtime_left.txt, 300 cycles that a real server
// sent to the coach of "Alpha" on the left.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <thread>

#include "constants.h"
#include "support/server.h"
#include "vokcoach.h"

namespace vok::test {
namespace {

std::vector<std::string> recording() {
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/realtime_left.txt");
  std::vector<std::string> texts;
  for (std::string line; std::getline(file, line);)
    texts.push_back(line.substr(line.find('\t') + 1));
  return texts;
}

// A match of the recording: the first three texts are the check-in, the coach runs on the rest.
class Replay : public testing::Test {
 protected:
  Replay() : texts(recording()) {
    std::thread serving([this] {
      server.receive();
      for (std::size_t i = 0; i < 3; ++i) server.send(texts[i]);
    });
    coach =
        std::make_unique<VokCoach>("Alpha", "127.0.0.1", server.port(), shippedConfig, "", false);
    serving.join();
  }

  void run() {
    for (std::size_t i = 3; i < texts.size(); ++i) {
      coach->comm->receiveText(texts[i].c_str());
      coach->step();
      takeCommands();
    }
  }

  void takeCommands() {
    for (std::string text; !(text = server.receive(0)).empty();) sent.push_back(text);
  }

  std::vector<std::string> texts;
  std::vector<std::string> sent;
  ScriptedServer server;
  StderrCapture errors;
  std::unique_ptr<VokCoach> coach;
};

TEST_F(Replay, EndsWithTheWorldAsTheLastViewHasIt) {
  run();
  std::string last;
  for (const std::string& text : texts) {
    if (text.starts_with("(see_global ")) last = text;
  }
  const Worldmodel& world = *coach->world;
  EXPECT_EQ(world.time, std::stol(last.substr(12)));

  const std::regex player(
      "\\(\\(p \"(\\w+)\" (\\d+)( goalie)?\\) (\\S+) (\\S+) (\\S+) (\\S+) (\\S+)");
  int players = 0;
  for (std::sregex_iterator it(last.begin(), last.end(), player), end; it != end; ++it) {
    const std::smatch& m = *it;
    const WPlayer& known = (m[1] == "Alpha" ? world.ourTeam : world.otherTeam).at(std::stoul(m[2]));
    EXPECT_EQ(known.pos, Vector2d(std::stod(m[4]), std::stod(m[5]))) << m.str();
    EXPECT_EQ(known.v, Vector2d(std::stod(m[6]), std::stod(m[7]))) << m.str();
    EXPECT_NEAR(known.bodyDir, std::stod(m[8]) * std::acos(-1) / 180, 1e-12) << m.str();
    EXPECT_EQ(known.isGoalie, m[3].matched ? GOALIE_TRUE : GOALIE_FALSE) << m.str();
    EXPECT_EQ(known.age, 0);
    ++players;
  }
  EXPECT_EQ(players, 22);

  std::smatch ball;
  ASSERT_TRUE(std::regex_search(last, ball, std::regex("\\(\\(b\\) (\\S+) (\\S+) ")));
  EXPECT_EQ(world.ball.pos, Vector2d(std::stod(ball[1]), std::stod(ball[2])));
  EXPECT_EQ(world.playMode, PLAY_MODE_PLAY_ON);
}

TEST_F(Replay, EveryAnnouncedTypeIsKnown) {
  run();
  ASSERT_EQ(coach->world->playerType.size(), 18);
  for (std::size_t id = 0; id < 18; ++id) {
    const std::string head = "(player_type (id " + std::to_string(id) + ")";
    const auto text = std::find_if(texts.begin(), texts.end(),
                                   [&](const std::string& t) { return t.starts_with(head); });
    ASSERT_NE(text, texts.end());
    const std::size_t at = text->find("(player_decay ") + 14;
    EXPECT_EQ(coach->world->playerType[id].playerDecay, std::stod(text->substr(at)));
    EXPECT_EQ(coach->world->playerType[id].state, static_cast<int>(id));
  }
}

TEST_F(Replay, ReportsOnlyWhatTheTrafficCallsFor) {
  run();
  std::map<std::string, int> counts;
  for (const std::string& line : lines(errors.take())) ++counts[line];
  // In the foul of cycle 51 the clock stands still in a mode that does not tell. In real time its
  // 30 views and 2 calls open no cycle; with the next view 33 records wait for 19 places.
  EXPECT_EQ(counts.extract("DataStore: more than 20 unprocessed SensorDatas, dumping oldest one.")
                .mapped(),
            14);
  EXPECT_EQ(counts
                .extract("CommError: 0 Comm (Alpha No.0): received warning message from server: "
                         "(warning message_not_null_terminated)")
                .mapped(),
            1);
  EXPECT_TRUE(counts.empty()) << counts.begin()->first;
}

// FNV-1a over all datagrams of the coach. It stands for every byte that goes out: when a change
// is meant to alter what the coach says or orders, look at the difference and set it anew.
TEST_F(Replay, SendsTheSameBytesAsEver) {
  run();
  coach.reset();
  takeCommands();
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const std::string& text : sent) {
    for (const char c : text + '\n') {
      hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    }
  }
  EXPECT_EQ(sent.size(), 16);
  EXPECT_EQ(hash, 7539869990437284739U);
}

}  // namespace
}  // namespace vok::test
