#include "goalshoteval.h"

#include "Config.h"
#include "constants.h"
#include "pitch.h"

namespace vok {

GoalShotEval::GoalShotEval()
    : leftEdgeOfGoal(HALF_LENGTH, -GOAL_WIDTH / 2),
      rightEdgeOfGoal(HALF_LENGTH, GOAL_WIDTH / 2),
      leftEdgeOfOurGoal(-HALF_LENGTH, GOAL_WIDTH / 2),
      rightEdgeOfOurGoal(-HALF_LENGTH, -GOAL_WIDTH / 2) {
  minDistToCorner = Config::getValueAsDouble("goal_minDistToCorner");
  maxDistToCorner = Config::getValueAsDouble("goal_maxDistToCorner");
  maxAge = Config::getValueAsInt("goal_maxAge");
  maxKickDuration = Config::getValueAsInt("goal_maxKickDuration");
  score_POOR = Config::getValueAsInt("goal_score_POOR");
  score_AVERAGE = Config::getValueAsInt("goal_score_AVERAGE");
  score_GOOD = Config::getValueAsInt("goal_score_GOOD");
  score_PERFECT = Config::getValueAsInt("goal_score_PERFECT");
  maxSimSteps = Config::getValueAsInt("goal_maxSimSteps");
  maxDist = BALL_SPEED_MAX * (1 - power(BALL_DECAY, maxSimSteps)) / (1 - BALL_DECAY);
}

}  // namespace vok
