// The connection in the test's own process, against a scripted server.
#include "Comm.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <memory>
#include <numbers>
#include <thread>
#include <tuple>

#include "Config.h"
#include "constants.h"
#include "support/server.h"

namespace vok::test {
namespace {

class Connection : public testing::Test {
 protected:
  Connection() { Config::readFile(shippedConfig); }
  ~Connection() override { SYNCH_MODE = false; }

  void connectAs(client_type type, int reconnect = 0, bool zeltra = false) {
    comm.reset();
    comm = std::make_unique<Comm>("Alpha", type, "127.0.0.1", server.port(), reconnect, zeltra, 7,
                                  8, SIDE_RIGHT);
  }

  /// A message of our coach to all.
  static std::string ownMessage() {
    AudioMsg own;
    own.setPrefix("vok");
    own.createChkSums();
    return own.getEncoding();
  }

  ScriptedServer server;
  std::unique_ptr<Comm> comm;
  StderrCapture errors;
};

TEST_F(Connection, EveryKindOfClientIntroducesItself) {
  const std::tuple<client_type, int, const char*> rows[] = {
      {CLIENT_GOALIE, 0, "(init Alpha (version 9.00) (goalie))"},
      {CLIENT_FIELDPLAYER, -1, "(init Alpha (version 9.00))"},
      {CLIENT_TRAINCOACH, 0, "(init (version 9.00))"},
      {CLIENT_GOALIE, 1, "(reconnect Alpha 1)"},
      {CLIENT_FIELDPLAYER, 4, "(reconnect Alpha 4)"},
      {CLIENT_UNKNOWN, 0, ""},
      {CLIENT_ONLINECOACH, 4, ""}};
  for (const auto& [type, reconnect, expected] : rows) {
    EXPECT_EQ(errors.take(), "");
    connectAs(type, reconnect);
    char message[8192];
    comm->generateCheckinMessage(message);
    EXPECT_STREQ(message, expected);
  }
  EXPECT_TRUE(errors.take().starts_with("Warning: ensure reconnectNumber == 0 not valid in Comm:"));
}

TEST_F(Connection, ReadsTheServersAnswerByKindOfClient) {
  const struct {
    client_type type;
    int reconnect;
    const char* answer;
    int number = -1;  ///< of an answer that is taken
    playing_side side = SIDE_UNKNOWN;
    play_mode mode = PLAY_MODE_UNKNOWN;
  } cases[] = {
      {CLIENT_ONLINECOACH, 0, "(init l ok)", 0, SIDE_LEFT, PLAY_MODE_BEFORE_KICK_OFF},
      {CLIENT_ONLINECOACH, 0, "(init r", 0, SIDE_RIGHT, PLAY_MODE_BEFORE_KICK_OFF},
      {CLIENT_ONLINECOACH, 0, "(init x ok)"},
      {CLIENT_ONLINECOACH, 0, ""},
      {CLIENT_FIELDPLAYER, 0, "(init r 7 kick_off_r)", 7, SIDE_RIGHT, PLAY_MODE_KICK_OFF_US},
      {CLIENT_FIELDPLAYER, 0, "(init r 12 kick_off_r)"},
      {CLIENT_GOALIE, 0, "(init l 1)"},
      {CLIENT_FIELDPLAYER, 9, "(reconnect l play_on)", 9, SIDE_LEFT, PLAY_MODE_PLAY_ON},
      {CLIENT_TRAINCOACH, 0, "(init ok)", 0, SIDE_RIGHT, PLAY_MODE_KICK_OFF_THEM},
      {CLIENT_TRAINCOACH, 0, "(init ok) "}};
  for (const auto& c : cases) {
    connectAs(c.type, c.reconnect);
    EXPECT_EQ(comm->parseCheckinResponse(c.answer), c.number < 0 ? COMM_ERROR_PARSE : COMM_OK);
    EXPECT_EQ(comm->getMyNumber(), c.number) << c.answer;
    EXPECT_EQ(comm->getMySide(), c.side) << c.answer;
    EXPECT_EQ(comm->getPlayMode(), c.mode) << c.answer;
    EXPECT_EQ(comm->getServerTime(), c.reconnect > 0 ? 3000 : 0) << c.answer;
    EXPECT_EQ(comm->inSecondHalf(), c.reconnect > 0) << c.answer;
  }
}

TEST_F(Connection, VoicesGoWhereTheyBelong) {
  const std::string own = ownMessage();
  enum Place { NOWHERE, MESSAGES, RECORDS };
  const std::tuple<client_type, std::string, Place> rows[] = {
      {CLIENT_ONLINECOACH, "(p \"Alpha\" 3) \"hello\")", MESSAGES},
      {CLIENT_ONLINECOACH, "(p \"Beta\" 3) \"hello\")", NOWHERE},
      {CLIENT_ONLINECOACH, "our 3)", RECORDS},
      {CLIENT_ONLINECOACH, "10 opp \"hello\")", RECORDS},
      {CLIENT_ONLINECOACH, "referee play_on)", RECORDS},
      {CLIENT_ONLINECOACH, "20 \"" + own + "\")", MESSAGES},
      {CLIENT_ONLINECOACH, "20 \"damaged\")", NOWHERE},
      {CLIENT_ONLINECOACH, "coach hello)", NOWHERE},
      {CLIENT_ONLINECOACH, "online_coach_left (freeform \"" + own + "\"))", NOWHERE},
      {CLIENT_ONLINECOACH, "self \"hello\")", NOWHERE},
      {CLIENT_FIELDPLAYER, "online_coach_left (freeform \"" + own + "\"))", MESSAGES},
      {CLIENT_GOALIE, "online_coach_left (freeform \"" + own + "\"))", MESSAGES},
      {CLIENT_TRAINCOACH, "online_coach_left (freeform \"" + own + "\"))", MESSAGES}};
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
  constexpr double right = std::numbers::pi / 2;
  const struct {
    void (*send)(Comm&);
    const char* text;
    const char* error = "";
  } cases[] = {
      {[](Comm& c) { c.sendDash(60); }, "(dash 60.000000)"},
      {[](Comm& c) { c.sendDash(-150); }, "(dash -100.000000)",
       "agent tries to send (dash -150), normalizing to -100\n"},
      {[](Comm& c) { c.sendDash(150); }, "(dash 100.000000)",
       "agent tries to send (dash 150), normalizing to 100\n"},
      {[](Comm& c) { c.sendDash(std::numeric_limits<double>::quiet_NaN()); }, "",
       "agent tries to send (dash nan), dropping command completely\n"},
      {[](Comm& c) { c.sendTurn(right); }, "(turn 90.000000)"},
      {[](Comm& c) { c.sendCatch(-right); }, "(catch -90.000000)"},
      {[](Comm& c) { c.sendKick(80, right); }, "(kick 80.000000 90.000000)"},
      {[](Comm& c) { c.sendTurnNeck(right); }, "(turn_neck 90.000000)"},
      {[](Comm& c) { c.sendTackle(30); }, "(tackle 30.000000)"},
      {[](Comm& c) { c.sendPointTo(5, 0); }, "(pointto 5.000000 0.000000)"},
      {[](Comm& c) { c.sendAttentionTo(4, false); }, "(attentionto opp 4)"},
      {[](Comm& c) { c.sendChangeView(VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, false); },
       "(change_view wide low)"},
      {[](Comm& c) { c.sendMove(-5, 1); }, "",
       "agent tries to send (move -5 1) game is running, agent not allowed to (move)\n"},
      {[](Comm& c) { c.sendSay("abc"); }, "(say \"abc\")"},
      {[](Comm& c) { c.sendChangePlayer(5, 3); }, "(change_player_type 5 3)"},
      {[](Comm& c) { c.sendChangeMode(PLAY_MODE_KICK_IN_US); }, "(change_mode kick_in_r)"},
      {[](Comm& c) { c.sendChangeMode(PLAY_MODE_GOAL_THEM); }, "(change_mode goal_l)"},
      {[](Comm& c) { c.sendChangeMode(PLAY_MODE_PAUSE); }, "",
       "trying to set unknown play mode: No.4, droping command\n"},
      {[](Comm& c) { c.sendSenseBody(); }, "(sense_body)"},
      {[](Comm& c) { c.sendEar(false); }, "(ear off)"},
      {[](Comm& c) { c.sendCheckBall(); }, "(check_ball)"},
      {[](Comm& c) { c.sendRecover(); }, "(recover)"},
      {[](Comm& c) { c.sendPointToOff(); }, "(pointto off)"},
      {[](Comm& c) { c.sendAttentionToOff(); }, "(attentionto off)"},
      {[](Comm& c) { c.sendAttentionTo(12, true); }, "",
       "agent tries to send (attentionto 12), dropping command completely\n"},
      {[](Comm& c) { c.sendMoveObject("ball", 1, 2); }, "(move ball 1.000000 2.000000)"},
      {[](Comm& c) { c.sendMoveObject("ball", 1, 2, 3); },
       "(move ball 1.000000 2.000000 3.000000)"},
      {[](Comm& c) { c.sendMoveObject("ball", 1, 2, 3, 4, 5); },
       "(move ball 1.000000 2.000000 3.000000 4.000000 5.000000)"},
  };
  for (const auto& [send, text, error] : cases) {
    send(*comm);
    const std::string prefix = *error == '\0' ? "" : "CommError: 0 Comm (Alpha No.7): ";
    EXPECT_EQ(errors.take(), prefix + error);
    EXPECT_EQ(server.receive(*text == '\0' ? 0 : 1000), text);
  }
  EXPECT_EQ(comm->async->sentAction.command, TACKLE_COMMAND);
  EXPECT_EQ(comm->async->dashCount, 3);
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
    comm.reset();
    if (moves) {
      EXPECT_EQ(server.receive(), "(move -5.000000 1.000000)");
    }
    EXPECT_EQ(server.receive(), "(bye)");
  }
}

TEST_F(Connection, APlayerChecksInAndFeignsANormalView) {
  connectAs(CLIENT_FIELDPLAYER);
  comm->sendLook();
  server.receive();
  for (const char* text : {"(init l 7 play_on)", serverParam, playerParam}) server.send(text);
  EXPECT_EQ(comm->connect(), COMM_OK);
  EXPECT_EQ(server.receive(), "(init Alpha (version 9.00))");
  EXPECT_EQ(server.receive(), "(clang (ver 7 8))");
  EXPECT_EQ(comm->getMyNumber(), 7);
  comm->fakenormal = true;
  comm->receiveText("(ok say)");  // in synchronous mode, as it was told
  SYNCH_MODE = false;
  comm->receiveText("(ok say)");
  EXPECT_EQ(server.receive(), "(change_view narrow high)");
  EXPECT_EQ(server.receive(0), "");
}

TEST_F(Connection, ACoachsTextIsLimitedByTheServersSizeAndTwelve) {
  connectAs(CLIENT_ONLINECOACH);
  const std::string longest(140, 'x');
  comm->sendSay(longest.c_str());
  EXPECT_EQ(server.receive(), "(say " + longest + ")");
  comm->sendSay((longest + "x").c_str());
  EXPECT_EQ(server.receive(0), "");
  EXPECT_EQ(errors.take(),
            "CommError: 0 Comm (Alpha No.-1): client tries to send too long say message (len= 141)"
            "(msg= " +
                longest + "x), dropping it completely\n");
  EXPECT_EQ(comm->async->sayCount, 1);
}

TEST_F(Connection, MonitorCommandsNeedRemoteControl) {
  connectAs(CLIENT_ONLINECOACH, 0, true);
  Comm::sendMCmd(MLog("hello", 20));
  EXPECT_EQ(server.receive(), "(vokproxy 20 (log hello))");
}

TEST_F(Connection, AFloodDoesNotKeepTheDrain) {
  connectAs(CLIENT_ONLINECOACH);
  comm->sendLook();
  server.receive();
  std::atomic<bool> flooding = true;
  std::thread flood([&] {
    while (flooding) server.send("(bogus)");  // reporting one takes longer than sending it
  });
  comm->drainSocket();
  flooding = false;
  flood.join();
  EXPECT_LE(lines(errors.take()).size(), 1000);
}

TEST(SecondConnection, EndsTheProcess) {
  Config::readFile(shippedConfig);
  const auto build = [] {
    return Comm("Alpha", CLIENT_ONLINECOACH, "127.0.0.1", 1, 0, false, 7, 8, SIDE_LEFT);
  };
  const Comm first = build();
  EXPECT_EXIT(build(), testing::ExitedWithCode(255),
              "CommError: Comm: cannot construct more than one Comm in any single process !");
}

TEST(UdpSocket, ReportsItsFaults) {
  const auto message = [](const char* host, unsigned size) -> std::string {
    try {
      UDPSocket socket(host, 1, size);
      return "";
    } catch (const UDPSocketError& error) {
      return error.msg();
    }
  };
  EXPECT_EQ(message("127.0.0.1", 0), "maxMsgSize <= 0");
  EXPECT_EQ(message("no-such-host.invalid", 10), "server host unknown");
  EXPECT_EQ(message("127.0.0.1", 1), "");
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
