// What a type can do, against ways that are computed by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "constants.h"
#include "typeability.h"

namespace vok::test {
namespace {

constexpr double CAPACITY = 130600;

// The default type runs 0.6, 0.84, 0.936, ... m, in the end 1 m a cycle: 0.667 m less in all.
TEST(TypeAbility, OfTheDefaultType) {
  const auto ability = typeAbility(WPlayerType::fromDefaults(), 0.4, CAPACITY);
  EXPECT_NEAR(ability.shortRun, 5.66, 0.005);
  EXPECT_NEAR(ability.longRun, 20.667, 0.001);
  EXPECT_NEAR(ability.way, 30 * 40, 0.1) << "what is lost at the start of a run is won at its end";
  EXPECT_NEAR(ability.halfTurn, 2 + (180 - 30 - 60) / 180.0 * (1 + 5 * 0.16), 1e-9);
  EXPECT_NEAR(ability.kickRange, 1.085, 1e-9);
}

TEST(TypeAbility, TheWayDependsOnTheStaminaThatComesBack) {
  // A dash of 100 takes a player 1 m, and 0.68 of the stamina may be used.
  constexpr double RUNS_DOWN = 0.68 * 4000;
  WPlayerType type = WPlayerType::fromDefaults();
  for (const auto& [gain, share, capacity, spent] : {std::tuple(45.0, 0.0, CAPACITY, 0.0),
                                                     {45.0, 1.0, CAPACITY, CAPACITY + RUNS_DOWN},
                                                     {30.0, 1.0, CAPACITY, 3000 * 30 + RUNS_DOWN},
                                                     {45.0, 1.0, 1e4, 1e4 + RUNS_DOWN}}) {
    type.staminaIncMax = gain;
    EXPECT_NEAR(typeAbility(type, share, capacity).way, spent / 100, 2) << gain << ' ' << capacity;
  }
}

TEST(TypeAbility, TheWorthIsRelativeToTheStandard) {
  const TypeAbility standard{4, 20, 1000, 3, 1, 0.1};
  const TypeAbility twice{2, 10, 2000, 1.5, 2, 0};
  for (int i = 0; i < AbilityWeights::SIZE - 1; ++i) {
    std::array<double, AbilityWeights::SIZE> one{};
    one[static_cast<std::size_t>(i)] = 2;
    const auto weights = AbilityWeights::from(one);
    EXPECT_DOUBLE_EQ(utility(standard, standard, weights), 1) << i;
    EXPECT_NEAR(utility(twice, standard, weights), i < 5 ? 4 : 1.21, 1e-9) << i;
  }
}

TEST(TypeAbility, TheWorthOfSenselessTypesIsBounded) {
  for (double WPlayerType::*value :
       {&WPlayerType::dashPowerRate, &WPlayerType::playerDecay, &WPlayerType::inertiaFactor,
        &WPlayerType::staminaIncMax, &WPlayerType::kickRand, &WPlayerType::effortMax,
        &WPlayerType::kickableMargin, &WPlayerType::playerSize}) {
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300}) {
      WPlayerType type = WPlayerType::fromDefaults();
      type.*value = number;
      const auto standard = typeAbility(WPlayerType::fromDefaults(), 0.4, CAPACITY);
      const double worth = utility(typeAbility(type, 0.4, CAPACITY), standard,
                                   AbilityWeights::from({1, 1, 1, 1, 1, 1, 0.4}));
      EXPECT_GE(worth, 0) << number;
      EXPECT_LE(worth, 1000) << number;
    }
  }
}

}  // namespace
}  // namespace vok::test
