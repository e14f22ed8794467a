// Our types within the server's limits: the best assignment, and the talk with the server.
#include "typelimits.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <thread>

#include "Config.h"
#include "constants.h"
#include "support/param_keeper.h"
#include "support/server.h"
#include "typeassignment.h"
#include "vokcoach.h"

namespace vok::test {
namespace {

// Fewest players without a type, then the greatest sum, then the lowest types; by trying all.
struct Best {
  int none = 99;
  int sum = 0;  // utilities are whole numbers here
  int ids = 0;
};

void tryAll(const std::vector<std::vector<int>>& utility, std::vector<int>& capacity,
            std::size_t player, Best sofar, Best& best) {
  if (player == utility.size()) {
    const auto key = [](const Best& b) { return std::tuple(b.none, -b.sum, b.ids); };
    if (key(sofar) < key(best)) best = sofar;
    return;
  }
  for (std::size_t t = 0; t < capacity.size(); ++t) {
    if (capacity[t] == 0) continue;
    --capacity[t];
    const Best with{sofar.none, sofar.sum + utility[player][t], sofar.ids + static_cast<int>(t)};
    tryAll(utility, capacity, player + 1, with, best);
    ++capacity[t];
  }
  tryAll(utility, capacity, player + 1, {sofar.none + 1, sofar.sum, sofar.ids}, best);
}

TEST(TypeAssignment, IsAsGoodAsTryingAll) {
  std::mt19937 dice(1);
  for (int round = 0; round < 300; ++round) {
    const std::size_t players = 1 + dice() % 5;
    const std::size_t types = 1 + dice() % 5;
    const unsigned spread = round % 2 == 0 ? 4 : 1000;  // with many ties, and hardly any
    std::vector<int> capacity(types);
    for (int& c : capacity) c = static_cast<int>(dice() % 4);
    std::vector<std::vector<int>> utility(players, std::vector<int>(types));
    TypeAssignment assignment(players, types);
    for (std::size_t p = 0; p < players; ++p) {
      for (std::size_t t = 0; t < types; ++t) {
        utility[p][t] = static_cast<int>(dice() % spread) - 2;
        assignment.setUtility(p, t, utility[p][t] / 8.0);
      }
    }
    Best best;
    tryAll(utility, capacity, 0, {0, 0, 0}, best);

    assignment.solve(capacity);
    Best found{0, 0, 0};
    for (std::size_t p = 0; p < players; ++p) {
      const int t = assignment.typeOf(p);
      if (t == -1) {
        ++found.none;
        continue;
      }
      found.sum += utility[p][static_cast<std::size_t>(t)];
      found.ids += t;
      EXPECT_GE(--capacity[static_cast<std::size_t>(t)], 0) << round;
    }
    EXPECT_EQ(found.none, best.none) << round;
    EXPECT_EQ(found.sum, best.sum) << round;
    EXPECT_EQ(found.ids, best.ids) << round;
  }
}

// A coach of "Alpha" with twelve types beside the default one: player n likes type n + 1 best, by
// its extra stamina.
class WithinLimits : public testing::Test {
 protected:
  WithinLimits() { setUp(); }
  ~WithinLimits() override { setEntry("types_withinLimits", "0"); }

  void setUp() {
    std::thread checkIn([this] {
      server.receive();
      server.send("(init l ok)");
      server.send(serverParam);
      server.send("(player_param (player_types 13)(pt_max 1)(subs_max 3))");
    });
    Config::readFile(shippedConfig);
    setEntry("types_withinLimits", "1");
    coach =
        std::make_unique<VokCoach>("Alpha", "127.0.0.1", server.port(), shippedConfig, "", false);
    checkIn.join();
    for (int n = 2; n <= 11; ++n) {
      const std::string player = "player" + std::to_string(n) + "_";
      for (const char* wish : {"decay_inertia", "kickmargin_rand", "dpr_stamina_inc_max"}) {
        setEntry((player + wish + "_weight").c_str(), "0");
      }
      setEntry((player + "extra_stamina_effort_weight").c_str(), "1");
      setEntry((player + "extra_stamina_effort_delta").c_str(), std::to_string(n + 1).c_str());
    }
    for (int id = 0; id < 13; ++id) {
      hear("(player_type (id " + std::to_string(id) +
           ") (player_speed_max 1.05) (stamina_inc_max 45) (player_decay 0.4) (inertia_moment 5) "
           "(dash_power_rate 0.006) (player_size 0.3) (kickable_margin 0.7) (kick_rand 0.1) "
           "(extra_stamina " +
           std::to_string(id) + ") (effort_max 1) (effort_min 0.6))");
    }
  }

  void hear(const std::string& text) { coach->comm->receiveText(text.c_str()); }

