// The real coach program while the network or the machine misbehaves: what it survives, and that a
// request to stop is obeyed at any moment. What it does with strange texts is tested without a
// process, with the coach's loop.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <set>
#include <thread>
#include <tuple>

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
    Game game({"-F"});
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
