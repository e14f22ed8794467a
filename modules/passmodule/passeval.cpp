#include "passeval.h"

#include "Config.h"

namespace vok {

PassEval::PassEval(const GoalShotEval* goalshoteval) : goalshoteval(goalshoteval) {
  SAMELEVEL_LENGTH = Config::getValueAsDouble("pass_sameLevelLength");
  MAXKICK_DURATION = Config::getValueAsInt("pass_maxKickDuration");
  MAXPASS_LENGTH = Config::getValueAsDouble("pass_maxKickLength");
  RPASS_LATTICELENGTH = Config::getValueAsDouble("pass_rpassLatticeLength");
  SHORTPASS_LENGTH = Config::getValueAsDouble("pass_shortPassLength");
  SHORTPASS_LENGTH_GOALIE = Config::getValueAsDouble("pass_shortPassLengthGoalie");
  SECURITY_DIST = Config::getValueAsDouble("pass_securityDist");
  BORDER_DIST = Config::getValueAsDouble("pass_borderDist");
  SCORE_POOR = Config::getValueAsInt("pass_score_POOR");
  SCORE_AVERAGE = Config::getValueAsInt("pass_score_AVERAGE");
  SCORE_GOOD = Config::getValueAsInt("pass_score_GOOD");
  SCORE_PERFECT = Config::getValueAsInt("pass_score_PERFECT");
}

}  // namespace vok
