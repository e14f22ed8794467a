// The real coach program while the network or the machine misbehaves: what it survives, and that a
// request to stop is obeyed at any moment. What it does with strange texts is tested without a
// process, with the coach's loop.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
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

void sleepMs(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Does something over and over while it lives.
template <typename Action>
class Meanwhile : Unique {
 public:
  explicit Meanwhile(Action action)
      : thread_([action](const std::stop_token& end) {
          while (!end.stop_requested()) action();
        }) {}

 private:
  std::jthread thread_;
};

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
  /// It still answers every cycle once, and leaves in order.
  void endInOrder(const Lines& beginnings = {}) {
    cycle(2);
    EXPECT_EQ(server.answer(20), "");
    coach.signal(SIGTERM);
    EXPECT_EQ(server.answer(), "(bye)");
    expectEnd(beginnings);
  }
  /// The coach has ended with no lines but those that begin so, and with each of those.
  void expectEnd(const Lines& beginnings = {}) {
    EXPECT_EQ(coach.wait(2000), 0);
    std::set<std::string> missing(beginnings.begin(), beginnings.end());
    std::set<std::string> unexplained;
    for (const std::string& line : coach.reports()) {
      const auto begins = [&line](const std::string& b) { return line.starts_with(b); };
      std::erase_if(missing, begins);
      if (std::none_of(beginnings.begin(), beginnings.end(), begins)) unexplained.insert(line);
    }
    EXPECT_EQ(missing, std::set<std::string>());
    EXPECT_EQ(unexplained, std::set<std::string>());
  }

  ScriptedServer server;
  CoachProcess coach;
  long time = 0;
};

TEST(Network, CommandsFollowThePortOfTheLatestDatagram) {
  Game game;
  game.checkIn();
  ScriptedServer other;
  other.address(game.server);
  game.server.send(view(2));
  game.server.send("(think)");
  EXPECT_EQ(game.server.answer(), "(done)");
  game.server.send(view(3));
  other.send("(think)");
  EXPECT_EQ(other.answer(), "(done)");
  EXPECT_EQ(game.server.answer(20), "");
  game.time = 3;
  game.endInOrder();
}

TEST(Network, DatagramsOfAnySizeAreTaken) {
  Game game;
  game.checkIn();
  for (const std::size_t size : {8191UL, 8192UL, 8193UL, 65507UL}) {
    const std::string seen = view(++game.time);
    game.server.sendBytes(seen + std::string(size - seen.size(), ')'));
    game.server.send("(think)");
    EXPECT_EQ(game.server.answer(), "(done)") << size;
  }
  game.server.sendBytes("");
  game.endInOrder({"CommError: 5 Comm (Alpha No.0): could not parse server string "});
}

TEST(Network, AFloodDelaysTheCoachButDoesNotStopIt) {
  Game game;
  game.checkIn();
  for (int i = 0; i < 20000; ++i) game.server.send("(bogus)");
  // The system may drop the first views behind the flood.
  ++game.time;
  for (int tries = 0; tries < 9; ++tries) {
    game.server.send(view(game.time));
    game.server.send("(think)");
    if (game.server.answer(1000) == "(done)") break;
  }
  while (!game.server.answer(100).empty()) continue;
  game.endInOrder({UNREADABLE + "(bogus)"});
}

TEST(Machine, AlarmsFromOutsideChangeNothing) {
  Game game;
  EXPECT_EQ(game.server.receive(), "(init Alpha (version 9.00))");
  {
    const Meanwhile alarms([&game] {
      game.coach.signal(SIGALRM);
      sleepMs(1);
    });
    for (const char* text : {"(init l ok)", SERVER_PARAM, PLAYER_PARAM}) {
      sleepMs(5);
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
  const Meanwhile alarms([&game] {
    game.coach.signal(SIGALRM);
    sleepMs(1);
  });
  game.expectEnd({DEAD});
}

TEST(Machine, ACoachThatStoodStillWaitsForItsServerAgain) {
  Game game;
  game.checkIn(HASTY);
  for (const bool serverTalksMeanwhile : {true, false}) {
    game.coach.signal(SIGSTOP);
    sleepMs(700);
    if (serverTalksMeanwhile) {
      game.server.send(view(++game.time));
      game.server.send("(think)");
    }
    game.coach.signal(SIGCONT);
    EXPECT_EQ(game.server.answer(50), serverTalksMeanwhile ? "(done)" : "");
    sleepMs(50);
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
      {SIGHUP,
       "between view and think",
       {},
       [](Game& game) {
         game.checkIn();
         game.server.send(view(2));
       }},
      {SIGINT, "in a wait without end", {}, [](Game& game) {
         game.checkIn(HASTY);
         sleepMs(600);
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
  for (const std::string& text : {std::string("(bogus)"), std::string("(think)"), view(1)}) {
    Game game;
    game.checkIn();
    {
      const Meanwhile flood([&game, &text] { game.server.send(text); });
      sleepMs(20);
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
