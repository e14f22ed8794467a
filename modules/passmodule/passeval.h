// Settings of the pass evaluation, shared by the tactical modules.
#pragma once

namespace vok {

class GoalShotEval;

/// Reads its keys when it is built.
class PassEval {
 public:
  explicit PassEval(const GoalShotEval* goalshoteval);

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
};

}  // namespace vok
