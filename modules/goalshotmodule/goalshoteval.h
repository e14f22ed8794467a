// Shots at either goal: where to aim, and how likely a goal is.
#pragma once

#include "coordinates.h"
#include "grade.h"
#include "worldmodel.h"

namespace vok {

/// One shot and what is to be expected of it. The default is no shot at all.
struct GoalShot {
  Vector2d target;       ///< on the goal line, metres, field frame
  double speed = 0;      ///< of the ball when it leaves the foot, metres per cycle
  int kicks = 0;         ///< cycles until it does, the last kick included
  int duration = NEVER;  ///< cycles from then until it crosses the line
  double margin = 0;     ///< by which every opponent is too late, metres; negative: one is not
  int score = 0;         ///< chance of a goal, per cent
  Grade grade = IMPOSSIBLE;
};

/// Rates a shot by a race: the ball slows down by its decay, and against every opponent, the goalie
/// with the reach of its hands, it is asked how many metres he is too late at best. That margin and
/// the width of the mouth against the spread of the ball give the chance of a goal; its measured
/// constants are in goalshoteval.cpp. Aims are spread over the mouth between the two corners of
/// `correctCorner`, and the best counts.
///
/// Reads its keys when it is built. The posts follow the server's goal width, so build it after the
/// check-in. Nothing here allocates or keeps anything between calls.
class GoalShotEval {
 public:
  GoalShotEval();

  /// The best shot of our own player from where the ball lies, whether it can be kicked yet or not.
  GoalShot ourEval(const Worldmodel* world) const;
  /// The best shot of opponent `n` at our goal: from the ball if he can kick it, else as if it lay
  /// at his feet. No shot for no shirt number and for one who was not seen for `maxAge` cycles.
  GoalShot otherEval(const Worldmodel* world, int n) const;
  /// The same of team-mate `n` at the other goal: what a pass to him could lead to.
  GoalShot teamEval(const Worldmodel* world, int n) const;
  /// One given shot of our own player, `kicks` cycles from now.
  GoalShot evalShot(const Worldmodel* world, const Vector2d& target, double speed, int kicks) const;

  /// The point at which to aim for a corner: between the posts, from the post `corner` (one of the
  /// four below) by `minDistToCorner` close to the goal, up to `maxDistToCorner` at `maxDist`,
  /// since the ball strays with the distance. Never beyond the middle of the goal.
  Vector2d correctCorner(const Vector2d& from, const Vector2d& corner) const;

  /// The best grade whose configured score is reached; `BAD` below all, `IMPOSSIBLE` for 0.
  Grade scoreToGrade(int score) const;

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

 private:
  struct Shooting;

  static WBall ballOf(const Worldmodel& world, const WPlayer& player);
  GoalShot bestShot(const Shooting& shooting, const WPlayer& player, const WBall& ball) const;
  GoalShot rate(const Shooting& shooting, const Vector2d& from, const Vector2d& target,
                double speed, int kicks) const;
};

}  // namespace vok
