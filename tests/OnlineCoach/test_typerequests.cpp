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

namespace vok::test {
namespace {

// What it is worth to give a player a type: most of all that it has any, then the utility, and of
// equal sums that with the lower types.
double worth(const TypeAssignment& all, std::size_t player, int type) {
  return type == -1 ? 0 : 1e9 + 8000 * all.utility(player, static_cast<std::size_t>(type)) - type;
}

double bestOfAll(const TypeAssignment& all, std::vector<int>& capacity, std::size_t player) {
  if (player == 5) return 0;
  double best = bestOfAll(all, capacity, player + 1);
  for (std::size_t t = 0; t < capacity.size(); ++t) {
    if (capacity[t] == 0) continue;
    --capacity[t];
    best = std::max(best,
                    worth(all, player, static_cast<int>(t)) + bestOfAll(all, capacity, player + 1));
    ++capacity[t];
  }
  return best;
}

TEST(TypeAssignment, IsAsGoodAsTryingAll) {
  std::mt19937 dice(1);
  for (int round = 0; round < 300; ++round) {
    // With many ties, and with hardly any.
    std::uniform_int_distribution<int> roll(0, round % 2 == 0 ? 3 : 999);
    TypeAssignment assignment(5, 4);
    std::vector<int> capacity(4);
    for (std::size_t t = 0; t < 4; ++t) {
      capacity[t] = roll(dice) % 4;
      for (std::size_t p = 0; p < 5; ++p) assignment.setUtility(p, t, roll(dice) / 8.0 - 0.25);
    }
    assignment.solve(capacity);
    double found = 0;
    for (std::size_t p = 0; p < 5; ++p) found += worth(assignment, p, assignment.typeOf(p));
    EXPECT_EQ(found, bestOfAll(assignment, capacity, 0)) << round;
  }
}

TEST(TypeAssignment, AUtilityThatIsNoNumberIsTheWorst) {
  TypeAssignment assignment(1, 3);
  for (const auto& [type, utility] : {std::pair(0U, double{NAN}), {1, -0.5}, {2, 1}})
    assignment.setUtility(0, type, utility);
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
      for (const std::string what : {"decay_inertia", "kickmargin_rand", "dpr_stamina_inc_max"})
        wish(n, what + "_weight", 0);
      wish(n, "extra_stamina_effort_weight", 1);
      wish(n, "extra_stamina_effort_delta", n + 1);
    }
  }

  static void wish(int n, const std::string& what, int value) {
    setEntry(("player" + std::to_string(n) + "_" + what).c_str(), std::to_string(value).c_str());
  }

