// Who can be where on time: the way of a rolling ball, and how far a player can run meanwhile.
//
// A player's speed decays by the same factor whether it dashes or not. So its place after n cycles
// is where it would drift to without a dash, plus what it could run in the same time from rest:
// `runs` holds the second, `drifts` the factors of the first. This is exact as long as the top
// speed comes from the power of a dash and not from the limit of the type, which cuts off a few
// centimetres. What remains open at a distance is compared with the reach of the foot: the result
// is in metres and tells not only whether, but by how much somebody is too late.
#pragma once

#include <array>
#include <cstddef>

#include "worldmodel.h"

namespace vok {

/// How many cycles ahead the ball is followed. A pass or shot takes at most half of it.
inline constexpr int MAX_WAY = 60;

/// The places of a free ball in the coming cycles; 0 is now. One that leaves the field stays where
/// it was last inside, since there the game goes on.
struct BallWay {
  BallWay(const Vector2d& pos, const Vector2d& velocity);

  const Vector2d& operator[](int cycle) const { return places[static_cast<std::size_t>(cycle)]; }

  std::array<Vector2d, MAX_WAY + 1> places;
  int cyclesInside = MAX_WAY;  ///< the last cycle in which the ball is in the field
};

/// One player's running, by cycles.
struct Runner {
  Runner() = default;
  /// `reach`: distance at which the player plays the ball, metres from centre to centre.
  Runner(const WPlayer& player, double reach);

  /// How many metres the player is too late for a ball that is at `place` after `cycles`, at most
  /// `MAX_WAY`. Not positive when the player gets there on time.
  double shortage(const Vector2d& place, int cycles) const;

  Vector2d pos;
  Vector2d v;
  double reach = 0;
  double topSpeed = 0;
  Vector2d body;         ///< unit vector
  double minCosine = 1;  ///< of the angle that one turn manages at the present speed
  bool bodyKnown = false;
  std::array<double, MAX_WAY + 1> runs{};    ///< metres from rest
  std::array<double, MAX_WAY + 1> drifts{};  ///< cycles' worth of the present velocity

 private:
  int turnsTo(const Vector2d& way) const;
};

/// The distance at which a player plays the ball: a goalie in front of its goal also catches it.
/// `atOwnGoal`: the ball is in the penalty area of the player's team.
double playingReach(const WPlayer& player, bool atOwnGoal);

/// The first cycle and place at which a player can play the ball; `NEVER` where there is none.
struct Reach {
  int cycles = NEVER;
  Vector2d pos;
};

/// After the end of the way the ball is taken to lie there.
Reach earliestReach(const Runner& runner, const BallWay& way);

/// Kicks, one a cycle, that a player needs to give the ball a velocity where it lies now; `most` +
/// 1 when that many are not enough.
int kicksFor(const WPlayer& player, const WBall& ball, const Vector2d& velocity, int most);

}  // namespace vok
