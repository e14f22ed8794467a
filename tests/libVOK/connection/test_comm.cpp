// The connection without a network, and its socket.
#include "Comm.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <thread>
#include <tuple>

#include "Config.h"
#include "constants.h"
#include "coordinates.h"
#include "mcommand.h"
#include "support/server.h"

namespace vok::test {
namespace {

using std::string_literals::operator""s;

class Connection : public testing::Test {
 protected:
  Connection() { Config::readFile(PLAIN_CONFIG); }

  void connectAs(client_type type, int reconnect = 0, bool zeltra = false) {
    comm.reset();
    server.sent();
    comm = std::make_unique<Comm>("Alpha", type, server, reconnect, zeltra, 7, 8, SIDE_RIGHT);
  }

  TextServer server;
  std::unique_ptr<Comm> comm;
  StderrCapture errors;
};

TEST_F(Connection, EveryKindOfClientChecksIn) {
  using States = std::tuple<int, playing_side, play_mode>;
  const States refused(-1, SIDE_UNKNOWN, PLAY_MODE_UNKNOWN);
  const States again(1, SIDE_RIGHT, PLAY_MODE_KICK_OFF_US);
  const States trainer(0, SIDE_RIGHT, PLAY_MODE_KICK_OFF_THEM);
  const std::string init = "(init Alpha (version 9.00))";
  const std::tuple<client_type, int, const char*, std::string, States> cases[] = {
      {CLIENT_ONLINECOACH, 0, "(init x ok)", init, refused},
      {CLIENT_FIELDPLAYER, -1, "(init r 12 kick_off_r)", init, refused},
      {CLIENT_GOALIE, 0, "(init l 1)", "(init Alpha (version 9.00) (goalie))", refused},
      {CLIENT_GOALIE, 1, "(reconnect r kick_off_r)", "(reconnect Alpha 1)(clang (ver 7 8))", again},
      {CLIENT_TRAINCOACH, 0, "(init ok)", "(init (version 9.00))(ear on)(eye on)", trainer},
      {CLIENT_TRAINCOACH, 0, "(init ok) ", "(init (version 9.00))", refused}};
  for (const auto& [type, reconnect, answer, sent, states] : cases) {
    connectAs(type, reconnect);
    server.dropTexts();
    for (const char* text : {answer, SERVER_PARAM, PLAYER_PARAM}) server.add(text);
    EXPECT_EQ(comm->connect(), states == refused ? COMM_ERROR_PARSE : COMM_OK);
    EXPECT_EQ(server.sent(), sent) << answer;
    EXPECT_EQ(States(comm->getMyNumber(), comm->getMySide(), comm->getPlayMode()), states);
    EXPECT_EQ(comm->getServerTime(), reconnect > 0 ? 3000 : 0);
    EXPECT_EQ(comm->inSecondHalf(), reconnect > 0);
  }
  errors.take();
  connectAs(CLIENT_ONLINECOACH, 1);
  server.add("(init l ok)");
  comm->connect();
  const std::string refusal = "Warning: ensure reconnectNumber == 0 not valid in Comm:";
  EXPECT_EQ(count(errors.take(), refusal), 2U) << "for the text and for its answer";
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
      {CLIENT_ONLINECOACH, "our 3)", RECORDS},
      {CLIENT_ONLINECOACH, "20 \"" + own + "\")", MESSAGES},
      {CLIENT_ONLINECOACH, "coach " + own, MESSAGES},
      {CLIENT_TRAINCOACH, "coach " + own, NOWHERE},
      {CLIENT_ONLINECOACH, coach, NOWHERE},
      {CLIENT_ONLINECOACH, "self \"" + own + "\")", NOWHERE},
      {CLIENT_FIELDPLAYER, coach, MESSAGES}};
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
  comm->sendCatch(-PI / 2);
  comm->sendTackle(30);
  comm->sendPointTo(5, 0);
  comm->sendPointToOff();
  comm->sendAttentionTo(4, false);
  comm->sendAttentionToOff();
  comm->sendChangeView(VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, false);
  comm->sendChangeMode(PLAY_MODE_KICK_IN_US);
  comm->sendMoveObject("b", 1, 2, 3, 4, 5);
  comm->sendKick(80, PI / 2);
  AudioMsg message;
  comm->audiomgr->setStates(7, false);
  comm->say(message);
  EXPECT_EQ(server.sent(),
            "(catch -90.000000)(tackle 30.000000)(pointto 5.000000 0.000000)(pointto off)"
            "(attentionto opp 4)(attentionto off)(change_view wide low)(change_mode kick_in_r)"
            "(move b 1.000000 2.000000 3.000000 4.000000 5.000000)(kick 80.000000 90.000000)"
            "(say \"vokha0aaaaaaaa\")");  // 21 + 14 + 10 + 7 is 52
  EXPECT_EQ(std::pair(comm->async->pointToCount, comm->async->attentionToCount), std::pair(2, 2))
      << "switching off counts as well";
}

TEST_F(Connection, CommandsThatTheServerWouldRefuseAreCutOrDroppedWithAReport) {
  connectAs(CLIENT_FIELDPLAYER);
  comm->parseCheckinResponse("(init r 7 play_on)");
  const std::string room(8192, 'x');
  for (const double power : {150.0, std::nan("")}) comm->sendDash(power);
  comm->sendAttentionTo(12, true);
  comm->sendChangeMode(PLAY_MODE_PAUSE);
  comm->sendMoveObject(room.c_str(), 1, 2);
  EXPECT_EQ(server.sent(), "(dash 100.000000)");
  std::string reports;
  for (const std::string& report :
       {"agent tries to send (dash 150), normalizing to 100"s,
        "agent tries to send (dash nan), dropping command completely"s,
        "agent tries to send (attentionto 12), dropping command completely"s,
        "trying to set unknown play mode: No.4, droping command"s,
        "agent cannot send (move " + room.substr(0, 8185) + "... to server"})
    reports += "CommError: 0 Comm (Alpha No.7): " + report + "\n";
  EXPECT_EQ(errors.take(), reports);
}

TEST_F(Connection, AGoalieMovesWithTheBallInItsHands) {
  for (const auto& [type, mode, moves] : {std::tuple(CLIENT_GOALIE, PLAY_MODE_FREE_KICK_US, true),
                                          {CLIENT_FIELDPLAYER, PLAY_MODE_FREE_KICK_US, false},
                                          {CLIENT_GOALIE, PLAY_MODE_PLAY_ON, false}}) {
    connectAs(type);
    comm->async->setStates(7, 0, mode, SIDE_LEFT, false);
    comm->sendMove(-5, 1);
    EXPECT_EQ(server.sent(), moves ? "(move -5.000000 1.000000)" : "");
  }
}

TEST_F(Connection, APlayerInRealTimeFeignsANormalView) {
  connectAs(CLIENT_FIELDPLAYER);
  comm->parseCheckinResponse("(init r 7 play_on)");
  comm->fakenormal = true;
  for (const bool synchronous : {true, false}) {
    SYNCH_MODE = synchronous;
    comm->receiveText("(ok say)");
    comm->receiveText("(see 1 ((g r) 10 0))");
    EXPECT_EQ(server.sent(),
              synchronous ? "" : "(change_view narrow high)(change_view normal high)");
  }
}

TEST_F(Connection, ABodySenseThatBeginsACycleStandsBeforeTheViewsOfIt) {
  SYNCH_MODE = true;
  for (const auto& [mode, first] : {std::pair(PLAY_MODE_PLAY_ON, SENSOR_TYPE_SENSE_BODY),
                                    {PLAY_MODE_BEFORE_KICK_OFF, SENSOR_TYPE_SEE}}) {
    connectAs(CLIENT_FIELDPLAYER);
    comm->async->setStates(7, 0, mode, SIDE_LEFT, false);
    comm->receiveText("(see 1 ((b) 1 0))");
    comm->receiveText("(sense_body 1 (kick 0))");
    SensorData data;
    EXPECT_TRUE(comm->getNextData(data) && data.type == first) << mode;
  }
}

TEST_F(Connection, ACoachsTextIsLimitedByTheServersSizeAndTwelve) {
  connectAs(CLIENT_ONLINECOACH);
  const std::string longest(140, 'x');
  for (const std::string& text : {longest, longest + "x"}) comm->sendSay(text.c_str());
  EXPECT_EQ(server.sent(), "(say " + longest + ")");
  EXPECT_EQ(errors.take(),
            "CommError: 0 Comm (Alpha No.-1): client tries to send too long say message (len= 141)"
            "(msg= " +
                longest + "x), dropping it completely\n");
  EXPECT_EQ(comm->async->sayCount, 1);
}

TEST_F(Connection, AMonitorsCommandsNeedRemoteControlAndHaveShortLabels) {
  connectAs(CLIENT_ONLINECOACH, 0, true);
  Comm::sendMCmd(MLog("hello", 20));
  EXPECT_EQ(server.sent(), "(vokproxy 20 (log hello))");
  EXPECT_EQ(MMarker({1, -2}, std::string(300, 'x').c_str(), 5).encoded,
            "(mark 5 ( 1, -2 )\"" + std::string(200, 'x') + "\" )");
}

TEST_F(Connection, ShowsNoControlCharacterOfADatagramRaw) {
  const auto take = [this](const std::string& text, bool isCheckin) {
    server.dropTexts();
    if (isCheckin) server.add(text);
    if (isCheckin) comm->connect();
    if (!isCheckin) comm->receiveText(text.c_str());
    const std::string errs = errors.take();
    EXPECT_TRUE(isPlain(errs)) << testing::PrintToString(errs);
    return count(errs, SHOWN_CONTROLS) > 0;
  };
  for (const client_type type : {CLIENT_ONLINECOACH, CLIENT_FIELDPLAYER}) {
    for (const std::string& text :
         {"(init l ok)"s, view(1), "(player_type (id 1) (new 1) )"s, "(think)"s, "(bogus)"s,
          "(error no)"s, "(warning no)"s, "(hear 1 referee no_mode)"s, "(change_player_type 1 a)"s,
          "(hear 1 online_coach_left (bogus))"s, "(sense_body 1 (kick 0))"s,
          "(see 1 ((b) 1 2))"s}) {
      connectAs(type);
      bool isShown = false;
      for (std::size_t at = 0; at <= text.size(); ++at) {
        isShown |= take(std::string(text).insert(at, CONTROLS), text == "(init l ok)");
      }
      EXPECT_TRUE(isShown) << text;
    }
  }
}

TEST_F(Connection, ADrainTakesABoundedNumberOfDatagrams) {
  connectAs(CLIENT_ONLINECOACH);
  for (int i = 0; i < 1001; ++i) server.add("(bogus)");
  for (const std::size_t taken : {1000U, 1U}) {
    comm->drainSocket();
    EXPECT_EQ(lines(errors.take()).size(), taken);
  }
}

TEST(SecondConnection, EndsTheProcess) {
  Config::readFile(PLAIN_CONFIG);
  TextLink link;
  const Comm first("Alpha", CLIENT_ONLINECOACH, link, 0, false, 7, 8, SIDE_LEFT);
  EXPECT_EXIT(Comm("Alpha", CLIENT_ONLINECOACH, link, 0, false, 7, 8, SIDE_LEFT),
              testing::ExitedWithCode(255),
              "CommError: Comm: cannot construct more than one Comm in any single process !");
}

TEST(UdpSocket, CutsLongDatagramsAndFollowsTheServersLatestPort) {
  ScriptedServer server;
  UDPSocket socket("127.0.0.1", server.port(), 8);
  socket.send("hello");
  EXPECT_EQ(server.receive(), "hello");
  EXPECT_THROW(socket.recv(0, nullptr), UDPTimeOut);
  for (const char* bytes : {"12345678", "123456789"}) {
    server.sendBytes(bytes);
    EXPECT_STREQ(socket.recv(1000, nullptr), "12345678");
  }
  socket.send("again", true);
  EXPECT_EQ(server.receive(), "again$");
  ScriptedServer moved;
  moved.address(server);
  moved.sendBytes("here");
  EXPECT_STREQ(socket.recv(-1, nullptr), "here");
  socket.send("there");
  EXPECT_EQ(moved.receive(), "there");
  const bool act = true;
  EXPECT_THROW(socket.recv(-1, &act), UDPAct);
}

// Before the answer to the check-in the resolved address is believed, or one that sends the answer;
// then the address of the answer alone.
TEST(UdpSocket, HearsNoOtherAddressThanTheServers) {
  for (const unsigned host : {1U, 3U}) {
    ScriptedServer welcome, server(host), stranger(2);
    UDPSocket socket("127.0.0.1", welcome.port(), 100);
    socket.send("(init)");
    EXPECT_EQ(welcome.receive(), "(init)");
    server.address(welcome);
    stranger.address(welcome);
    StderrCapture errors;
    stranger.send("(error already_have_coach)");
    server.send("(init l ok)");
    EXPECT_STREQ(socket.recv(1000, nullptr), "(init l ok)");
    std::string lines =
        "CommError: dropped a datagram from 127.0.0.2: the server is at 127.0.0.1\n";
    if (host == 3) lines += "CommError: the server answers from 127.0.0.3 instead of 127.0.0.1\n";
    EXPECT_EQ(errors.take(), lines);

    // What strangers send neither is heard nor keeps the server alive, and is counted.
    std::thread flood([&stranger] {
      for (int i = 0; i < 100; ++i) {
        stranger.send("(init r ok)");
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
    });
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_THROW(socket.recv(100, nullptr), UDPTimeOut);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(350));
    flood.join();
    EXPECT_EQ(socket.tryRecv(), nullptr);
    EXPECT_EQ(socket.dropped(), 101U);
    server.send("(think)");
    EXPECT_STREQ(socket.recv(1000, nullptr), "(think)");
    socket.send("(done)");
    EXPECT_EQ(server.receive(), "(done)");
    EXPECT_EQ(errors.take(), "");
  }
}

}  // namespace
}  // namespace vok::test