  // One cycle of the coach, who sees one player of ours; the changes that it asks for, "number:type
  // " each.
  std::string cycle(long time, int seen = 1) {
    hear("(see_global " + std::to_string(time) + " ((b) 0 0 0 0) ((p \"Alpha\" " +
         std::to_string(seen) + ") -1 0 0 0 0 0))");
    hear("(think)");
    return server.typeChanges();
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
};

TEST_F(WithinLimits, EachPlayerGetsItsOwnBestTypeAndARefusedOneTheBestThatIsLeft) {
  EXPECT_EQ(cycle(0), "2:3 3:4 4:5 5:6 6:7 7:8 8:9 9:10 10:11 11:12 ");
  give(2, 3);
  refuse(1, "max_of_that_type_on_field");  // 3:4
  giveWishes(4, 10);
  hear("(error out_of_range_player_type)");  // 11:12
  // Types 0 to 2 are left, but the goalie has 0. What 3 wishes comes before what 11 wishes.
  EXPECT_EQ(cycle(0), "3:2 11:1 ");
  give(3, 2);
  hear("(ok change_player_type 11 1)");  // its announcement is lost
  EXPECT_EQ(cycle(0), "");
  EXPECT_TRUE(errors.take().ends_with("Coach: player types: 12 asked, 10 given, 2 refused\n"));
  EXPECT_EQ(coach->world->ourTeam[11].extraStamina, 1);
}

TEST_F(WithinLimits, TypesThatAreTakenAreLeftFirst) {
  // Another coach has been here: 10 has what 2 wants, 3 and 4 each other's, 5 what 6 has.
  for (const auto& [number, type] : {std::pair(10, 3), {3, 5}, {4, 4}, {6, 6}}) give(number, type);
  EXPECT_EQ(cycle(0), "6:7 7:8 8:9 9:10 10:11 11:12 2:3 5:6 3:1 4:5 3:4 ");
  giveWishes(6, 11);
  for (const auto& [number, type] : {std::pair(2, 3), {5, 6}, {3, 1}, {4, 5}}) give(number, type);
  refuse(1, "max_of_that_type_on_field");
  EXPECT_EQ(cycle(0), "3:2 ") << "refused behind its detour";
}

TEST_F(WithinLimits, WithoutALimitATypeIsForThreeAndWhoIsToKeepTheDefaultTypeAsksForItLast) {
  playerParams.pt_max = 0;
  for (const int n : {3, 4, 5}) wish(n, "extra_stamina_effort_delta", 3);
  wish(11, "extra_stamina_effort_delta", 0);
  type(7).state = -1;  // not announced; 6 gets the nearest one
  EXPECT_EQ(cycle(0), "2:3 3:3 4:3 5:2 6:6 7:8 8:9 9:10 10:11 11:0 ");
}

TEST_F(WithinLimits, ByAbilityTheBestTypesAreSharedAndTheOffendersChooseFirst) {
  setEntry("types_byAbility", "1");
  playerParams.pt_max = 2;
  for (int id = 1; id < 13; ++id) type(id).effortMax = 1 + id * 7 % 13 / 100.0;
  type(12).effortMax = -2;
  // The fastest types are 11, 9, 7, 5 and 3, in this order.
  EXPECT_EQ(cycle(0), "2:9 3:9 4:7 5:7 6:5 7:5 8:3 9:3 10:11 11:11 ");
}

TEST_F(WithinLimits, ByRoleEachPartOfTheTeamGetsWhatItsWeightsAskFor) {
  setEntry("types_byAbility", "2");
  setEntry("ability_defender", "0, 0, 0, 0, 1, 0, 0.4");  // reach
  setEntry("ability_midfielder", "0, 0, 1, 0, 0, 0, 1");  // the way of a half, always running
  setEntry("ability_offender", "3, 0, 0, 0, 0, 0, 0.4");  // the first metres
  for (int id = 1; id < 13; ++id) {
    if (id <= 4) type(id).kickableMargin += 0.1 - id * 0.01;
    if (id >= 5 && id <= 8) type(id).staminaIncMax -= id;
    if (id >= 9) type(id).dashPowerRate += (12 - id) * 0.001;
    if (id <= 4 || id >= 9) type(id).staminaIncMax -= 20;
  }
  coach->world->adjustTacticalNumbers(1);
  EXPECT_EQ(cycle(0), "2:1 3:2 4:3 5:4 6:5 7:6 8:7 9:8 10:9 11:10 ");
}

TEST_F(WithinLimits, ATiredPlayerIsReplacedOnceWhileASubstitutionIsLeft) {
  coach->tiredPlayers = std::make_unique<TiredPlayers>(1000);
  cycle(0);
  giveWishes(2, 11);
  hear("(hear 1 referee play_on)");
  // Number 7 begins to run again and again, and spends 100 each time.
  for (long time = 1; time <= 70; ++time) {
    hear("(see_global " + std::to_string(time) + " ((b) 0 0 0 0) ((p \"Alpha\" 7) 0 0 " +
         (time % 2 == 0 ? "0.24" : "0") + " 0 0 0) ((p \"Alpha\" 8) 0 0 0 0 0 0))");
    hear("(think)");
    EXPECT_EQ(server.typeChanges(), "") << "not in running play";
  }
  EXPECT_NEAR(coach->tiredPlayers->left(7), STAMINA_MAX + 1000 - 35 * 100, 1e-6);
  EXPECT_EQ(coach->tiredPlayers->left(8), STAMINA_MAX + 1000);
  hear("(hear 70 referee kick_in_l)");
  EXPECT_EQ(cycle(71, 7), "7:2 ") << "only 1 and 2 are free, and 7 liked type 8";
  EXPECT_EQ(cycle(72, 7), "") << "the request is out";
  give(7, 2);
  EXPECT_EQ(cycle(73, 7), "");
  EXPECT_EQ(coach->tiredPlayers->left(7), STAMINA_MAX + 1000);
}

TEST_F(WithinLimits, APlanThatComesTooLateIsMadeAnewByGain) {
  cycle(0);
  hear("(change_player_type 11 11)");  // by the server itself, and what 10 wants
  giveWishes(2, 3);
  refuse(8, "cannot_sub_while_playon");
  hear("(hear 2 referee kick_in_l)");
  EXPECT_EQ(cycle(2), "9:10 10:12 8:9 ");
  refuse(1, "cannot_sub_while_playon");
  refuse(1, "no_left_of_that_type");  // now 10 would gain 8 by type 8, and 7 as much
  EXPECT_EQ(cycle(3), "9:10 7:8 ") << "8:9 is not answered and may use a substitution";
  give(8, 9);
  refuse(2, "no_subs_left");
  EXPECT_EQ(cycle(4), "");
  EXPECT_TRUE(errors.take().ends_with("Coach: player types: 15 asked, 3 given, 12 refused\n"));
}

TEST_F(WithinLimits, InTheMatchTheDefaultTypeCountsAsWell) {
  playerParams.pt_max = 2;  // the goalie has one
  wish(11, "extra_stamina_effort_delta", 0);
  cycle(0);
  giveWishes(2, 10);
  hear("(change_player_type 11 12)");
  refuse(1, "cannot_sub_while_playon");
  hear("(hear 2 referee kick_in_l)");
  EXPECT_EQ(cycle(2), "11:0 ");
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
  EXPECT_EQ(cycle(2, 8), "9:10 ") << "one substitution is left, and 8 would gain less";
  give(9, 10);
  cycle(3);
  EXPECT_EQ(count(errors.take(), "Coach: player types"), 0) << "10 is still awaited";
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
  playerParams.pt_max = 1e300;  // as good as no limit
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
  EXPECT_TRUE(errors.take().ends_with("10 asked, 2 given, 0 refused, 8 without an answer\n"));
}

}  // namespace
}  // namespace vok::test
