// The real coach program while the network or the machine misbehaves: what it survives, and that a
// request to stop is obeyed at any moment. What it does with strange texts is tested without a
// process, with the coach's loop.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <set>
#include <thread>
#include <tuple>

#include "support/coach.h"
#include "support/server.h"

namespace vok::test {
namespace {

// With it the coach takes a server for dead that is silent for half a second.
const std::string HASTY = "(server_param (simulator_step 10)(synch_mode 1))";
const std::string DEAD = "CommError:  (Alpha No. 0) select timed out assuming server is dead";
const std::string UNREADABLE = "CommError: 1 Comm (Alpha No.0): could not parse server string ";

using Sorted = std::set<std::string>;

/// Does something over and over while the result lives.
template <typename Action>
std::jthread meanwhile(Action action) {
  return std::jthread([action](const std::stop_token& end) {
    while (!end.stop_requested()) action();
  });
}

/// A coach process and its server.
struct Game {
  explicit Game(const Lines& options = {}) : coach(coachArguments(server.port(), options)) {}

  void checkIn(const std::string& parameters = SERVER_PARAM) {
    EXPECT_EQ(server.checkIn('l', parameters), "(init Alpha (version 9.00))");
    EXPECT_EQ(server.answer(), "(eye on)");
    cycle();
  }
  /// Plays whole cycles.
  void cycle(int times = 1) {
    for (int i = 0; i < times; ++i) {
      server.send(view(++time));
      server.send("(think)");
      EXPECT_EQ(server.answer(), "(done)") << "at " << time;
    }
  }
  /// An alarm a millisecond.
  std::jthread alarms() {
    return meanwhile([this] {
      coach.signal(SIGALRM);
      usleep(1'000);
    });
  }
  /// It still answers every cycle once, and leaves in order.
  void endInOrder(const Lines& reports = {}) {
    cycle(2);
    EXPECT_EQ(server.answer(20), "");
    coach.signal(SIGTERM);
    EXPECT_EQ(server.answer(), "(bye)");
    expectEnd(reports);
  }
  /// The coach has ended with these lines, each once or more often.
  void expectEnd(const Lines& reports = {}) {
    EXPECT_EQ(coach.wait(2000), 0);
    const Lines told = coach.reports();
    EXPECT_EQ(Sorted(told.begin(), told.end()), Sorted(reports.begin(), reports.end()));
  }

  ScriptedServer server;
  CoachProcess coach;
  long time = 0;
};

TEST(Network, DatagramsOfAnySizeAreTaken) {
  Game game;
  game.checkIn();
  for (const std::size_t size : {8192UL, 65507UL}) {
    const std::string seen = view(++game.time);
    game.server.sendBytes(seen + std::string(size - seen.size(), ')'));
    game.server.send("(think)");
    EXPECT_EQ(game.server.answer(), "(done)") << size;
  }
  game.server.sendBytes("");
  game.endInOrder({"CommError: 3 Comm (Alpha No.0): could not parse server string "});
}

TEST(Network, AFloodDelaysTheCoachButDoesNotStopIt) {
  Game game;
  game.checkIn();
  for (int i = 0; i < 20000; ++i) game.server.send("(bogus)");
  // The system may drop the first views behind the flood.
  game.time = 2;
  for (int tries = 0; tries < 9 && game.server.answer(500) != "(done)"; ++tries) {
    game.server.send(view(2));
    game.server.send("(think)");
  }
  while (!game.server.answer(100).empty()) continue;
  game.endInOrder({UNREADABLE + "(bogus)"});
}

const std::string STRANGER =
    "CommError: dropped a datagram from 127.0.0.2: the server is at 127.0.0.1";

/// The line about so many datagrams of strangers.
std::string dropped(std::size_t n) {
  return "CommError: Comm (Alpha No.0): dropped " + std::to_string(n) +
         " datagrams that were not the server's";
}

TEST(HostileLan, StrangersAreNotHeardAtAnyMoment) {
  const Lines forged = {"(error already_have_coach)",
                        "(hear 1 referee time_over)",
                        SERVER_PARAM,
                        "(think)",
                        view(5000),
                        "(warning message_not_null_terminated)",
                        "",
                        std::string(60000, '(')};
  for (const int moment : {0, 1, 2}) {
    SCOPED_TRACE(moment);
    Game game;
    ScriptedServer stranger(2);
    const auto forgeAt = [&](int now) {
      if (now != moment) return;
      for (const std::string& text : forged) stranger.sendBytes(text);
    };
    EXPECT_EQ(game.server.receive(), "(init Alpha (version 9.00))");
    stranger.address(game.server);
    forgeAt(0);
    game.server.send("(init l ok)");
    forgeAt(1);
    for (const char* text : {SERVER_PARAM, PLAYER_PARAM}) game.server.send(text);
    EXPECT_EQ(game.server.answer(), "(eye on)");
    game.cycle();
    forgeAt(2);
    game.endInOrder({STRANGER, dropped(forged.size())});
    EXPECT_EQ(stranger.receive(0), "");
  }
}

// The server's own address is believed, so that a replay from there may take the coach to a later
// time; it follows the server from that time on.
TEST(HostileLan, AReplayedMatchDoesNotStopTheCoach) {
  Lines texts = recording();
  std::erase_if(texts, [](const std::string& text) { return text.starts_with("(warning "); });
  for (const unsigned host : {1U, 2U}) {
    Game game;
    game.checkIn();
    ScriptedServer replay(host);
    replay.address(game.server);
    replay.send(texts[0]);
    game.cycle();
    for (const std::string& text : texts) replay.send(text);
    while (!game.server.answer(100).empty()) continue;
    if (host == 1) game.time = 300;
    game.cycle(3);
    game.coach.signal(SIGTERM);
    EXPECT_EQ(game.server.answer(), "(bye)");
    EXPECT_EQ(game.coach.wait(2000), 0);
    EXPECT_EQ(count(game.coach.errors(), dropped(texts.size() + 1)), host == 1 ? 0U : 1U);
  }
}

TEST(HostileLan, AFalseServerThatFallsSilentIsLeftThoughTheTrueOneTalks) {
  Game game;
  EXPECT_EQ(game.server.receive(), "(init Alpha (version 9.00))");
  ScriptedServer falseOne(3);
  falseOne.address(game.server);
  for (const auto& text : {"(init l ok)", HASTY.c_str(), PLAYER_PARAM}) falseOne.send(text);
  {
    const std::jthread truth = meanwhile([&game] {
      game.server.send(view(++game.time));
      usleep(1'000);
    });
    EXPECT_EQ(game.coach.wait(4000), 0);
  }
  const std::string all = game.coach.errors();
  for (const std::string& line :
       {std::string("the server answers from 127.0.0.3 instead of 127.0.0.1\n"),
        std::string("dropped a datagram from 127.0.0.1: the server is at 127.0.0.3\n"), DEAD}) {
    EXPECT_EQ(count(all, line), 1U) << all;
  }
}

// The first datagram of a stranger has the system drop what follows. Nothing of the server's is
// lost, also where it answers from a second address.
TEST(HostileLan, AFloodLeavesTheSystemsQueueToTheServer) {
  constexpr int MORE_THAN_IT_HOLDS = 20'000;
  for (const auto& [host, isFirst] : {std::pair(1U, true), {3U, true}, {3U, false}}) {
    SCOPED_TRACE(host);
    Game game;
    ScriptedServer server(host);
    ScriptedServer stranger(2);
    EXPECT_EQ(game.server.receive(), "(init Alpha (version 9.00))");
    server.address(game.server);
    stranger.address(game.server);
    const char* const text = isFirst ? "(hear 1 referee time_over)" : "(init r ok)";
    const auto flood = [&] {
      stranger.send("(bogus)");
      for (int i = 0; i < 1000 && count(game.coach.errors(), "dropped") == 0; ++i) usleep(1'000);
      usleep(5'000);
      game.coach.signal(SIGSTOP);
      for (int i = 0; i < MORE_THAN_IT_HOLDS; ++i) stranger.send(text);
    };
    if (isFirst) flood();
    for (const char* line : {"(init l ok)", SERVER_PARAM, PLAYER_PARAM}) server.send(line);
    game.coach.signal(SIGCONT);
    EXPECT_EQ(server.answer(), "(eye on)");
    if (!isFirst) flood();
    server.send(view(1));
    server.send("(think)");
    game.coach.signal(SIGCONT);
    EXPECT_EQ(server.answer(), "(done)");
    game.coach.signal(SIGTERM);
    EXPECT_EQ(server.answer(), "(bye)");
    EXPECT_EQ(game.coach.wait(2000), 0);
    EXPECT_EQ(count(game.coach.errors(), dropped(MORE_THAN_IT_HOLDS + 1)), 1U);
  }
}

TEST(Machine, AlarmsFromOutsideChangeNothing) {
  Game game;
  EXPECT_EQ(game.server.receive(), "(init Alpha (version 9.00))");
  {
    const std::jthread alarms = game.alarms();
    for (const char* text : {"(init l ok)", SERVER_PARAM, PLAYER_PARAM}) {
      usleep(5'000);
      game.server.send(text);
    }
    EXPECT_EQ(game.server.answer(), "(eye on)");
    game.cycle(20);
  }
  game.endInOrder();
}

TEST(Machine, SilenceIsNoticedAmongAlarmsToo) {
  Game game;
  game.checkIn(HASTY);
  const std::jthread alarms = game.alarms();
  game.expectEnd({DEAD});
}

TEST(Machine, ACoachThatStoodStillWaitsForItsServerAgain) {
  Game game;
  game.checkIn(HASTY);
  for (const bool serverTalksMeanwhile : {true, false}) {
    game.coach.signal(SIGSTOP);
    usleep(700'000);
    if (serverTalksMeanwhile) {
      game.server.send(view(++game.time));
      game.server.send("(think)");
    }
    game.coach.signal(SIGCONT);
    EXPECT_EQ(game.server.answer(50), serverTalksMeanwhile ? "(done)" : "");
    usleep(50'000);
  }
  game.endInOrder();
}

TEST(Machine, AClosedStandardErrorDoesNotEndTheCoach) {
  Game game;
  game.checkIn();
  game.coach.signal(SIGPIPE);
  game.endInOrder();
}

TEST(StopSignal, EndsTheCoachWithinASecondAtAnyMoment) {
  const Lines unfinished = {"CommError: error while recving data",
                            "Onlinecoach: could not deliver checkin message to server !",
                            "Onlinecoach: could not connect to sserver, closing down"};
  const std::tuple<int, const char*, Lines, void (*)(Game&)> moments[] = {
      {SIGINT, "behind the init", unfinished, [](Game& game) { game.server.receive(); }},
      {SIGTERM, "between the parameters", unfinished,
       [](Game& game) {
         game.server.receive();
         game.server.send("(init l ok)");
         game.server.send(SERVER_PARAM);
         EXPECT_EQ(game.server.answer(), "(eye on)");
       }},
      {SIGHUP, "in a wait without end", {}, [](Game& game) {
         game.checkIn(HASTY);
         usleep(600'000);
         game.cycle();
       }}};
  for (const auto& [signal, name, reports, lead] : moments) {
    SCOPED_TRACE(name);
    // Whoever started the coach may have held back the signal.
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, signal);
    pthread_sigmask(SIG_BLOCK, &held, nullptr);
    Game game({"-F"});
    pthread_sigmask(SIG_UNBLOCK, &held, nullptr);
    lead(game);
    game.coach.signal(signal);
    EXPECT_EQ(game.server.answer(1000), "(bye)");
    game.expectEnd(reports);
  }
}

TEST(StopSignal, EndsTheCoachInTheMidstOfAFlood) {
  for (const std::string& text : {std::string("(bogus)"), view(1)}) {
    Game game;
    game.checkIn();
    {
      const std::jthread flood = meanwhile([&game, &text] { game.server.send(text); });
      usleep(20'000);
      game.coach.signal(SIGTERM);
      EXPECT_EQ(game.coach.wait(1000), 0);
    }
    std::string last;
    for (std::string sent; !(sent = game.server.answer(20)).empty();) last = sent;
    EXPECT_EQ(last, "(bye)");
  }
}

}  // namespace
}  // namespace vok::test
