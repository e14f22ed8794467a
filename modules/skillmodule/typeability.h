// What the players of a type can do: simulated by the server's rules (`WPlayer`), alone on the
// field and without noise, so that types can be compared in metres and cycles.
#pragma once

#include <array>

#include "worldobjects.h"

namespace vok {

struct TypeAbility {
  double shortRun = 0;   ///< cycles for 5 m from a standing start
  double longRun = 0;    ///< cycles for 20 m from a standing start
  double way = 0;        ///< metres in a half; see `typeAbility`
  double halfTurn = 0;   ///< cycles to turn round at top speed
  double kickRange = 0;  ///< metres from the player to a ball that it can kick
  double kickNoise = 0;  ///< the greatest part of a kick's speed that noise adds or takes

  /// False when a player of the type could not run, or its numbers are not finite.
  bool makesSense() const;
};

/// Simulates a type. `dashShare` is the part of the cycles in which the player wants to run, 0 to
/// 1; in these it dashes with the greatest power that keeps its effort, and within what the server
/// gives back to it in a half (`staminaCapacity`).
TypeAbility typeAbility(const WPlayerType& type, double dashShare, double staminaCapacity);

/// What counts how much for a player. A value of 1 of a weight makes a type worth twice as much
/// when it can do this twice as well: in half the cycles, twice as far.
struct AbilityWeights {
  double shortRun;
  double longRun;
  double way;
  double halfTurn;
  double kickRange;
  double kickNoise;
  double dashShare;  ///< for the way

  /// Number of values, in this order, in the configuration.
  static constexpr int SIZE = 7;
  static AbilityWeights from(const std::array<double, SIZE>& values);
};

/// The product of all abilities relative to those of `standard`, each to the power of its weight: 1
/// for the standard itself, 0 for a type that does not make sense, 1000 at most.
double utility(const TypeAbility& ability, const TypeAbility& standard,
               const AbilityWeights& weights);

}  // namespace vok
