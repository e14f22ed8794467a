// The choice of our players' types, made once when all types are announced: each player gets what
// suits its wishes best, in turn, and a type goes to three of them at most. With
// "types_withinLimits" the type requests decide by the same utilities.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iostream>

#include "Config.h"
#include "constants.h"
#include "pitch.h"
#include "vokcoach.h"

namespace vok {

namespace {

constexpr int PLAYERS_PER_TYPE = 3;
constexpr int LAST_AWAITED_TYPE = 6;

struct WishKey {
  const char* pattern;
  double DesiredType::*wish;
};

constexpr auto WISH_KEYS = std::to_array<WishKey>({
    {"player%d_decay_inertia_delta", &DesiredType::decay_inertia_delta},
    {"player%d_decay_inertia_weight", &DesiredType::decay_inertia_weight},
    {"player%d_kickmargin_rand_delta", &DesiredType::kickmargin_rand_delta},
    {"player%d_kickmargin_rand_weight", &DesiredType::kickmargin_rand_weight},
    {"player%d_dpr_stamina_inc_max_delta", &DesiredType::dpr_stamina_inc_max_delta},
    {"player%d_dpr_stamina_inc_max_weight", &DesiredType::dpr_stamina_inc_max_weight},
    {"player%d_extra_stamina_effort_delta", &DesiredType::extra_stamina_effort_delta},
    {"player%d_extra_stamina_effort_weight", &DesiredType::extra_stamina_effort_weight},
});

/// 1 for what was wished, 0 at `range` from it and negative beyond.
double closeness(double wished, double actual, double range) {
  return 1 - std::abs(wished - actual) / range;
}

}  // namespace

void VokCoach::initSubs() {
  numSubs = static_cast<unsigned>(playerParams.subs_max);
  numPlTypes = numPlayerTypes();
  numPlType.assign(static_cast<std::size_t>(numPlTypes), PLAYERS_PER_TYPE);
  initDone = false;
}

void VokCoach::readAgentConf() {
  std::array<char, 64> key{};
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    for (const WishKey& item : WISH_KEYS) {
      std::snprintf(key.data(), key.size(), item.pattern, n);
      desiredType[n].*item.wish = Config::getValueAsDouble(key.data());
    }
  }
}

bool VokCoach::knowsHeteroTypes() const {
  const auto& types = world->playerType;
  if (types.size() <= LAST_AWAITED_TYPE) return false;
  return std::all_of(types.begin() + 1, types.begin() + 1 + LAST_AWAITED_TYPE,
                     [](const WPlayerType& type) { return type.state != -1; });
}

void VokCoach::chooseHeterogenousPlayers() {
  readAgentConf();
  initSubs();
  if (typeRequests != nullptr) return chooseWithinLimits();
  // The offenders choose first and so get the scarce types. Any head count may be configured.
  const int offenders = std::clamp(tactical->ourSystem.numOffenders, 0, 10);
  const int firstOffender = LAST_SHIRT + 1 - offenders;
  for (int n = firstOffender; n <= LAST_SHIRT; ++n) choosePlayerType(n);
  for (int n = FIRST_FIELD_PLAYER; n < firstOffender; ++n) choosePlayerType(n);
}

void VokCoach::chooseWithinLimits() {
  const int types = static_cast<int>(world->playerType.size());
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    for (int type = 0; type < types; ++type)
      typeRequests->setUtility(n, type, calcUtility(n, type));
  }
  typeRequests->choose(numSubsMax());
}

void VokCoach::followTypes() {
  typeRequests->takeAnswers();
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) plType[n] = typeRequests->typeOf(n);
}

void VokCoach::choosePlayerType(int playerNumber) {
  if (world->playMode != PLAY_MODE_BEFORE_KICK_OFF && numSubs == 0) return;
  // The world has the types of the check-in; the server may have announced another number since.
  const int types = std::min(numPlTypes, static_cast<int>(world->playerType.size()));
  if (types == 0) return;

  int bestType = DEFAULT_TYPE;
  double best = calcUtility(playerNumber, DEFAULT_TYPE);
  for (int type = 1; type < types; ++type) {
    if (numPlType[static_cast<std::size_t>(type)] <= 0) continue;
    const double utility = calcUtility(playerNumber, type);
    if (utility < 0) std::cerr << "WARNING: utility < 0. Check agent.conf\n";
    if (utility > best) {
      best = utility;
      bestType = type;
    }
  }
  if (bestType != DEFAULT_TYPE) doSub(playerNumber, bestType);
}

double VokCoach::calcUtility(int playerNumber, int type) const {
  const DesiredType& wish = desiredType[playerNumber];
  const WPlayerType& actual = world->playerType[static_cast<std::size_t>(type)];
  const double decay = closeness(wish.decay_inertia_delta + PLAYER_DECAY, actual.playerDecay, 0.2);
  const double kick =
      closeness(wish.kickmargin_rand_delta + KICKABLE_MARGIN, actual.kickableMargin, 0.2);
  const double dash =
      closeness(wish.dpr_stamina_inc_max_delta + DASH_POWER_RATE, actual.dashPowerRate, 0.002);
  const double stamina = closeness(wish.extra_stamina_effort_delta, actual.extraStamina, 100);
  return kick * wish.kickmargin_rand_weight + decay * wish.decay_inertia_weight +
         dash * wish.dpr_stamina_inc_max_weight + stamina * wish.extra_stamina_effort_weight;
}

void VokCoach::doSub(int playerNumber, int type) {
  plType[playerNumber] = type;
  if (type != DEFAULT_TYPE) --numPlType[static_cast<std::size_t>(type)];
  comm->sendChangePlayer(playerNumber, type);
}

}  // namespace vok
