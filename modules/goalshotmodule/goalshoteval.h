// Settings of the goal-shot evaluation, shared by the tactical modules.
#pragma once

#include "coordinates.h"

namespace vok {

/// Reads its keys when it is built. The posts follow the server's goal width, so build it after the
/// check-in.
class GoalShotEval {
 public:
  GoalShotEval();

  // Posts in the field frame, seen from the team that shoots at them.
  Vector2d leftEdgeOfGoal;
  Vector2d rightEdgeOfGoal;
  Vector2d leftEdgeOfOurGoal;
  Vector2d rightEdgeOfOurGoal;
  double minDistToCorner;  ///< metres
  double maxDistToCorner;  ///< metres
  int maxKickDuration;     ///< cycles
  int score_POOR;
  int score_AVERAGE;
  int score_GOOD;
  int score_PERFECT;
  int maxSimSteps;  ///< cycles that a shot is followed
  double maxDist;   ///< how far a ball at full speed rolls in that time, metres
  int maxAge;       ///< cycles
};

}  // namespace vok
