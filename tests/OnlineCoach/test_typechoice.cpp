// The choice of our players' types by the wishes of the plain configuration, or by ability, from a
// made-up set of types, and its report.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "Config.h"
#include "constants.h"
#include "support/coach.h"

namespace vok::test {
namespace {

class TypeChoice : public CoachTest {
 protected:
  TypeChoice() {
    // Over the server's default type: decay, kickable margin and dash rate; extra stamina. The
    // default type, what 10 and 11 wish, what 2 and 5 wish, what 6 and 7 wish, the default again,
    // and a type for offenders only.
    constexpr double TYPES[7][4] = {
        {}, {0.1, 0.05, 0.0016, 40}, {0.05, 0.05, 0.0012, 50}, {0.05, 0.15, 0.0006, 60}, {},
        {}, {0.2, -0.2, 0.002, 100}};
    checkIn();
    PLAYER_DECAY = 0.5;
    KICKABLE_MARGIN = 0.5;
    DASH_POWER_RATE = 0.01;
    for (int id = 0; id < 7; ++id) {
      type(id).state = id;
      type(id).playerDecay = PLAYER_DECAY + TYPES[id][0];
      type(id).kickableMargin = KICKABLE_MARGIN + TYPES[id][1];
      type(id).dashPowerRate = DASH_POWER_RATE + TYPES[id][2];
      type(id).extraStamina = TYPES[id][3];
    }
  }

  // The changes that the server was asked for: "number:type " each.
  std::string changes() {
    coach->comm->sendDone();
    return server.typeChanges();
  }
};

TEST_F(TypeChoice, OffendersChooseFirstAndATypeServesThreePlayers) {
  coach->chooseHeterogenousPlayers();
  EXPECT_EQ(changes(), "10:1 11:1 2:2 3:3 4:3 5:2 6:3 7:2 8:1 ") << "with two offenders";
  coach->tactical->ourSystem.numOffenders = 20;
  coach->chooseHeterogenousPlayers();
  EXPECT_EQ(changes(), "2:2 3:3 4:3 5:2 6:3 7:2 8:1 9:1 10:1 11:6 ");
}

TEST_F(TypeChoice, AfterKickOffAChangeNeedsASubstitution) {
  coach->readAgentConf();
  coach->numSubs = 0;
  coach->choosePlayerType(4);
  coach->world->playMode = PLAY_MODE_FREE_KICK_US;
  coach->choosePlayerType(3);
  coach->numSubs = 1;
  coach->choosePlayerType(2);
  EXPECT_EQ(changes(), "4:3 2:2 ");
}

TEST_F(TypeChoice, TheUtilityIsTheWeighedSumOfFourClosenesses) {
  constexpr const char* WISHES[][3] = {{"decay_inertia", "0.1", "1"},
                                       {"kickmargin_rand", "0.05", "2"},
                                       {"dpr_stamina_inc_max", "0.0016", "4"},
                                       {"extra_stamina_effort", "50", "8"}};
  for (const auto& [name, delta, weight] : WISHES) {
    setEntry((std::string("player2_") + name + "_delta").c_str(), delta);
    setEntry((std::string("player2_") + name + "_weight").c_str(), weight);
  }
  coach->readAgentConf();
  EXPECT_NEAR(coach->calcUtility(2, 0), 0.5 + 2 * 0.75 + 4 * 0.2 + 8 * 0.5, 1e-9);
}

TEST_F(TypeChoice, ByAbilityTheProductOfTopSpeedAndKeptSpeedDecides) {
  // Decay, dash power rate, effort, stamina gain; the product in thousandths.
  constexpr double INF = HUGE_VAL;
  constexpr double ROWS[][5] = {{0.5, 0.006, 1, 45, 648},  // 1.2 times 0.54
                                {0.5, 0.007, 1, 30, 588},  // the greatest top speed
                                {0.4, 0.006, 1, 70, 700},  // the greatest gain
                                {0.6, 0.006, 0.9, 45, 820.125},
                                {0.6, 0.006, 0.8, 45, 648},  // as good as the default type
                                {1, 0.01, 1, 45, 0},
                                {1.5, -0.01, 1, 45, 0}};
  setEntry("types_byAbility", "1");
  coach->readAgentConf();
  const auto set = [this](int id, const double* row) {
    type(id).playerDecay = row[0];
    type(id).dashPowerRate = row[1];
    type(id).effortMax = row[2];
    type(id).staminaIncMax = row[3];
  };
  for (int id = 0; id < 7; ++id) {
    set(id, ROWS[id]);
    EXPECT_NEAR(coach->calcUtility(2, id), ROWS[id][4] / 1000, 1e-9) << id;
  }
  coach->chooseHeterogenousPlayers();
  EXPECT_EQ(changes(), "10:3 11:3 2:3 3:2 4:2 5:2 ");
  constexpr double SENSELESS[][4] = {
      {NAN, 0.006, 1, 45},  {-INF, 0.006, 1, 45}, {INF, -0.006, 1, 45},  {0.5, INF, 1, 45},
      {0.5, 0, INF, 45},    {0.5, 0.006, -1, 45}, {1.5, 0.006, 1, 45},   {0.5, 0.006, 1, -45},
      {0.5, 0.006, 1, INF}, {0.5, 1e200, 1, 45},  {0.5, -0.006, 1, -45}, {0.5, 0.006, 1, 0}};
  for (const auto& row : SENSELESS) {
    set(6, row);
    EXPECT_EQ(coach->calcUtility(2, 6), 0)
        << row[0] << ' ' << row[1] << ' ' << row[2] << ' ' << row[3];
  }
}

TEST_F(TypeChoice, WithFewerThanSixTypesNothingIsChosen) {
  coach->world->playerType.resize(6);
  EXPECT_FALSE(coach->knowsHeteroTypes());
}

TEST_F(TypeChoice, MoreTypesThanTheWorldWasMadeForAreNeitherChosenNorReported) {
  playerParams.player_types = 1000;
  coach->chooseHeterogenousPlayers();
  // Of type 6 for the players 6 and 7.
  EXPECT_EQ(count(errors.take(), "WARNING: utility < 0. Check agent.conf\n"), 2);
  EXPECT_EQ(changes().substr(0, 10), "10:1 11:1 ");

  coach->comm->ZELTRAmode = true;
  coach->printStats();
  std::ostringstream report;
  report << "(vokproxy 0 (log 0 Coach hetero player status:))";
  for (const WPlayerType& known : coach->world->playerType)
    report << "(vokproxy 0 (log 1 " << known << "))";
  for (int n = 2; n <= 11; ++n)
    report << "(vokproxy 0 (log 2 Player " << n << " has type " << coach->plType[n] << "))";
  EXPECT_EQ(server.sent(), report.str());
}

}  // namespace
}  // namespace vok::test
