// The coach's check-in and loop over the texts of a server: when a cycle begins, when the server
// only gets an answer, and when the coach acts.
#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "constants.h"
#include "onlinecoach.h"
#include "support/server.h"

namespace vok::test {
namespace {

/// What a text leads to: nothing, an answer without a cycle, a cycle, or one in which the coach
/// acts.
enum Outcome { NOTHING, ANSWER, CYCLE, ACT };

struct Step {
  std::string text;
  Outcome outcome = NOTHING;
};

class Recorder : public Onlinecoach {
 public:
  using Onlinecoach::Onlinecoach;
  void analyze() override { outcome = CYCLE; }
  void act() override { outcome = ACT; }

  Outcome outcome = NOTHING;
};

std::string call(long time, const std::string& name) {
  return "(hear " + std::to_string(time) + " referee " + name + ")";
}

const std::string THINK = "(think)";
const std::string INIT = "(init l ok)";
const std::string REAL_TIME = "(server_param (synch_mode 0))";
const Step OUR_FOUL = {call(2, "foul_charge_l")};
const Step OUR_KICK_IN = {call(2, "kick_in_l"), ACT};

class CoachLoop : public testing::Test {
 protected:
  void start(const Lines& answers) {
    coach.reset();
    server.sent();
    for (const std::string& text : answers) server.add(text);
    coach = std::make_unique<Recorder>("Alpha", server, PLAIN_CONFIG);
  }

  void play(const std::vector<Step>& steps) {
    for (std::size_t i = 0; i < steps.size(); ++i) {
      SCOPED_TRACE("step " + std::to_string(i) + ": " + steps[i].text);
      server.sent();
      coach->outcome = NOTHING;
      coach->comm->receiveText(steps[i].text.c_str());
      coach->step();
      const bool answered = server.sent() == "(done)";
      EXPECT_EQ(answered, SYNCH_MODE && steps[i].outcome != NOTHING);
      EXPECT_EQ(coach->outcome == NOTHING && answered ? ANSWER : coach->outcome, steps[i].outcome);
    }
  }

