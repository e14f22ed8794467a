// The choice of our players' types by the shipped wishes and a made-up set of types, and its
// report.
#include <gtest/gtest.h>

#include <array>
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
    // and a type for offenders and nobody else.
    constexpr double TYPES[7][4] = {
        {}, {0.1, 0.05, 0.0016, 40}, {0.05, 0.05, 0.0012, 50}, {0.05, 0.15, 0.0006, 60}, {},
        {}, {0.2, -0.2, 0.002, 100}};
    checkIn();
    coach->world->playMode = PLAY_MODE_BEFORE_KICK_OFF;
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
  const std::pair<int, const char*> rows[] = {{2, "10:1 11:1 2:2 3:3 4:3 5:2 6:3 7:2 8:1 "},
                                              {4, "8:2 9:2 10:1 11:1 2:2 3:3 4:3 5:1 6:3 "},
                                              {20, "2:2 3:3 4:3 5:2 6:3 7:2 8:1 9:1 10:1 11:6 "}};
  for (const auto& [offenders, asked] : rows) {
    coach->tactical->ourSystem.numOffenders = offenders;
    coach->chooseHeterogenousPlayers();
    EXPECT_EQ(changes(), asked) << offenders << " offenders";
  }
  EXPECT_EQ(coach->numPlType, (std::vector<int>{3, 0, 0, 0, 3, 3, 2}));
}

TEST_F(TypeChoice, AfterKickOffAChangeNeedsASubstitutionAndAWish) {
  coach->choosePlayerType(2);
  EXPECT_EQ(changes(), "") << "before any wish was read";
  coach->readAgentConf();
  coach->numSubs = 0;
  coach->choosePlayerType(4);
  coach->world->playMode = PLAY_MODE_FREE_KICK_US;
  coach->choosePlayerType(3);
  coach->numSubs = 1;
  coach->choosePlayerType(2);
  EXPECT_EQ(changes(), "4:3 2:2 ");
}

TEST_F(TypeChoice, EachWishHasItsOwnKey) {
  int value = 0;
  for (const std::string name :
       {"decay_inertia", "kickmargin_rand", "dpr_stamina_inc_max", "extra_stamina_effort"}) {
    for (const char* part : {"_delta", "_weight"}) {
      setEntry(("player7_" + name + part).c_str(), std::to_string(++value).c_str());
    }
  }
  coach->readAgentConf();
  const auto& [a, b, c, d, e, f, g, h] = coach->desiredType[7];
  EXPECT_EQ((std::array{a, b, c, d, e, f, g, h}),
            (std::array{1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0}));
}

TEST_F(TypeChoice, TheUtilityIsTheWeighedSumOfFourClosenesses) {
  coach->desiredType[2] = {0.1, 1, 0.05, 2, 0.0016, 4, 50, 8};
  EXPECT_NEAR(coach->calcUtility(2, 0), 0.5 + 2 * 0.75 + 4 * 0.2 + 8 * 0.5, 1e-9);
  EXPECT_NEAR(coach->calcUtility(2, 1), 1 + 2 + 4 + 8 * 0.9, 1e-9);
}

TEST_F(TypeChoice, TypesAreKnownWhenAllSixAreAnnounced) {
  auto& types = coach->world->playerType;
  types[0].state = -1;  // the default type needs no announcement
  EXPECT_TRUE(coach->knowsHeteroTypes());
  for (const std::size_t size : {6U, 7U}) {
    types.resize(size);
    EXPECT_FALSE(coach->knowsHeteroTypes()) << size;
  }
}

TEST_F(TypeChoice, MoreTypesThanTheWorldWasMadeForAreNeitherChosenNorReported) {
  playerParams.player_types = 1000;
  coach->chooseHeterogenousPlayers();
  const std::string warning = "WARNING: utility < 0. Check agent.conf\n";
  EXPECT_EQ(errors.take(), warning + warning) << "type 6 for players 6 and 7";
  EXPECT_EQ(changes().substr(0, 10), "10:1 11:1 ");

  coach->comm->ZELTRAmode = true;
  coach->printStats();
  std::ostringstream report;
  report << "0 Coach hetero player status:";
  for (const WPlayerType& known : coach->world->playerType) report << "\n1 " << known;
  for (int n = 2; n <= 4; ++n) report << "\n2 Player " << n << " has type " << (n == 2 ? 2 : 3);
  for (const std::string& line : lines(report.str())) {
    EXPECT_EQ(server.receive(), "(vokproxy 0 (log " + line + "))");
  }
}

}  // namespace
}  // namespace vok::test
