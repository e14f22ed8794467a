// The coach's check-in and loop over the texts of a server: when a cycle begins, when the server
// only gets an answer, and when the coach acts.
#include <gtest/gtest.h>

#include <memory>
#include <tuple>

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

class CoachLoop : public testing::Test {
 protected:
  void start(const Lines& answers) {
    coach.reset();
    server.sent();
    for (const std::string& text : answers) server.add(text);
    coach = std::make_unique<Recorder>("Alpha", server, SHIPPED_CONFIG);
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

TEST_F(CoachLoop, ACycleBeginsWithALaterTimeOrInAStandstill) {
  const std::vector<Step> matches[] = {
      {{view(0), ACT}, {view(0), ACT}, {call(0, "kick_off_l")}, {view(0)}, {view(1), ACT}},
      // The first call after the goal ends the standstill.
      {{call(1, "goal_l_1"), ACT}, {call(1, "kick_off_r"), ACT}, {call(1, "kick_off_r")}},
      {{call(1, "play_on"), CYCLE}, {view(1)}, {view(2), CYCLE}, {view(1)}, {view(3), CYCLE}}};
  for (const auto& match : matches) {
    start({INIT, REAL_TIME, PLAYER_PARAM});
    play(match);
  }
  EXPECT_EQ(errors.take(), "");
  play({{view(5), CYCLE}, {view(2147483647), CYCLE}, {view(-5)}});
  EXPECT_EQ(errors.take(),
            "5 AsyncInfo (Alpha No.0): completely missed server timesteps from 4 to 4 (no commands "
            "sent)\n2147483647 AsyncInfo (Alpha No.0): completely missed server timesteps from 6 "
            "to 2147483646 (no commands sent)\n");
}

TEST_F(CoachLoop, ActsByTheLatestCallAndNotByTheModeOfTheView) {
  start({INIT, REAL_TIME, PLAYER_PARAM});
  play({{call(1, "play_on"), CYCLE},
        {view(2), CYCLE},
        {call(3, "free_kick_l"), ACT},
        {view(4), ACT},
        {call(5, "play_on"), CYCLE}});
}

TEST_F(CoachLoop, InSynchronousModeEveryThinkGetsOneAnswer) {
  const std::vector<Step> begin = {{call(1, "play_on")}, {view(1)}, {THINK, CYCLE}};
  const std::vector<Step> matches[] = {
      {{view(2)}, {view(2)}, {THINK, CYCLE}, {view(2)}},
      {{THINK}, {view(2), CYCLE}, {view(3)}, {THINK, CYCLE}},
      // The clock stands still in a foul, which the play mode does not show.
      {{call(2, "foul_charge_l")},
       {view(2)},
       {THINK, ACT},
       {view(2)},
       {THINK, ANSWER},
       {THINK},
       {view(2), ANSWER}},
      // The view of the foul is lost.
      {{call(2, "foul_charge_l")},
       {THINK, ACT},
       {view(2)},
       {THINK, ANSWER},
       {view(2)},
       {THINK, ANSWER}},
      // "(think)" overtakes the call and the view, which then comes late or is lost.
      {{THINK}, {call(2, "kick_in_l"), ACT}, {view(2)}, {THINK}, {view(3), ACT}},
      {{THINK}, {call(2, "kick_in_l"), ACT}, {view(3)}, {THINK, ACT}, {view(3)}, {THINK, ANSWER}},
      {{THINK},
       {call(2, "kick_in_l"), ACT},
       {call(3, "foul_charge_l")},
       {THINK, ACT},
       {view(3)},
       {THINK, ANSWER}}};
  for (const auto& match : matches) {
    start({INIT, SERVER_PARAM, PLAYER_PARAM});
    play(begin);
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
  const std::string stranger =
      "CommError: Comm (Alpha No.-1): cannot handle server checkin response ";
  const std::string misread = "Onlinecoach: could not parse init response !\n";
  const std::string checkin = "CommError: Comm (Alpha No.0): ";
  const std::string undelivered = "Onlinecoach: could not deliver checkin message to server !\n";
  const std::string swapped = checkin + "got player_param instead of server_param\n";
  const std::string over = call(0, "time_over");
  const std::tuple<Lines, std::string> cases[] = {
      {{""}, stranger + "\n" + misread + closing},
      {{"(error no_such_team)"}, stranger + "(error no_such_team)\n" + misread + closing},
      {{INIT, INIT}, checkin + "cannot parse server_param (init l ok)\n" + undelivered + closing},
      {{INIT, PLAYER_PARAM, view(1)},
       swapped + checkin + "cannot parse player_param " + view(1) + "\n" + undelivered + closing},
      {{INIT, SERVER_PARAM},
       "CommError: select timed out\n"
       "Onlinecoach: did not receive response from server !\n" +
           closing},
      {{INIT, PLAYER_PARAM, SERVER_PARAM, over},
       swapped + checkin + "got server_param instead of player_param\n"},
      {{INIT, SERVER_PARAM, SERVER_PARAM, PLAYER_PARAM, over},
       checkin + "got server_param instead of player_param\n" +
           "CommError: 0 Comm (Alpha No.0): could not parse server string " + PLAYER_PARAM + "\n"}};
  for (const auto& [texts, reported] : cases) {
    start(texts);
    coach->coach();
    coach.reset();
    EXPECT_EQ(errors.take(), reported);
    const std::string eye = texts[0] == INIT ? "(eye on)" : "";
    EXPECT_EQ(server.sent(), "(init Alpha (version 9.00))" + eye + "(bye)");
  }
}

TEST_F(CoachLoop, UnreadableTextsGetALineAndTheMatchGoesOn) {
  const std::string head = "CommError: 0 Comm (Alpha No.0): ";
  const std::string unreadable = head + "could not parse server string ";
  std::string crowd = "(see_global 1 ((b) 0 0 0 0)";
  for (int i = 0; i < 23; ++i) crowd += " ((p \"Beta\" 1) 0 0 0 0 0 0)";
  const std::pair<std::string, std::string> texts[] = {
      {"", unreadable + "\n"},
      {std::string("\0(think)", 8), unreadable + "\n"},
      {"(bogus)", unreadable + "(bogus)\n"},
      {crowd + ")", "Parser: to manny players!\n" + unreadable + crowd + ")\n"},
      {"(see 0)", head + "received strange message from server: (see 0)\n"},
      {"(error unknown_command)", head + "received error message from server: "
                                         "(error unknown_command)\n"},
      {"(warning message_not_null_terminated)",
       head + "received warning message from server: (warning message_not_null_terminated)\n"}};
  start({INIT, SERVER_PARAM, PLAYER_PARAM});
  for (const auto& [text, reported] : texts) {
    play({{text}});
    EXPECT_EQ(errors.take(), reported);
  }
  // From that warning on commands carry their NUL byte.
  for (const std::string& text : {view(1), THINK + std::string("\0\0", 2), call(1, "time_over")})
    server.add(text);
  coach->coach();
  coach.reset();
  EXPECT_EQ(server.sent(), "(done)$(bye)$");
  EXPECT_EQ(errors.take(), "");
}

TEST_F(CoachLoop, AChangeOfTypesThatTheQueueDumpsIsNotLost) {
  start({INIT, REAL_TIME, PLAYER_PARAM});
  const Lines changes = {"(change_player_type 7, 3)", "(change_player_type 4)"};
  coach->comm->receiveText(playerType(3).c_str());
  for (const std::string& text : changes) coach->comm->receiveText(text.c_str());
  for (int i = 0; i < 25; ++i) coach->comm->receiveText(view(0).c_str());
  coach->step();
  EXPECT_EQ(coach->world->ourTeam[7].type, 3);
  EXPECT_EQ(coach->world->otherTypeChanges[4], 1);
  EXPECT_EQ(std::pair(coach->world->numOurSubs, coach->world->numOtherSubs), std::pair(1, 1));
  coach->step();
  play({{view(1), ACT}});
  EXPECT_EQ(coach->world->numOurSubs, 1) << "each is taken once";
}

/// Cannot send one command.
class FailingServer : public TextServer {
 public:
  void send(const char* msg, bool withTerminator) override {
    if (msg == lost) throw UDPSocketError("could not send msg", -1);
    TextServer::send(msg, withTerminator);
  }
  std::string lost;
};

TEST_F(CoachLoop, ACommandThatCannotBeSentIsReportedAndLost) {
  const std::string unsent = " Comm (Alpha No.0): agent cannot send ";
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"(init Alpha (version 9.00))", "(bye)",
       "CommError: could not send msg\n"
       "Onlinecoach: could not deliver checkin message to server !\n"
       "Onlinecoach: could not connect to sserver, closing down\n"},
      {"(eye on)", "(init Alpha (version 9.00))(done)(bye)",
       "CommError: 0 Comm (Alpha No.-1): agent cannot send (eye on) to server\n"},
      {"(done)", "(init Alpha (version 9.00))(eye on)(bye)",
       "CommError: 1" + unsent + "(done) to server\n"},
      {"(bye)", "(init Alpha (version 9.00))(eye on)(done)",
       "CommError: 1" + unsent + "(bye) to server\n"}};
  for (const auto& [lost, sent, reported] : cases) {
    FailingServer failing;
    failing.lost = lost;
    for (const std::string& text : {INIT, std::string(SERVER_PARAM), std::string(PLAYER_PARAM),
                                    view(1), THINK, call(1, "time_over")})
      failing.add(text);
    Recorder("Alpha", failing, SHIPPED_CONFIG).coach();
    EXPECT_EQ(failing.sent(), sent);
    EXPECT_EQ(errors.take(), reported);
  }
}

}  // namespace
}  // namespace vok::test
