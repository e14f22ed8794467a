// Passes of either team: where to, how fast, and how likely they arrive.
#pragma once

#include <array>

#include "coordinates.h"
#include "grade.h"
#include "worldmodel.h"

namespace vok {

class GoalShotEval;

/// One pass and what is to be expected of it. The default is no pass at all.
struct Pass {
  int receiver = -1;     ///< shirt number of the mate who gets to the ball first, -1 for none
  Vector2d target;       ///< where the ball is played to, metres, field frame; it may roll on
  int xIndex = 0;        ///< place in the lattice around the receiver, in steps of
  int yIndex = 0;        ///< `RPASS_LATTICELENGTH`, x towards the goal that is attacked
  double speed = 0;      ///< of the ball when it leaves the foot, metres per cycle
  int kicks = 0;         ///< cycles until it does, the last kick included
  int duration = NEVER;  ///< cycles from then until the receiver can play it
  double margin = 0;     ///< by which every opponent is too late, metres; negative: one is not
  int score = 0;         ///< chance that a mate plays the ball next, per cent
  Grade grade = IMPOSSIBLE;
};

/// Rates a pass by a race: the ball slows down by its decay; the mate who can play it first is the
/// receiver; and against every opponent it is asked how many metres he is too late at best, up to
/// then. That margin gives the chance that the pass arrives; its measured constants are in
/// passeval.cpp. Players who would be offside do not receive.
///
/// Reads its keys when it is built. Nothing here allocates or keeps anything between calls.
class PassEval {
 public:
  explicit PassEval(const GoalShotEval* goalshoteval);

  /// The best pass of our own player to team-mate `n`, from where the ball lies, whether it can be
  /// kicked yet or not: to his feet, or beyond `SHORTPASS_LENGTH` into the space around him, at
  /// several speeds. Of two places with the same grade the one farther ahead counts, and where they
  /// are level (`SAMELEVEL_LENGTH`) that with the higher score. No pass to himself, to no shirt
  /// number, and to one who was not seen for `MAX_MATE_AGE` cycles.
  Pass ourEvalProp(const Worldmodel* world, int n) const;
  /// The best pass of opponent `passer` to opponent `n`: from the ball if he can kick it, else as
  /// if it lay at his feet.
  Pass otherEval(const Worldmodel* world, int passer, int n) const;
  /// One given pass of our own player: to `target`, leaving the foot at `speed` metres per cycle in
  /// the `kicks`th cycle from now. The lattice indices stay 0.
  Pass evalPass(const Worldmodel* world, const Vector2d& target, double speed, int kicks) const;

  /// Cycles that a free ball of the given first speed needs for a distance; `NEVER` when it comes
  /// to rest before.
  static int timeForPass(double distance, double speed);

  /// The best grade whose configured score is reached; `BAD` below all, `IMPOSSIBLE` for 0.
  Grade scoreToGrade(int score) const;
  /// The lowest score of a grade; 0 for `IMPOSSIBLE` and an undefined one.
  int gradeToScore(Grade grade) const;

  static constexpr int MAX_MATE_AGE = 10;  ///< cycles

  int SCORE_POOR;
  int SCORE_AVERAGE;
  int SCORE_GOOD;
  int SCORE_PERFECT;
  const GoalShotEval* goalshoteval;  ///< not owned
  double SAMELEVEL_LENGTH;           ///< lengths and distances in metres
  int MAXKICK_DURATION;              ///< cycles
  double MAXPASS_LENGTH;
  double RPASS_LATTICELENGTH;
  double SHORTPASS_LENGTH;
  double SHORTPASS_LENGTH_GOALIE;
  double SECURITY_DIST;
  double BORDER_DIST;

 private:
  struct Passing;

  Pass bestPass(const Passing& passing, int n) const;
  Pass rate(const Passing& passing, const Vector2d& target, double speed, int kicks) const;
  bool isBetter(const Pass& pass, const Pass& than, double direction) const;
};

}  // namespace vok
