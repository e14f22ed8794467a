// The choice of our players' types, made once when all types are announced: each player gets what
// suits its wishes best, in turn, and a type goes to three of them at most. With
// "types_withinLimits" the type requests decide by the same utilities. With "types_byAbility" the
// utility of a type is what its players can do, whatever a player wishes.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <numeric>

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
  if (world != nullptr) typeValue.resize(world->playerType.size());
  initDone = false;
}

void VokCoach::readAgentConf() {
  typesBy = Config::getOptionalInt("types_byAbility", BY_WISHES);
  const TypeValues values;  // reads its keys in any case, so that a checker learns of them
  if (typesBy == BY_ROLE) valueTypes(values);
  std::array<char, 64> key{};
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    for (const WishKey& item : WISH_KEYS) {
      std::snprintf(key.data(), key.size(), item.pattern, n);
      desiredType[n].*item.wish = Config::getValueAsDouble(key.data());
    }
  }
}

/// The values are the same for all players of a role, and simulated once.
void VokCoach::valueTypes(const TypeValues& values) {
  for (std::size_t type = 0; type < typeValue.size(); ++type) {
    for (int r = DEFENDER; r < NUM_ROLES; ++r) {
      const auto role = static_cast<PlayerRole>(r);
      typeValue[type][role] = values.valueOf(values.abilityOf(world->playerType[type], role), role);
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
  for (const int n : choosingOrder()) choosePlayerType(n);
}

VokCoach::FieldPlayers VokCoach::choosingOrder() const {
  FieldPlayers order{};
  std::iota(order.begin(), order.end(), FIRST_FIELD_PLAYER);
  // Any head count may be configured.
  const int offenders = std::clamp(tactical->ourSystem.numOffenders, 0, 10);
  std::rotate(order.begin(), order.end() - offenders, order.end());
  return order;
}

void VokCoach::chooseWithinLimits() {
  // A type's ability is the same for all players of a role, so what comes earlier in the order
  // counts a little more. All share the best types whatever the step is; it must only be above the
  // resolution of the assignment.
  const double step = typesBy == BY_WISHES ? 0 : 1e-6;
  double precedence = 1;
  const int types = static_cast<int>(world->playerType.size());
  for (const int n : choosingOrder()) {
    for (int type = 0; type < types; ++type)
      typeRequests->setUtility(n, type, precedence * calcUtility(n, type));
    precedence -= step;
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
  const WPlayerType& actual = world->playerType[static_cast<std::size_t>(type)];
  if (typesBy == BY_SPEEDS) return productOfSpeeds(actual);
  if (typesBy == BY_ROLE) {
    return typeValue[static_cast<std::size_t>(type)][roleOf(playerNumber, *tactical)];
  }
  const DesiredType& wish = desiredType[playerNumber];
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
