// What a type is worth in each part of the team, by what its players can do.
#pragma once

#include <array>

#include "tacticalmodule.h"
#include "typeability.h"

namespace vok {

enum PlayerRole { DEFENDER, MIDFIELDER, OFFENDER, NUM_ROLES };

/// The role of a field player of ours in the formation.
PlayerRole roleOf(int shirtNumber, const TacticalModule& tactical);

class TypeValues {
 public:
  /// Reads "ability_defender", "ability_midfielder", "ability_offender" and
  /// "skill_staminaCapacity" from the configuration; without a key the values are those that ship.
  TypeValues();

  TypeAbility abilityOf(const WPlayerType& type, PlayerRole role) const;
  /// What an ability is worth in a role: 1 for the server's default type, greater is better, 0 for
  /// a type that makes no sense.
  double valueOf(const TypeAbility& ability, PlayerRole role) const;
  const AbilityWeights& weights(PlayerRole role) const { return weights_[role]; }

 private:
  std::array<AbilityWeights, NUM_ROLES> weights_{};
  std::array<TypeAbility, NUM_ROLES> standard_;
  double staminaCapacity_;
};

/// Product of the top speed (metres a cycle) and of the speed that a player keeps up for as long as
/// it likes, since it dashes with no more power than its stamina gains in a cycle. 0 for a type
/// that cannot run or whose numbers make no sense, which is then never better than another.
double productOfSpeeds(const WPlayerType& type);

}  // namespace vok
