// The parameters of a match that its analysis needs, as the source tells them. The values here are
// the server's defaults, for a source that lacks one.
#pragma once

#include <vector>

namespace vok::analysis {

/// What the inference of touches needs of a player type.
struct TypeRules {
  int id = -1;
  double playerSize = 0.3;      ///< radius, metres
  double kickableMargin = 0.7;  ///< metres
};

struct MatchRules {
  double halfTime = 300;       ///< seconds
  double simulatorStep = 100;  ///< milliseconds of a cycle
  double goalWidth = 14.02;    ///< metres
  double ballDecay = 0.94;     ///< velocity factor per cycle
  double ballRand = 0.05;      ///< the noise of the ball's velocity, as a share of its speed
  double playerRand = 0.1;     ///< likewise of a player
  double ballSize = 0.085;     ///< radius, metres
  double staminaMax = 8000;
  double effortDecThr = 0.3;  ///< share of `staminaMax` below which the effort falls
  double tackleDist = 2;      ///< metres in front of the body
  double tackleBackDist = 0;
  double tackleWidth = 1.25;
  double catchableAreaLength = 1.2;
  double catchableAreaWidth = 1;
  std::vector<TypeRules> types;

  /// The cycles of a half.
  double halfCycles() const { return halfTime * 1000 / simulatorStep; }
};

}  // namespace vok::analysis