  TextServer server;
  StderrCapture errors;
  std::unique_ptr<Recorder> coach;
};

TEST_F(CoachLoop, ACycleBeginsWithALaterTimeOrInAStandstillAndTheLatestCallDecidesOnActing) {
  const std::vector<Step> matches[] = {
      {{view(0), ACT}, {view(0), ACT}, {call(0, "kick_off_l")}, {view(0)}, {view(1), ACT}},
      // The first call after the goal ends the standstill.
      {{call(1, "goal_l_1"), ACT}, {call(1, "kick_off_r"), ACT}, {call(1, "kick_off_r")}},
      {{call(1, "play_on"), CYCLE}, {view(1)}, {view(2), CYCLE}, {call(3, "free_kick_l"), ACT}}};
  for (const auto& match : matches) {
    start({INIT, REAL_TIME, PLAYER_PARAM});
    play(match);
  }
  play({{view(2147483647), ACT}, {view(-5)}});
  EXPECT_EQ(errors.take(),
            "2147483647 AsyncInfo (Alpha No.0): completely missed server timesteps from 4 "
            "to 2147483646 (no commands sent)\n");
}

TEST_F(CoachLoop, InSynchronousModeEveryThinkGetsOneAnswer) {
  const std::vector<Step> matches[] = {
      {{view(2)}, {view(2)}, {THINK, CYCLE}, {view(2)}},
      {{THINK}, {view(2), CYCLE}, {view(3)}, {THINK, CYCLE}},
      // The clock stands still in a foul, which the play mode does not show.
      {OUR_FOUL, {view(2)}, {THINK, ACT}, {view(2)}, {THINK, ANSWER}, {THINK}, {view(2), ANSWER}},
      // The view of the foul is lost.
      {OUR_FOUL, {THINK, ACT}, {view(2)}, {THINK, ANSWER}, {view(2)}, {THINK, ANSWER}},
      // "(think)" overtakes the call and the view, which then comes late or is lost.
      {{THINK}, OUR_KICK_IN, {view(2)}, {THINK}, {view(2), ANSWER}, {THINK}, {view(3), ACT}},
      {{THINK}, OUR_KICK_IN, {view(3)}, {THINK, ACT}, {view(3)}, {THINK, ANSWER}}};
  for (const auto& match : matches) {
    start({INIT, SERVER_PARAM, PLAYER_PARAM});
    play({{call(1, "play_on")}, {view(1)}, {THINK, CYCLE}});
    play(match);
  }
}

TEST_F(CoachLoop, CallsSetScoreHalfAndMode) {
  start({INIT, REAL_TIME, PLAYER_PARAM});
  for (const char* name : {"goal_l_3", "goal_r_1", "half_time", "yellow_card_l_5"})
    coach->comm->receiveText(call(2, name).c_str());
  EXPECT_EQ(std::pair(coach->comm->getOurScore(), coach->comm->getOtherScore()), std::pair(3, 1));
  EXPECT_TRUE(coach->comm->inSecondHalf());
  EXPECT_EQ(coach->comm->getPlayMode(), PLAY_MODE_HALF_TIME) << "a card changes no mode";
}

TEST_F(CoachLoop, ACheckinThatFailsIsReportedAndLeavesTheServerInOrder) {
  const std::string closing = "Onlinecoach: could not connect to sserver, closing down\n";
  const std::string checkin = "CommError: Comm (Alpha No.0): ";
  const std::string undelivered = "Onlinecoach: could not deliver checkin message to server !\n";
  const std::string swapped = checkin + "got player_param instead of server_param\n";
  const std::pair<Lines, std::string> cases[] = {
      {{"(error x)"},
       "CommError: Comm (Alpha No.-1): cannot handle server checkin response (error x)\n"
       "Onlinecoach: could not parse init response !\n"},
      {{INIT, PLAYER_PARAM, INIT},
       swapped + checkin + "cannot parse player_param (init l ok)\n" + undelivered},
      {{INIT, SERVER_PARAM},
       "CommError: select timed out\nOnlinecoach: did not receive response from server !\n"},
      {{INIT, PLAYER_PARAM, SERVER_PARAM, call(0, "time_over")},
       swapped + checkin + "got server_param instead of player_param\n"}};
  for (const auto& [texts, reported] : cases) {
    start(texts);
    coach->coach();
    coach.reset();
    EXPECT_EQ(errors.take(), reported + (texts.size() < 4 ? closing : ""));
    const std::string eye = texts[0] == INIT ? "(eye on)" : "";
    EXPECT_EQ(server.sent(), "(init Alpha (version 9.00))" + eye + "(bye)");
  }
}

TEST_F(CoachLoop, UnreadableTextsGetALineAndTheMatchGoesOn) {
  const std::string head = "CommError: 0 Comm (Alpha No.0): ";
  const std::string warning = "(warning message_not_null_terminated)";
  const std::pair<std::string, std::string> texts[] = {
      {std::string("\0(think)", 8), "could not parse server string "},
      {"(see 0)", "received strange message from server: (see 0)"},
      {"(error unknown)", "received error message from server: (error unknown)"},
      {warning, "received warning message from server: " + warning}};
  start({INIT, SERVER_PARAM, PLAYER_PARAM});
  for (const auto& [text, reported] : texts) {
    play({{text}});
    EXPECT_EQ(errors.take(), head + reported + "\n");
  }
  coach.reset();
  EXPECT_EQ(server.sent(), "(bye)$") << "from that warning on commands carry their NUL byte";
}

TEST_F(CoachLoop, AChangeOfTypesThatTheQueueDumpsIsNotLost) {
  start({INIT, REAL_TIME, PLAYER_PARAM});
  Lines texts = {playerType(3), "(change_player_type 7, 3)", "(change_player_type 4)"};
  texts.resize(28, view(0));
  for (const std::string& text : texts) coach->comm->receiveText(text.c_str());
  coach->step();
  EXPECT_EQ(coach->world->ourTeam[7].type, 3);
  EXPECT_EQ(coach->world->otherTypeChanges[4], 1);
  play({{view(1), ACT}});
  EXPECT_EQ(coach->world->numOurSubs, 1) << "each is taken once";
}

/// Cannot send one command.
class FailingServer : public TextServer {
 public:
  using TextServer::TextServer;
  void send(const char* msg, bool withTerminator) override {
    if (msg == std::string("(done)")) throw UDPSocketError("could not send msg", -1);
    TextServer::send(msg, withTerminator);
  }
};

TEST_F(CoachLoop, ACommandThatCannotBeSentIsReportedAndLost) {
  FailingServer failing({INIT, SERVER_PARAM, PLAYER_PARAM, view(1), THINK, call(1, "time_over")});
  Recorder("Alpha", failing, PLAIN_CONFIG).coach();
  EXPECT_EQ(failing.sent(), "(init Alpha (version 9.00))(eye on)(bye)");
  EXPECT_EQ(errors.take(), "CommError: 1 Comm (Alpha No.0): agent cannot send (done) to server\n");
}

}  // namespace
}  // namespace vok::test
