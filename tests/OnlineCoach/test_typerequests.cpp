// Our types within the server's limits: the best assignment, and what is asked of the server.
#include "typerequests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "Config.h"
#include "constants.h"
#include "support/coach.h"
#include "typeassignment.h"

namespace vok::test {
namespace {

// What it is worth to give a player a type, by player and type: most of all that it has any, then
// the utility, and of equal sums that with the lower types.
using Worths = std::vector<std::vector<long>>;

long bestOfAll(const Worths& worth, std::vector<int>& capacity, std::size_t player) {
  if (player == worth.size()) return 0;
  long best = bestOfAll(worth, capacity, player + 1);
  for (std::size_t t = 0; t < capacity.size(); ++t) {
    if (capacity[t] == 0) continue;
    --capacity[t];
    best = std::max(best, worth[player][t] + bestOfAll(worth, capacity, player + 1));
    ++capacity[t];
  }
  return best;
}

TEST(TypeAssignment, IsAsGoodAsTryingAll) {
  std::mt19937 dice(1);
  for (int round = 0; round < 300; ++round) {
    const unsigned spread = round % 2 == 0 ? 4 : 1000;  // with many ties, and hardly any
    std::vector<int> capacity(1 + dice() % 5);
    for (int& c : capacity) c = static_cast<int>(dice() % 4);
    Worths worth(1 + dice() % 5, std::vector<long>(capacity.size()));
    TypeAssignment assignment(worth.size(), capacity.size());
    for (std::size_t p = 0; p < worth.size(); ++p) {
      for (std::size_t t = 0; t < capacity.size(); ++t) {
        const int utility = static_cast<int>(dice() % spread) - 2;
        worth[p][t] = 1'000'000'000 + 1000 * utility - static_cast<long>(t);
        assignment.setUtility(p, t, utility / 8.0);
      }
    }
    assignment.solve(capacity);
    long found = 0;
    std::vector<int> left = capacity;
    for (std::size_t p = 0; p < worth.size(); ++p) {
      if (assignment.typeOf(p) == -1) continue;
      const auto type = static_cast<std::size_t>(assignment.typeOf(p));
      found += worth[p][type];
      EXPECT_GE(--left[type], 0) << round;
    }
    EXPECT_EQ(found, bestOfAll(worth, capacity, 0)) << round;
  }
}

TEST(TypeAssignment, AUtilityThatIsNoNumberIsTheWorst) {
  TypeAssignment assignment(1, 3);
  for (const auto& [type, utility] : {std::pair(0U, double{NAN}), {1, -0.5}, {2, 1}}) {
    assignment.setUtility(0, type, utility);
  }
  assignment.solve({1, 1, 0});
  EXPECT_EQ(assignment.typeOf(0), 1);
}

// Twelve types beside the default one, each for one player; player n likes type n + 1 best, by its
// extra stamina, and a type the less the farther its number is from that.
class WithinLimits : public CoachTest {
 protected:
  WithinLimits() {
    setEntry("types_withinLimits", "1");
    checkIn(
        {"(init l ok)", SERVER_PARAM, "(player_param (player_types 13)(pt_max 1)(subs_max 3))"});
    for (int id = 0; id < 13; ++id) {
      type(id).state = id;
      type(id).extraStamina = id;
    }
    for (int n = 2; n <= 11; ++n) {
      for (const char* what : {"decay_inertia", "kickmargin_rand", "dpr_stamina_inc_max"}) {
        setWish(n, std::string(what) + "_weight", "0");
      }
      setWish(n, "extra_stamina_effort_weight", "1");
      wish(n, std::to_string(n + 1));
    }
  }

  static void setWish(int n, const std::string& what, const std::string& value) {
    setEntry(("player" + std::to_string(n) + "_" + what).c_str(), value.c_str());
  }
  static void wish(int n, const std::string& stamina) {
    setWish(n, "extra_stamina_effort_delta", stamina);
  }

  // One cycle of the coach; the changes that it asks for, "number:type " each.
  std::string cycle(const std::string& seen) {
    hear(seen);
    hear("(think)");
    return server.typeChanges();
  }
  std::string cycle(long time) { return cycle(view(time)); }

