// The connection in the test's own process, against a scripted server.
#include "Comm.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <numbers>
#include <thread>

#include "Config.h"
#include "constants.h"
#include "support/param_keeper.h"
#include "support/server.h"

namespace vok::test {
namespace {

class Connection : public testing::Test {
 protected:
  Connection() { Config::readFile(shippedConfig); }
  ~Connection() override { SYNCH_MODE = false; }

  void connectAs(client_type type, int reconnect = 0, bool zeltra = false) {
    comm = std::make_unique<Comm>("Alpha", type, "127.0.0.1", server.port(), reconnect, zeltra, 7,
                                  8, SIDE_RIGHT);
  }

  ScriptedServer server;
  std::unique_ptr<Comm> comm;
  StderrCapture errors;
};

TEST_F(Connection, EveryKindOfClientIntroducesItself) {
  const struct {
    client_type type;
    int reconnect;
    const char* message;
    const char* error;
  } cases[] = {
      {CLIENT_GOALIE, 0, "(init Alpha (version 9.00) (goalie))", ""},
      {CLIENT_FIELDPLAYER, -1, "(init Alpha (version 9.00))", ""},
      {CLIENT_ONLINECOACH, 0, "(init Alpha (version 9.00))", ""},
      {CLIENT_TRAINCOACH, 0, "(init (version 9.00))", ""},
      {CLIENT_GOALIE, 1, "(reconnect Alpha 1)", ""},
      {CLIENT_FIELDPLAYER, 4, "(reconnect Alpha 4)", ""},
      {CLIENT_ONLINECOACH, 4, "", "Warning: ensure reconnectNumber == 0 not valid in Comm:"},
      {CLIENT_UNKNOWN, 0, "", ""},
  };
  for (const auto& c : cases) {
    connectAs(c.type, c.reconnect);
    char message[8192];
    comm->generateCheckinMessage(message);
    EXPECT_STREQ(message, c.message);
    const std::string reported = errors.take();
    EXPECT_EQ(reported.substr(0, reported.rfind(':') + 1), c.error);
    comm.reset();
  }
}

TEST_F(Connection, ReadsTheServersAnswerByKindOfClient) {
  const struct {
    client_type type;
    int reconnect;
    const char* answer;
    comm_error result;
    int number;
    playing_side side;
    play_mode mode;
    long time;
  } cases[] = {
      {CLIENT_ONLINECOACH, 0, "(init l ok)", COMM_OK, 0, SIDE_LEFT, PLAY_MODE_BEFORE_KICK_OFF, 0},
      {CLIENT_ONLINECOACH, 0, "(init r", COMM_OK, 0, SIDE_RIGHT, PLAY_MODE_BEFORE_KICK_OFF, 0},
      {CLIENT_ONLINECOACH, 0, "(init x ok)", COMM_ERROR_PARSE, -1, SIDE_UNKNOWN, PLAY_MODE_UNKNOWN,
       0},
      {CLIENT_ONLINECOACH, 0, "", COMM_ERROR_PARSE, -1, SIDE_UNKNOWN, PLAY_MODE_UNKNOWN, 0},
      {CLIENT_FIELDPLAYER, 0, "(init r 7 kick_off_r)", COMM_OK, 7, SIDE_RIGHT,
       PLAY_MODE_KICK_OFF_US, 0},
      {CLIENT_FIELDPLAYER, 0, "(init r 12 kick_off_r)", COMM_ERROR_PARSE, -1, SIDE_UNKNOWN,
       PLAY_MODE_UNKNOWN, 0},
      {CLIENT_GOALIE, 0, "(init l 1)", COMM_ERROR_PARSE, -1, SIDE_UNKNOWN, PLAY_MODE_UNKNOWN, 0},
      {CLIENT_FIELDPLAYER, 9, "(reconnect l play_on)", COMM_OK, 9, SIDE_LEFT, PLAY_MODE_PLAY_ON,
       3000},
      {CLIENT_TRAINCOACH, 0, "(init ok)", COMM_OK, 0, SIDE_RIGHT, PLAY_MODE_KICK_OFF_THEM, 0},
      {CLIENT_TRAINCOACH, 0, "(init ok) ", COMM_ERROR_PARSE, -1, SIDE_UNKNOWN, PLAY_MODE_UNKNOWN,
       0},
  };
  for (const auto& c : cases) {
    connectAs(c.type, c.reconnect);
    EXPECT_EQ(comm->parseCheckinResponse(c.answer), c.result) << c.answer;
    EXPECT_EQ(comm->getMyNumber(), c.number) << c.answer;
    EXPECT_EQ(comm->getMySide(), c.side) << c.answer;
    EXPECT_EQ(comm->getPlayMode(), c.mode) << c.answer;
    EXPECT_EQ(comm->getServerTime(), c.time) << c.answer;
    EXPECT_EQ(comm->inSecondHalf(), c.time == 3000) << c.answer;
    comm.reset();
  }
}

TEST_F(Connection, ADrainTakesWhatIsWaitingUpToTheCycle) {
  connectAs(CLIENT_ONLINECOACH);
  comm->sendLook();
  EXPECT_EQ(server.receive(), "(look)");
  comm->parser->setSide(SIDE_LEFT);
  for (const char* text : {"(hear 0 referee play_on)", "(ok eye on)"}) server.send(text);
  server.send(view(1));
  server.send(view(2));
  comm->drainSocket();
  EXPECT_TRUE(comm->async->takeAct());
  EXPECT_EQ(comm->getServerTime(), 1) << "the second view is the next cycle's";
  SensorData data;
  ASSERT_TRUE(comm->getNextData(data));
  EXPECT_EQ(data.mode, PLAY_MODE_PLAY_ON);
  ASSERT_TRUE(comm->getNextData(data));
  EXPECT_EQ(data.type, SENSOR_TYPE_EXACT);
  EXPECT_FALSE(comm->getNextData(data));
}

TEST_F(Connection, VoicesGoWhereTheyBelong) {
  connectAs(CLIENT_ONLINECOACH);
  AudioMsg own;
  own.setPrefix("vok");
  own.createChkSums();
  const struct {
    std::string text;
    bool queuedMessage;
    bool storedRecord;
  } cases[] = {
      {"(hear 1 (p \"Alpha\" 3) \"hello\")", true, false},
      {"(hear 1 (p \"Beta\" 3) \"hello\")", false, false},
      {"(hear 1 our 3)", false, true},
      {"(hear 1 10 opp \"hello\")", false, true},
      {"(hear 1 referee play_on)", false, true},
      {std::string("(hear 1 20 \"") + own.getEncoding() + "\")", true, false},
      {"(hear 1 20 \"damaged\")", false, false},
      {"(hear 1 coach hello)", false, false},
      {"(hear 1 online_coach_left (freeform \"hello\"))", false, false},
      {"(hear 1 self \"hello\")", false, false},
  };
  comm->async->setStates(0, 1, PLAY_MODE_PLAY_ON, SIDE_RIGHT, false);
  comm->audiomgr->setStates(0, false);
  for (const auto& c : cases) {
    comm->receiveText(c.text.c_str());
    AudioMsg message;
    SensorData data;
    EXPECT_EQ(comm->getNextMsg(message), c.queuedMessage) << c.text;
    EXPECT_EQ(comm->getNextData(data), c.storedRecord) << c.text;
  }
}

TEST_F(Connection, CommandsAreWrittenAsTheServerReadsThem) {
  connectAs(CLIENT_FIELDPLAYER);
  comm->parseCheckinResponse("(init r 7 play_on)");
  const double right = std::numbers::pi / 2;
  const struct {
    void (*send)(Comm&, double);
    double argument;
    const char* text;
    const char* error;
  } cases[] = {
      {[](Comm& c, double v) { c.sendDash(v); }, 60, "(dash 60.000000)", ""},
      {[](Comm& c, double v) { c.sendDash(v); }, -150, "(dash -100.000000)",
       "agent tries to send (dash -150), normalizing to -100\n"},
      {[](Comm& c, double v) { c.sendDash(v); }, 150, "(dash 100.000000)",
       "agent tries to send (dash 150), normalizing to 100\n"},
      {[](Comm& c, double v) { c.sendDash(v); }, std::numeric_limits<double>::quiet_NaN(), "",
       "agent tries to send (dash nan), dropping command completely\n"},
      {[](Comm& c, double v) { c.sendTurn(v); }, right, "(turn 90.000000)", ""},
      {[](Comm& c, double v) { c.sendCatch(v); }, -right, "(catch -90.000000)", ""},
      {[](Comm& c, double v) { c.sendKick(80, v); }, right, "(kick 80.000000 90.000000)", ""},
      {[](Comm& c, double v) { c.sendTurnNeck(v); }, right, "(turn_neck 90.000000)", ""},
      {[](Comm& c, double v) { c.sendTackle(v); }, 30, "(tackle 30.000000)", ""},
      {[](Comm& c, double v) { c.sendPointTo(v, 0); }, 5, "(pointto 5.000000 0.000000)", ""},
      {[](Comm& c, double) { c.sendAttentionTo(4, false); }, 0, "(attentionto opp 4)", ""},
      {[](Comm& c, double) { c.sendChangeView(VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, false); }, 0,
       "(change_view wide low)", ""},
      {[](Comm& c, double v) { c.sendMove(v, 1); }, -5, "",
       "agent tries to send (move -5 1) game is running, agent not allowed to (move)\n"},
      {[](Comm& c, double) { c.sendSay("abc"); }, 0, "(say \"abc\")", ""},
      {[](Comm& c, double) { c.sendChangePlayer(5, 3); }, 0, "(change_player_type 5 3)", ""},
      {[](Comm& c, double) { c.sendChangeMode(PLAY_MODE_KICK_IN_US); }, 0,
       "(change_mode kick_in_r)", ""},
      {[](Comm& c, double) { c.sendChangeMode(PLAY_MODE_GOAL_THEM); }, 0, "(change_mode goal_l)",
       ""},
      {[](Comm& c, double) { c.sendChangeMode(PLAY_MODE_PAUSE); }, 0, "",
       "trying to set unknown play mode: No.4, droping command\n"},
      {[](Comm& c, double) { c.sendSenseBody(); }, 0, "(sense_body)", ""},
      {[](Comm& c, double) { c.sendEar(false); }, 0, "(ear off)", ""},
      {[](Comm& c, double) { c.sendCheckBall(); }, 0, "(check_ball)", ""},
      {[](Comm& c, double) { c.sendRecover(); }, 0, "(recover)", ""},
      {[](Comm& c, double) { c.sendPointToOff(); }, 0, "(pointto off)", ""},
      {[](Comm& c, double) { c.sendAttentionToOff(); }, 0, "(attentionto off)", ""},
      {[](Comm& c, double) { c.sendAttentionTo(12, true); }, 0, "",
       "agent tries to send (attentionto 12), dropping command completely\n"},
      {[](Comm& c, double v) { c.sendMoveObject("ball", v, 2); }, 1,
       "(move ball 1.000000 2.000000)", ""},
      {[](Comm& c, double v) { c.sendMoveObject("ball", v, 2, 3); }, 1,
       "(move ball 1.000000 2.000000 3.000000)", ""},
      {[](Comm& c, double v) { c.sendMoveObject("ball", v, 2, 3, 4, 5); }, 1,
       "(move ball 1.000000 2.000000 3.000000 4.000000 5.000000)", ""},
  };
  for (const auto& c : cases) {
    c.send(*comm, c.argument);
    const std::string prefix = *c.error == '\0' ? "" : "CommError: 0 Comm (Alpha No.7): ";
    EXPECT_EQ(errors.take(), prefix + c.error);
    EXPECT_EQ(server.receive(*c.text == '\0' ? 0 : 1000), c.text);
  }
  CycleAction last = comm->async->sentAction;
  EXPECT_EQ(last.command, TACKLE_COMMAND);
  EXPECT_EQ(comm->async->dashCount, 3);
}

TEST_F(Connection, AGoalieMovesWithTheBallInItsHands) {
  const struct {
    client_type type;
    play_mode mode;
    const char* text;
  } cases[] = {{CLIENT_GOALIE, PLAY_MODE_FREE_KICK_US, "(move -5.000000 1.000000)"},
               {CLIENT_FIELDPLAYER, PLAY_MODE_FREE_KICK_US, ""},
               {CLIENT_GOALIE, PLAY_MODE_PLAY_ON, ""},
               {CLIENT_FIELDPLAYER, PLAY_MODE_BEFORE_KICK_OFF, "(move -5.000000 1.000000)"}};
  for (const auto& c : cases) {
    connectAs(c.type);
    comm->async->setStates(7, 0, c.mode, SIDE_LEFT, false);
    comm->sendMove(-5, 1);
    comm.reset();
    for (const std::string text : {c.text, "(bye)"}) {
      if (text.empty()) continue;
      EXPECT_EQ(server.receive(), text) << c.mode;
    }
  }
}

TEST_F(Connection, APlayerChecksInAndFeignsANormalView) {
  const ParamKeeper keeper;
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

TEST_F(Connection, PlayersAndTrainersHearTheOnlineCoach) {
  AudioMsg own;
  own.setPrefix("vok");
  own.createChkSums();
  const std::string text = own.getEncoding();
  for (const client_type type : {CLIENT_FIELDPLAYER, CLIENT_GOALIE, CLIENT_TRAINCOACH}) {
    connectAs(type);
    comm->receiveText(("(hear 0 online_coach_left (freeform \"" + text + "\"))").c_str());
    AudioMsg message;
    EXPECT_TRUE(comm->getNextMsg(message)) << type;
    comm.reset();
  }
}

TEST_F(Connection, ACoachsTextIsLimitedByTheServersSizeAndTwelve) {
  connectAs(CLIENT_ONLINECOACH);
  const std::string longest(140, 'x');
  comm->sendSay(longest.c_str());
  EXPECT_EQ(server.receive(), "(say " + longest + ")");
  EXPECT_EQ(comm->async->sayCount, 1);
  comm->sendSay((longest + "x").c_str());
  EXPECT_EQ(server.receive(0), "");
  EXPECT_EQ(errors.take(),
            "CommError: 0 Comm (Alpha No.-1): client tries to send too long say message (len= 141)"
            "(msg= " +
                longest + "x), dropping it completely\n");
  EXPECT_EQ(comm->async->sayCount, 1);
}

TEST_F(Connection, ASaidMessageIsStampedAndWrapped) {
  connectAs(CLIENT_ONLINECOACH);
  comm->audiomgr->setStates(0, true);
  AudioMsg message(0, 1, true);
  message << true;
  comm->say(message);
  // vok, sender 0 on the left (16 = q), everybody with the coach flag (q), the sum 80 = 16 + 64,
  // time 1, read position 0, write position 1, true.
  EXPECT_EQ(server.receive(), "(say (freeform \"vokqqqbbaaaabab\"))");
  EXPECT_EQ(comm->async->sayCount, 1);
}

TEST_F(Connection, MonitorCommandsNeedRemoteControl) {
  connectAs(CLIENT_ONLINECOACH);
  Comm::sendMCmd(MStop());
  EXPECT_EQ(errors.take(), "Not in ZELTRAmode dropping cmd: \"(stop)\"\n");
  comm.reset();
  EXPECT_EQ(server.receive(), "(bye)");
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
  EXPECT_TRUE(comm->isServerAlive());
  EXPECT_LE(lines(errors.take()).size(), 1000);
}

TEST(SecondConnection, EndsTheProcess) {
  Config::readFile(shippedConfig);
  const auto build = [] {
    return Comm("Alpha", CLIENT_ONLINECOACH, "127.0.0.1", 1, 0, false, 7, 8, SIDE_LEFT);
  };
  EXPECT_EXIT(
      {
        const Comm first = build();
        const Comm second = build();
      },
      testing::ExitedWithCode(255),
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
