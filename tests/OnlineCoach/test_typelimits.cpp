// Our types within the server's limits: the best assignment, and the talk with the server.
#include "typelimits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

#include "Config.h"
#include "coachdesk.h"
#include "constants.h"
#include "support/coach.h"
#include "typeassignment.h"

namespace vok::test {
namespace {

// Players without a type, the sum of the utilities (whole numbers here) negated, and that of the
// types: the least is the best.
using Value = std::tuple<int, int, int>;
using Utilities = std::vector<std::vector<int>>;

Value bestOfAll(const Utilities& utility, std::vector<int>& capacity, std::size_t player) {
  if (player == utility.size()) return {};
  Value best = bestOfAll(utility, capacity, player + 1);
  ++std::get<0>(best);
  for (std::size_t t = 0; t < capacity.size(); ++t) {
    if (capacity[t] == 0) continue;
    --capacity[t];
    const auto [none, sum, ids] = bestOfAll(utility, capacity, player + 1);
    best = std::min(best, {none, sum - utility[player][t], ids + static_cast<int>(t)});
    ++capacity[t];
  }
  return best;
}

TEST(TypeAssignment, IsAsGoodAsTryingAll) {
  std::mt19937 dice(1);
  for (int round = 0; round < 300; ++round) {
    const std::size_t players = 1 + dice() % 5;
    const unsigned spread = round % 2 == 0 ? 4 : 1000;  // with many ties, and hardly any
    std::vector<int> capacity(1 + dice() % 5);
    for (int& c : capacity) c = static_cast<int>(dice() % 4);
    Utilities utility(players, std::vector<int>(capacity.size()));
    TypeAssignment assignment(players, capacity.size());
    for (std::size_t p = 0; p < players; ++p) {
      for (std::size_t t = 0; t < capacity.size(); ++t) {
        utility[p][t] = static_cast<int>(dice() % spread) - 2;
        assignment.setUtility(p, t, utility[p][t] / 8.0);
      }
    }
    assignment.solve(capacity);
    const Value best = bestOfAll(utility, capacity, 0);
    Value found;
    for (std::size_t p = 0; p < players; ++p) {
      const int type = assignment.typeOf(p);
      if (type == -1) {
        ++std::get<0>(found);
        continue;
      }
      std::get<1>(found) -= utility[p][static_cast<std::size_t>(type)];
      std::get<2>(found) += type;
      EXPECT_GE(--capacity[static_cast<std::size_t>(type)], 0) << round;
    }
    EXPECT_EQ(found, best) << round;
  }
}

TEST(TypeAssignment, AUtilityThatIsNoNumberIsTheWorst) {
  TypeAssignment assignment(2, 2);
  for (const std::size_t player : {0U, 1U}) assignment.setUtility(player, 0, NAN);
  assignment.setUtility(0, 1, -0.5);
  assignment.setUtility(1, 1, -0.6);
  assignment.solve({1, 1});
  EXPECT_EQ(assignment.typeOf(0), 1);
  EXPECT_EQ(assignment.typeOf(1), 0);
}

class WithinLimits : public CoachTest {
 protected:
  void start(const Lines& texts) {
    setEntry("types_withinLimits", "1");
    checkIn(texts);
    for (std::size_t i = 3; i < texts.size(); ++i) hear(texts[i]);
  }

  // Twelve types beside the default one; player n likes type n + 1 best, by its extra stamina.
  void startWithWishes() {
    start({"(init l ok)", SERVER_PARAM, "(player_param (player_types 13)(pt_max 1)(subs_max 3))"});
    for (int id = 0; id < 13; ++id) {
      type(id).state = id;
      type(id).extraStamina = id;
    }
    for (int n = 2; n <= 11; ++n) {
      const std::string player = "player" + std::to_string(n) + "_";
      for (const char* wish : {"decay_inertia", "kickmargin_rand", "dpr_stamina_inc_max"}) {
        setEntry((player + wish + "_weight").c_str(), "0");
      }
      setEntry((player + "extra_stamina_effort_weight").c_str(), "1");
      setEntry((player + "extra_stamina_effort_delta").c_str(), std::to_string(n + 1).c_str());
    }
  }

  // One cycle of the coach; the changes that it asks for, "number:type " each.
  std::string cycle(const std::string& seen) {
    hear(seen);
    hear("(think)");
    return server.typeChanges();
  }
  std::string cycle(long time) { return cycle(view(time)); }

  void give(int number, int type) {
    const std::string change = std::to_string(number) + " " + std::to_string(type) + ")";
    hear("(change_player_type " + change);
    hear("(ok change_player_type " + change);
  }

  // To the players from `first` to `last` what they like best.
  void giveWishes(int first, int last) {
    for (int n = first; n <= last; ++n) give(n, n + 1);
  }