  // One player of ours, and nobody else.
  static std::string viewOf(int number, long time) {
    return "(see_global " + std::to_string(time) + " ((b) 0 0 0 0) ((p \"Alpha\" " +
           std::to_string(number) + ") -1 0 0 0 0 0))";
  }

  void give(int number, int type) {
    const std::string change = std::to_string(number) + " " + std::to_string(type) + ")";
    hear("(change_player_type " + change);
    hear("(ok change_player_type " + change);
  }

  // To the players from `first` to `last` what they like best.
  void giveWishes(int first, int last) {
    for (int n = first; n <= last; ++n) give(n, n + 1);
  }

  void refuse(int times, const std::string& reason) {
    for (; times > 0; --times) hear("(warning " + reason + ")");
  }

  std::string summary() {
    for (const std::string& line : lines(errors.take())) {
      if (line.starts_with("Coach: player types: ")) return line.substr(21);
    }
    return "";
  }
};

TEST_F(WithinLimits, EachPlayerGetsItsOwnBestTypeAndARefusedOneTheBestThatIsLeft) {
  EXPECT_EQ(cycle(0), "2:3 3:4 4:5 5:6 6:7 7:8 8:9 9:10 10:11 11:12 ");
  give(2, 3);
  refuse(1, "max_of_that_type_on_field");  // 3:4
  hear("(ok say)");
  giveWishes(4, 10);
  hear("(error out_of_range_player_type)");  // 11:12
  // Types 0 to 2 are left, but the goalie has 0. What 3 wishes comes before what 11 wishes.
  EXPECT_EQ(cycle(0), "3:2 11:1 ");
  give(3, 2);
  EXPECT_EQ(summary(), "") << "not all is answered yet";
  hear("(ok change_player_type 11 1)");  // its announcement is lost
  EXPECT_EQ(cycle(0), "");
  EXPECT_EQ(summary(), "12 asked, 10 given, 2 refused");
  for (int n = 2; n <= 11; ++n) {
    const int type = n == 3 ? 2 : n == 11 ? 1 : n + 1;
    EXPECT_EQ(coach->plType[n], type);
    EXPECT_EQ(coach->world->ourTeam[n].extraStamina, type);
  }
  EXPECT_EQ(coach->world->numOtherSubs, 0);
}

TEST_F(WithinLimits, TypesThatAreTakenAreLeftFirst) {
  // Another coach has been here: 10 has what 2 wants, 3 and 4 each other's, 5 what 6 has.
  for (const char* change : {"10 3", "3 5", "4 4", "6 6"}) {
    hear(std::string("(change_player_type ") + change + ")");
  }
  EXPECT_EQ(cycle(0), "6:7 7:8 8:9 9:10 10:11 11:12 2:3 5:6 3:1 4:5 3:4 ");
  giveWishes(6, 11);
  for (const auto& [number, type] : {std::pair(2, 3), {5, 6}, {3, 1}, {4, 5}}) give(number, type);
  refuse(1, "max_of_that_type_on_field");
  EXPECT_EQ(cycle(0), "3:2 ") << "refused behind its detour";
}

TEST_F(WithinLimits, WhoIsToKeepTheDefaultTypeAsksForItLast) {
  playerParams.pt_max = 1e300;  // as good as no limit
  type(7).state = -1;           // not announced; 6 gets the nearest one
  wish(2, "0");
  EXPECT_EQ(cycle(0), "3:4 4:5 5:6 6:6 7:8 8:9 9:10 10:11 11:12 2:0 ");
}

TEST_F(WithinLimits, WithoutALimitFromTheServerATypeIsForThreePlayers) {
  playerParams.pt_max = 0;
  for (const int n : {3, 4, 5}) wish(n, "3");
  EXPECT_EQ(cycle(0), "2:3 3:3 4:3 5:2 6:7 7:8 8:9 9:10 10:11 11:12 ");
}

TEST_F(WithinLimits, APlayerWhoIsNotThereYetIsAskedForWhenItComes) {
  cycle(0);
  giveWishes(2, 10);
  refuse(1, "no_such_player");
  EXPECT_EQ(cycle(0), "");
  EXPECT_EQ(summary(), "");
  EXPECT_EQ(cycle(viewOf(11, 0)), "11:12 ");
  give(11, 12);
  cycle(0);
  EXPECT_EQ(summary(), "11 asked, 10 given, 1 refused");
}

TEST_F(WithinLimits, AfterTheKickOffTheMostUsefulChangesAreMade) {
  hear("(change_player_type 11 1)");
  hear("(hear 1 referee kick_in_l)");
  // Away from its wish: 11 by 11, 10 by 11, 9 by 10, 8 by 9.
  EXPECT_EQ(cycle(1), "10:11 11:12 9:10 ");
  refuse(1, "cannot_sub_while_playon");
  refuse(1, "no_left_of_that_type");  // 11:12; now 11 would gain 8 by type 9, and 8 gains 9
  EXPECT_EQ(cycle(2), "10:11 8:9 ") << "9:10 is not answered and may use a substitution";
  refuse(1, "no_subs_left");
  refuse(2, "cannot_sub_while_playon");
  EXPECT_EQ(cycle(3), "");
  cycle(4);
  EXPECT_EQ(summary(), "5 asked, 0 given, 5 refused");
}

// At the kick-off the server gives 11 a type by itself, the one that 10 wants.
TEST_F(WithinLimits, APlanThatComesTooLateIsMadeAnewByGain) {
  cycle(0);
  hear("(change_player_type 11 11)");
  giveWishes(2, 3);
  refuse(8, "cannot_sub_while_playon");
  hear("(hear 1 referee play_on)");
  EXPECT_EQ(cycle(1), "");
  hear("(hear 2 referee kick_in_l)");
  EXPECT_EQ(cycle(2), "9:10 10:12 8:9 ");
  give(9, 10);
  refuse(2, "cannot_sub_while_playon");
  EXPECT_EQ(cycle(3), "10:12 8:9 ") << "one substitution is used";
  give(10, 12);
  give(8, 9);
  EXPECT_EQ(cycle(4), "");
  EXPECT_EQ(summary(), "15 asked, 5 given, 10 refused");
}

TEST_F(WithinLimits, APlayerWhoComesInTheMatchGetsNoMoreThanItsTurn) {
  playerParams.subs_max = 2;
  cycle(0);
  giveWishes(2, 6);
  for (int i = 0; i < 2; ++i) {
    refuse(1, "cannot_sub_while_playon");  // 7 and 9
    refuse(1, "no_such_player");           // 8 and 10
  }
  give(11, 12);
  hear("(hear 1 referee kick_in_l)");
  EXPECT_EQ(cycle(1), "9:10 7:8 ") << "what 8 and 10 are to have is kept for them";
  refuse(1, "cannot_sub_while_playon");
  give(7, 8);
  EXPECT_EQ(cycle(viewOf(8, 2)), "9:10 ") << "one substitution is left, and 8 would gain less";
  give(9, 10);
  EXPECT_EQ(cycle(viewOf(10, 3)), "") << "none is left";
}

// Also where the clock has not begun, or the second half has not.
TEST_F(WithinLimits, ARequestThatIsAlwaysTooLateIsGivenUp) {
  giveWishes(2, 10);  // without a request
  hear("(hear 3000 referee before_kick_off)");
  for (int time = 3000; time <= 3003; ++time) {
    EXPECT_EQ(cycle(time), "11:12 ") << time;
    refuse(1, "cannot_sub_while_playon");
  }
  EXPECT_EQ(cycle(3004), "");
}

TEST_F(WithinLimits, APenaltyShootOutEndsTheRequests) {
  hear("(hear 0 referee goal_r_1)");
  EXPECT_EQ(cycle(0), "11:12 10:11 9:10 ");
  refuse(1, "cannot_sub_while_penalty_shootouts");
  refuse(2, "cannot_sub_while_playon");
  EXPECT_EQ(cycle(2), "");
}

TEST_F(WithinLimits, AnswersThatNeverComeAreCounted) {
  cycle(0);
  hear("(change_player_type 4 5)");  // and not "(ok ...)"
  give(5, 6);
  hear("(hear 1 referee play_on)");
  cycle(1);
  EXPECT_EQ(summary(), "10 asked, 2 given, 0 refused, 8 without an answer");
  EXPECT_EQ(coach->plType[2], 0);
  EXPECT_EQ(coach->plType[4], 5);
}

}  // namespace
}  // namespace vok::test
