// The choice of our players' types, by the shipped wishes and a made-up set of types.
#include <gtest/gtest.h>

#include "constants.h"
#include "support/coach.h"

namespace vok::test {
namespace {

class HeteroTypes : public CoachTest {
 protected:
  HeteroTypes() {
    // Decay, kickable margin, dash rate, extra stamina: the default type, what 10 and 11 wish, what
    // 2 and 5 wish, what 6 and 7 wish, the default again, and a type for strikers and nobody else.
    constexpr double TYPES[7][4] = {{0.4, 0.7, 0.006, 0},     {0.5, 0.75, 0.0076, 40},
                                    {0.45, 0.75, 0.0072, 50}, {0.45, 0.85, 0.0066, 60},
                                    {0.4, 0.7, 0.006, 0},     {0.4, 0.7, 0.006, 0},
                                    {0.6, 0.5, 0.008, 100}};
    checkIn();
    coach->world->playMode = PLAY_MODE_BEFORE_KICK_OFF;
    for (int id = 0; id < 7; ++id) {
      type(id).state = id;
      type(id).playerDecay = TYPES[id][0];
      type(id).kickableMargin = TYPES[id][1];
      type(id).dashPowerRate = TYPES[id][2];
      type(id).extraStamina = TYPES[id][3];
    }
  }

  // The changes that the server was asked for: "number:type " each.
  std::string changes() {
    coach->comm->sendDone();
    return server.typeChanges();
  }
};

TEST_F(HeteroTypes, OffendersChooseFirstAndATypeServesThreePlayers) {
  const std::pair<int, const char*> rows[] = {{2, "10:1 11:1 2:2 3:3 4:3 5:2 6:3 7:2 8:1 "},
                                              {4, "8:2 9:2 10:1 11:1 2:2 3:3 4:3 5:1 6:3 "},
                                              {20, "2:2 3:3 4:3 5:2 6:3 7:2 8:1 9:1 10:1 11:6 "}};
  for (const auto& [offenders, asked] : rows) {
    coach->tactical->ourSystem.numOffenders = offenders;
    coach->chooseHeterogenousPlayers();
    EXPECT_EQ(changes(), asked) << offenders << " offenders";
  }
  EXPECT_EQ(coach->plType[11], 6);
  EXPECT_EQ(coach->numPlType, (std::vector<int>{3, 0, 0, 0, 3, 3, 2}));
}

TEST_F(HeteroTypes, AfterKickOffAChangeNeedsASubstitutionAndAWish) {
  coach->choosePlayerType(2);
  EXPECT_EQ(changes(), "") << "before any wish was read";
  coach->readAgentConf();
  coach->world->playMode = PLAY_MODE_FREE_KICK_US;
  coach->choosePlayerType(2);
  coach->numSubs = 0;
  coach->choosePlayerType(3);
  coach->world->playMode = PLAY_MODE_BEFORE_KICK_OFF;
  coach->choosePlayerType(4);
  EXPECT_EQ(changes(), "2:2 4:3 ");
}

TEST_F(HeteroTypes, TypesAreKnownWhenAllSixAreAnnounced) {
  auto& types = coach->world->playerType;
  types[0].state = -1;  // the default type needs no announcement
  EXPECT_TRUE(coach->knowsHeteroTypes());
  types.resize(6);
  EXPECT_FALSE(coach->knowsHeteroTypes());
  types.resize(7);
  EXPECT_FALSE(coach->knowsHeteroTypes());
}

TEST_F(HeteroTypes, MoreTypesThanTheWorldWasMadeForAreNotLookedAt) {
  playerParams.player_types = 1000;
  coach->chooseHeterogenousPlayers();
  coach->printStats();  // without remote control the monitor's commands are shown instead
  const auto reported = lines(errors.take());
  ASSERT_EQ(reported.size(), 2U + 1U + 7U + 10U);
  EXPECT_EQ(reported[1], "WARNING: utility < 0. Check agent.conf") << "type 6 for players 6 and 7";
  EXPECT_EQ(reported[10], "Not in ZELTRAmode dropping cmd: \"(log 2 Player 2 has type 2)\"");
}

}  // namespace
}  // namespace vok::test
