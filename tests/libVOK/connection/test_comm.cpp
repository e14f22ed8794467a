// The connection without a network, and its socket.
#include "Comm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <sstream>
#include <tuple>

#include "Config.h"
#include "constants.h"
#include "mcommand.h"
#include "support/server.h"

namespace vok::test {
namespace {

using std::string_literals::operator""s;
constexpr double RIGHT = std::numbers::pi / 2;

class Connection : public testing::Test {
 protected:
  Connection() { Config::readFile(SHIPPED_CONFIG); }

  void connectAs(client_type type, int reconnect = 0, bool zeltra = false) {
    comm.reset();
    server.sent();
    comm = std::make_unique<Comm>("Alpha", type, server, reconnect, zeltra, 7, 8, SIDE_RIGHT);
  }

  TextServer server;
  std::unique_ptr<Comm> comm;
  StderrCapture errors;
};

TEST_F(Connection, EveryKindOfClientIntroducesItselfAndReadsTheAnswer) {
  const struct {
    client_type type;
    int reconnect;
    const char* introduction;
    const char* answer;
    int number = -1;  ///< of an answer that is taken
    playing_side side = SIDE_UNKNOWN;
    play_mode mode = PLAY_MODE_UNKNOWN;
    const char* sent = "";
  } cases[] = {{CLIENT_ONLINECOACH, 0, "(init Alpha (version 9.00))", "(init r", 0, SIDE_RIGHT,
                PLAY_MODE_BEFORE_KICK_OFF, "(eye on)"},
               {CLIENT_ONLINECOACH, 0, "(init Alpha (version 9.00))", "(init x ok)"},
               {CLIENT_ONLINECOACH, 0, "(init Alpha (version 9.00))", ""},
               {CLIENT_FIELDPLAYER, -1, "(init Alpha (version 9.00))", "(init r 7 kick_off_r)", 7,
                SIDE_RIGHT, PLAY_MODE_KICK_OFF_US},
               {CLIENT_FIELDPLAYER, 0, "(init Alpha (version 9.00))", "(init r 12 kick_off_r)"},
               {CLIENT_GOALIE, 0, "(init Alpha (version 9.00) (goalie))", "(init l 1)"},
               {CLIENT_FIELDPLAYER, 9, "(reconnect Alpha 9)", "(reconnect l play_on)", 9, SIDE_LEFT,
                PLAY_MODE_PLAY_ON},
               {CLIENT_TRAINCOACH, 0, "(init (version 9.00))", "(init ok)", 0, SIDE_RIGHT,
                PLAY_MODE_KICK_OFF_THEM, "(ear on)(eye on)"},
               {CLIENT_TRAINCOACH, 0, "(init (version 9.00))", "(init ok) "}};
  for (const auto& c : cases) {
    connectAs(c.type, c.reconnect);
    char message[8192];
    comm->generateCheckinMessage(message);
    EXPECT_STREQ(message, c.introduction);
    EXPECT_EQ(comm->parseCheckinResponse(c.answer), c.number < 0 ? COMM_ERROR_PARSE : COMM_OK);
    EXPECT_EQ(std::tuple(comm->getMyNumber(), comm->getMySide(), comm->getPlayMode()),
              std::tuple(c.number, c.side, c.mode))
        << c.answer;
    EXPECT_EQ(comm->getServerTime(), c.reconnect > 0 ? 3000 : 0) << c.answer;
    EXPECT_EQ(comm->inSecondHalf(), c.reconnect > 0) << c.answer;
    EXPECT_EQ(server.sent(), c.sent);
  }
  EXPECT_EQ(errors.take(), "");
  connectAs(CLIENT_ONLINECOACH, 4);
  char message[8192];
  comm->generateCheckinMessage(message);
  EXPECT_STREQ(message, "");
  EXPECT_TRUE(errors.take().starts_with("Warning: ensure reconnectNumber == 0 not valid in Comm:"));
}

TEST_F(Connection, VoicesGoWhereTheyBelong) {
  AudioMsg fromCoach;
  fromCoach.setPrefix("vok");
  fromCoach.createChkSums();
  const std::string own = fromCoach.getEncoding();
  const std::string coach = "online_coach_left (freeform \"" + own + "\"))";
  enum Place { NOWHERE, MESSAGES, RECORDS };
  const std::tuple<client_type, std::string, Place> rows[] = {
      {CLIENT_ONLINECOACH, "(p \"Alpha\" 3) \"hello\")", MESSAGES},
      {CLIENT_ONLINECOACH, "(p \"Alphabet\" 3) \"hello\")", NOWHERE},
      {CLIENT_ONLINECOACH, "(p \"Alph\" 3) \"hello\")", NOWHERE},
      {CLIENT_ONLINECOACH, "our 3)", RECORDS},
      {CLIENT_ONLINECOACH, "10 opp \"hello\")", RECORDS},
      {CLIENT_ONLINECOACH, "referee play_on)", RECORDS},
      {CLIENT_ONLINECOACH, "20 \"" + own + "\")", MESSAGES},
      {CLIENT_ONLINECOACH, "20 \"damaged\")", NOWHERE},
      {CLIENT_ONLINECOACH, "coach " + own, MESSAGES},
      {CLIENT_TRAINCOACH, "coach " + own, NOWHERE},
      {CLIENT_ONLINECOACH, coach, NOWHERE},
      {CLIENT_ONLINECOACH, "self \"" + own + "\")", NOWHERE},
      {CLIENT_FIELDPLAYER, coach, MESSAGES},
      {CLIENT_TRAINCOACH, coach, MESSAGES}};
  for (const auto& [type, voice, place] : rows) {
    connectAs(type);
    comm->async->setStates(0, 1, PLAY_MODE_PLAY_ON, SIDE_RIGHT, false);
    comm->audiomgr->setStates(0, false);
    comm->receiveText(("(hear 1 " + voice).c_str());
    AudioMsg message;
    SensorData data;
    EXPECT_EQ(comm->getNextMsg(message), place == MESSAGES) << voice;
    EXPECT_EQ(comm->getNextData(data), place == RECORDS) << voice;
  }
}

TEST_F(Connection, CommandsAreWrittenAsTheServerReadsThem) {
  connectAs(CLIENT_FIELDPLAYER);
  comm->parseCheckinResponse("(init r 7 play_on)");
  comm->async->viewModeTime = 9;
  comm->sendDash(60);
  comm->sendTurn(RIGHT);
  comm->sendCatch(-RIGHT);
  comm->sendTurnNeck(RIGHT);
  comm->sendTackle(30);
  comm->sendPointTo(5, 0);
  comm->sendAttentionTo(4, false);
  EXPECT_EQ(server.sent(),
            "(dash 60.000000)(turn 90.000000)(catch -90.000000)(turn_neck 90.000000)"
            "(tackle 30.000000)(pointto 5.000000 0.000000)(attentionto opp 4)");
  comm->sendChangeView(VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, false);
  comm->sendChangeMode(PLAY_MODE_KICK_IN_US);
  comm->sendChangeMode(PLAY_MODE_GOAL_THEM);
  for (const auto send : {&Comm::sendSenseBody, &Comm::sendCheckBall, &Comm::sendRecover,
                          &Comm::sendPointToOff, &Comm::sendAttentionToOff})
    (*comm.*send)();
  EXPECT_EQ(server.sent(),
            "(change_view wide low)(change_mode kick_in_r)(change_mode goal_l)"
            "(sense_body)(check_ball)(recover)(pointto off)(attentionto off)");
  comm->sendSay("abc");
  comm->sendMoveObject("b", 1, 2);
  comm->sendMoveObject("b", 1, 2, 3, 4, 5);
  comm->sendKick(80, RIGHT);
  EXPECT_EQ(server.sent(),
            "(say \"abc\")(move b 1.000000 2.000000)"
            "(move b 1.000000 2.000000 3.000000 4.000000 5.000000)(kick 80.000000 90.000000)");
  EXPECT_EQ(errors.take(), "");
  const AsyncCommInfo& async = *comm->async;
  const CycleAction& last = async.sentAction;
  EXPECT_EQ(std::tuple(last.command, last.param1, last.param2),
            std::tuple(KICK_COMMAND, 80, RIGHT));
  EXPECT_EQ(std::tuple(async.dashCount, async.tackleCount, async.pointToCount,
                       async.attentionToCount, async.viewModeTime),
            std::tuple(1, 1, 2, 2, 0))
      << "switching off counts as well";
}

TEST_F(Connection, CommandsThatTheServerWouldRefuseAreCutOrDroppedWithAReport) {
  connectAs(CLIENT_FIELDPLAYER);
  comm->parseCheckinResponse("(init r 7 play_on)");
  const std::string room(8192, 'x');
  for (const double power : {-150.0, 150.0, std::nan("")}) comm->sendDash(power);
  comm->sendAttentionTo(12, true);
  comm->sendMove(-5, 1);
  comm->sendChangeMode(PLAY_MODE_PAUSE);
  comm->sendMoveObject(room.c_str(), 1, 2);
  EXPECT_EQ(server.sent(), "(dash -100.000000)(dash 100.000000)");
  std::string reports;
  for (const std::string& report :
       {"agent tries to send (dash -150), normalizing to -100"s,
        "agent tries to send (dash 150), normalizing to 100"s,
        "agent tries to send (dash nan), dropping command completely"s,
        "agent tries to send (attentionto 12), dropping command completely"s,
        "agent tries to send (move -5 1) game is running, agent not allowed to (move)"s,
        "trying to set unknown play mode: No.4, droping command"s,
        "agent cannot send (move " + room.substr(0, 8185) + "... to server"})
    reports += "CommError: 0 Comm (Alpha No.7): " + report + "\n";
  EXPECT_EQ(errors.take(), reports);
}

TEST_F(Connection, AGoalieMovesWithTheBallInItsHands) {
  const std::tuple<client_type, play_mode, bool> cases[] = {
      {CLIENT_GOALIE, PLAY_MODE_FREE_KICK_US, true},
      {CLIENT_FIELDPLAYER, PLAY_MODE_FREE_KICK_US, false},
      {CLIENT_GOALIE, PLAY_MODE_PLAY_ON, false},
      {CLIENT_FIELDPLAYER, PLAY_MODE_BEFORE_KICK_OFF, true}};
  for (const auto& [type, mode, moves] : cases) {
    connectAs(type);
    comm->async->setStates(7, 0, mode, SIDE_LEFT, false);
    comm->sendMove(-5, 1);
    EXPECT_EQ(server.sent(), moves ? "(move -5.000000 1.000000)" : "");
    comm.reset();
    EXPECT_EQ(server.sent(), "(bye)");
  }
}

TEST_F(Connection, APlayerChecksInAndFeignsANormalView) {
  connectAs(CLIENT_FIELDPLAYER);
  for (const char* text : {"(init r 7 play_on)", SERVER_PARAM, PLAYER_PARAM}) server.add(text);
  EXPECT_EQ(comm->connect(), COMM_OK);
  EXPECT_EQ(server.sent(), "(init Alpha (version 9.00))(clang (ver 7 8))");
  EXPECT_EQ(comm->getMyNumber(), 7);
  comm->fakenormal = true;
  comm->receiveText("(ok say)");  // in synchronous mode, as it was told
  comm->sendChangeView(VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, false);
  EXPECT_FALSE(comm->async->thinking);
  AudioMsg message;
  comm->say(message);
  EXPECT_EQ(server.sent(), "(say \"vokha0aaaaaaaa\")");  // 21 + 14 + 10 + 7 is 52
  SYNCH_MODE = false;
  comm->receiveText("(ok say)");
  EXPECT_EQ(server.sent(), "(change_view narrow high)");
  comm->receiveText("(see 1 ((g r) 10 0))");
  EXPECT_EQ(server.sent(), "(change_view normal high)");
  SensorData seen;
  EXPECT_TRUE(comm->getNextData(seen) && seen.goal[GOAL_RIGHT].team == TEAM_US);
}

TEST_F(Connection, ABodySenseThatBeginsACycleStandsBeforeTheViewsOfIt) {
  connectAs(CLIENT_FIELDPLAYER);
  SYNCH_MODE = true;
  for (const auto& [mode, first] : {std::pair(PLAY_MODE_PLAY_ON, SENSOR_TYPE_SENSE_BODY),
                                    {PLAY_MODE_BEFORE_KICK_OFF, SENSOR_TYPE_SEE}}) {
    comm->async->setStates(7, 0, mode, SIDE_LEFT, false);
    comm->receiveText("(see 1 ((b) 1 0))");
    comm->receiveText("(sense_body 1 (kick 0))");
    SensorData data;
    EXPECT_TRUE(comm->getNextData(data) && data.type == first) << mode;
    EXPECT_TRUE(comm->getNextData(data) && data.type != first) << mode;
  }
}

TEST_F(Connection, ACoachsTextIsLimitedByTheServersSizeAndTwelve) {
  connectAs(CLIENT_ONLINECOACH);
  const std::string longest(140, 'x');
  comm->sendSay(longest.c_str());
  comm->sendSay((longest + "x").c_str());
  EXPECT_EQ(server.sent(), "(say " + longest + ")");
  EXPECT_EQ(errors.take(),
            "CommError: 0 Comm (Alpha No.-1): client tries to send too long say message (len= 141)"
            "(msg= " +
                longest + "x), dropping it completely\n");
  EXPECT_EQ(comm->async->sayCount, 1);
}

TEST(MCommand, AMarkersLabelHasTwoHundredCharacters) {
  EXPECT_EQ(MMarker({1, -2}, std::string(300, 'x').c_str(), 5).encoded,
            "(mark 5 ( 1, -2 )\"" + std::string(200, 'x') + "\" )");
}

TEST_F(Connection, MonitorCommandsNeedRemoteControl) {
  connectAs(CLIENT_ONLINECOACH, 0, true);
  Comm::sendMCmd(MLog("hello", 20));
  EXPECT_EQ(server.sent(), "(vokproxy 20 (log hello))");
}

TEST_F(Connection, ADrainTakesABoundedNumberOfDatagrams) {
  connectAs(CLIENT_ONLINECOACH);
  for (int i = 0; i < 1001; ++i) server.add("(bogus)");
  comm->drainSocket();
  EXPECT_EQ(lines(errors.take()).size(), 1000);
  comm->drainSocket();
  EXPECT_EQ(lines(errors.take()).size(), 1);
  EXPECT_TRUE(comm->isServerAlive());
  comm->drainSocket();
  EXPECT_FALSE(comm->isServerAlive());
}

TEST(SecondConnection, EndsTheProcess) {
  Config::readFile(SHIPPED_CONFIG);
  TextLink link;
  const auto build = [&link] {
    return Comm("Alpha", CLIENT_ONLINECOACH, link, 0, false, 7, 8, SIDE_LEFT);
  };
  const Comm first = build();
  EXPECT_EXIT(build(), testing::ExitedWithCode(255),
              "CommError: Comm: cannot construct more than one Comm in any single process !");
}

TEST(UdpSocket, ReportsItsFaults) {
  const std::string noHost(300, 'x');  // too long to be looked up anywhere
  const std::tuple<std::string, unsigned, const char*> rows[] = {
      {"127.0.0.1", 0, "maxMsgSize <= 0"}, {noHost, 10, "server host unknown"}};
  for (const auto& [host, size, expected] : rows) {
    try {
      UDPSocket(host.c_str(), 1, size).send("a fault");
      ADD_FAILURE() << expected;
    } catch (const UDPSocketError& error) {
      EXPECT_STREQ(error.msg(), expected);
    }
  }
}

TEST(UdpSocket, CutsLongDatagramsAndFollowsTheServersPort) {
  ScriptedServer server;
  UDPSocket socket("127.0.0.1", server.port(), 8);
  socket.send("hello");
  EXPECT_EQ(server.receive(), "hello");
  EXPECT_THROW(socket.recv(0, nullptr), UDPTimeOut);
  server.sendBytes("12345678");
  EXPECT_STREQ(socket.recv(-1, nullptr), "12345678");
  server.sendBytes("123456789");
  EXPECT_STREQ(socket.recv(1000, nullptr), "12345678");
  socket.send("again", true);
  EXPECT_EQ(server.receive(), "again$");
  const bool act = true;
  server.sendBytes("x");
  EXPECT_THROW(socket.recv(-1, &act), UDPAct);
}

}  // namespace
}  // namespace vok::test