  std::string summary() {
    for (const std::string& line : lines(errors.take())) {
      if (line.starts_with("Coach: player types: ")) return line.substr(21);
    }
    return "";
  }
};

TEST_F(WithinLimits, EachPlayerGetsItsOwnBestTypeAndARefusedOneTheBestThatIsLeft) {
  startWithWishes();
  EXPECT_EQ(cycle(0), "2:3 3:4 4:5 5:6 6:7 7:8 8:9 9:10 10:11 11:12 ");
  give(2, 3);
  hear("(warning max_of_that_type_on_field)");  // of 3:4
  hear("(ok say)");
  giveWishes(4, 10);
  hear("(error out_of_range_player_type)");  // of 11:12
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
    EXPECT_EQ(coach->world->ourTeam[n].type, type);
    EXPECT_EQ(coach->world->ourTeam[n].extraStamina, type);
  }
  EXPECT_EQ(coach->world->numOtherSubs, 0);
}

TEST_F(WithinLimits, TypesThatAreTakenAreLeftFirst) {
  startWithWishes();
  // Another coach has been here: 10 has what 2 wants, 3 and 4 each other's, 5 what 6 has.
  for (const char* change : {"10 3", "3 5", "4 4", "6 6"}) {
    hear(std::string("(change_player_type ") + change + ")");
  }
  EXPECT_EQ(cycle(0), "6:7 7:8 8:9 9:10 10:11 11:12 2:3 5:6 3:1 4:5 3:4 ");
  giveWishes(6, 11);
  for (const auto& [number, type] : {std::pair(2, 3), {5, 6}, {3, 1}, {4, 5}}) give(number, type);
  hear("(warning max_of_that_type_on_field)");
  EXPECT_EQ(cycle(0), "3:2 ") << "refused behind its detour";
}

TEST_F(WithinLimits, WhoIsToKeepTheDefaultTypeAsksForItLast) {
  startWithWishes();
  playerParams.pt_max = 2;
  setEntry("player2_extra_stamina_effort_delta", "0");
  EXPECT_EQ(cycle(0), "3:4 4:5 5:6 6:7 7:8 8:9 9:10 10:11 11:12 2:0 ");
}

TEST_F(WithinLimits, APlayerWhoIsNotThereYetIsAskedForWhenItComes) {
  startWithWishes();
  cycle(0);
  giveWishes(2, 10);
  hear("(warning no_such_player)");
  EXPECT_EQ(cycle(0), "");
  EXPECT_EQ(summary(), "");
  EXPECT_EQ(cycle("(see_global 0 ((b) 0 0 0 0) ((p \"Alpha\" 11) -1 0 0 0 0 0))"), "11:12 ");
  give(11, 12);
  cycle(0);
  EXPECT_EQ(summary(), "11 asked, 10 given, 1 refused");
}

TEST_F(WithinLimits, AfterTheKickOffTheMostUsefulChangesAreMade) {
  startWithWishes();
  hear("(change_player_type 11 1)");
  hear("(hear 1 referee kick_in_l)");
  // Away from its wish: 11 by 11, 10 by 11, 9 by 10, 8 by 9.
  EXPECT_EQ(cycle(1), "10:11 11:12 9:10 ");
  hear("(warning cannot_sub_while_playon)");
  hear("(warning no_left_of_that_type)");  // of 11:12; 9 is the best that is left
  EXPECT_EQ(cycle(2), "10:11 11:9 ");
  hear("(warning cannot_sub_while_penalty_shootouts)");
  for (int i = 0; i < 2; ++i) hear("(warning no_subs_left)");
  EXPECT_EQ(cycle(3), "");
  EXPECT_EQ(summary(), "5 asked, 0 given, 5 refused");
}

TEST_F(WithinLimits, ASubstitutionThatBringsNothingIsNotAskedFor) {
  startWithWishes();
  setEntry("player2_extra_stamina_effort_delta", "1.4");
  giveWishes(3, 11);  // without a request
  hear("(hear 1 referee kick_in_l)");
  EXPECT_EQ(cycle(1), "2:1 ");
  hear("(warning no_left_of_that_type)");
  EXPECT_EQ(cycle(2), "2:2 ");
  hear("(warning no_left_of_that_type)");
  EXPECT_EQ(cycle(3), "") << "3 is farther from 1.4 than the default";
  EXPECT_EQ(summary(), "2 asked, 0 given, 2 refused");
}

TEST_F(WithinLimits, AnswersThatNeverComeAreCounted) {
  startWithWishes();
  cycle(0);
  hear("(change_player_type 4 5)");  // and not "(ok ...)"
  give(5, 6);
  hear("(hear 1 referee play_on)");
  cycle(1);
  EXPECT_EQ(summary(), "10 asked, 2 given, 0 refused, 8 without an answer");
  EXPECT_EQ(coach->plType[2], 0);
  EXPECT_EQ(coach->plType[4], 5);
}

TEST_F(WithinLimits, APracticeMatchGivesAllThatIsAskedFor) {
  practicematch::MatchSettings settings;
  settings.coachSide = practicematch::Side::Right;
  settings.coachTeam = "Alpha";
  practicematch::Match match(settings);
  practicematch::Report report;
  practicematch::CoachDesk desk(match, report, true);
  start(match.checkIn());
  for (Lines texts; match.modeName() != "play_on";) {
    match.cycle(texts);
    for (const std::string& text : texts) hear(text);
    hear("(think)");
    texts.clear();
    for (std::string text; (text = server.receive()) != "(done)";) {
      ASSERT_NE(text, "");
      desk.take({text.substr(0, text.find('$')), true}, texts);
    }
    for (const std::string& text : texts) hear(text);
  }
  EXPECT_EQ(summary(), "10 asked, 10 given, 0 refused");
  EXPECT_EQ(std::tuple(report.typesAsked, report.typesGiven), std::tuple(10, 10));
  for (const practicematch::Player& p : match.state().team(settings.coachSide)) {
    EXPECT_EQ(coach->plType[p.number], p.type) << p.number;
  }
}

}  // namespace
}  // namespace vok::test