  // One cycle of the coach; the changes that it asks for, "number:type " each.
  std::string cycle(long time) {
    hear(view(time));
    hear("(think)");
    coach->step();
    std::string all;
    for (std::string text; !(text = server.receive(20)).empty();) {
      int number = 0;
      int type = 0;
      if (std::sscanf(text.c_str(), "(change_player_type %d %d)", &number, &type) == 2) {
        all += std::to_string(number) + ":" + std::to_string(type) + " ";
      }
    }
    return all;
  }

  void give(int number, int type) {
    const std::string change =
        "change_player_type " + std::to_string(number) + " " + std::to_string(type) + ")";
    hear("(" + change);
    hear("(ok " + change);
  }

  std::string summary() {
    for (const std::string& line : lines(errors.take())) {
      if (line.starts_with("Coach: player types: ")) return line;
    }
    return "";
  }

  ParamKeeper keeper;
  ScriptedServer server;
  StderrCapture errors;
  std::unique_ptr<VokCoach> coach;
};

TEST_F(WithinLimits, EachPlayerGetsItsOwnBestTypeAndTheAnswersTellWhatItHas) {
  EXPECT_EQ(cycle(0), "2:3 3:4 4:5 5:6 6:7 7:8 8:9 9:10 10:11 11:12 ");
  EXPECT_EQ(summary(), "") << "nothing is answered yet";
  for (int n = 2; n <= 11; ++n) give(n, n + 1);
  EXPECT_EQ(cycle(0), "");
  EXPECT_EQ(summary(), "Coach: player types: 10 asked, 10 given, 0 refused");
  for (std::size_t n = 2; n <= 11; ++n) {
    EXPECT_EQ(coach->plType[n], static_cast<int>(n) + 1);
    EXPECT_EQ(coach->world->ourTeam[n].type, static_cast<int>(n) + 1);
    EXPECT_EQ(coach->world->ourTeam[n].extraStamina, static_cast<double>(n) + 1);
  }
  EXPECT_EQ(coach->world->otherTeam[5].type, -1);
  EXPECT_EQ(coach->world->numOtherSubs, 0);
}

TEST_F(WithinLimits, ARefusedPlayerGetsTheBestThatIsLeft) {
  cycle(0);
  give(2, 3);
  hear("(warning max_of_that_type_on_field)");  // of 3:4
  hear("(ok say)");
  for (int n = 4; n <= 10; ++n) give(n, n + 1);
  hear("(error out_of_range_player_type)");  // of 11:12
  // Types 0 to 2 are left, but the goalie has 0. What 3 wishes comes before what 11 wishes.
  EXPECT_EQ(cycle(0), "3:2 11:1 ");
  give(3, 2);
  give(11, 1);
  cycle(0);
  EXPECT_EQ(summary(), "Coach: player types: 12 asked, 10 given, 2 refused");
  EXPECT_EQ(coach->plType[3], 2);
  EXPECT_EQ(coach->plType[11], 1);
}

TEST_F(WithinLimits, TypesThatAreTakenAreLeftFirst) {
  // Another coach has been here: 2 and 3 want each other's types, 4 what 5 has.
  hear("(change_player_type 2 4)");
  hear("(change_player_type 3 3)");
  hear("(change_player_type 5 5)");
  EXPECT_EQ(cycle(0), "5:6 6:7 7:8 8:9 9:10 10:11 11:12 4:5 2:1 3:4 2:3 ");
}

TEST_F(WithinLimits, APlayerWhoIsNotThereYetIsAskedForWhenItComes) {
  cycle(0);
  for (int n = 2; n <= 10; ++n) give(n, n + 1);
  hear("(warning no_such_player)");
  EXPECT_EQ(cycle(0), "");
  EXPECT_EQ(summary(), "");
  hear("(see_global 0 ((b) 0 0 0 0) ((p \"Alpha\" 11) -1 0 0 0 0 0))");
  hear("(think)");
  coach->step();
  EXPECT_EQ(server.receive(50).substr(0, 25), "(change_player_type 11 12");
  give(11, 12);
  cycle(0);
  EXPECT_EQ(summary(), "Coach: player types: 11 asked, 10 given, 1 refused");
}

TEST_F(WithinLimits, AfterTheKickOffTheMostUsefulChangesAreMade) {
  hear("(change_player_type 11 1)");
  hear("(hear 1 referee kick_in_l)");
  // Away from its wish: 11 by 11, 10 by 11, 9 by 10, 8 by 9.
  EXPECT_EQ(cycle(1), "10:11 11:12 9:10 ");
  hear("(warning no_subs_left)");
  EXPECT_EQ(cycle(2), "");
}

TEST_F(WithinLimits, AnswersThatNeverComeAreCounted) {
  cycle(0);
  give(3, 4);
  hear("(hear 1 referee play_on)");
  cycle(1);
  EXPECT_EQ(summary(), "Coach: player types: 10 asked, 1 given, 0 refused, 9 without an answer");
  EXPECT_EQ(coach->plType[2], 0);
  EXPECT_EQ(coach->plType[3], 4);
}

}  // namespace
}  // namespace vok::test
