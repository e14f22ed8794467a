// How far two sources agree on who touched the ball.
#pragma once

#include "matchanalysis.h"

namespace vok::matchreport {

/// The single touches in play that the first source has, and how many of them the second one has
/// rightly. Missed ones are wrong.
struct Agreement {
  int touches = 0;
  int sideRight = 0;
  int playerRight = 0;
  int invented = 0;  ///< touchings in play of the second source where the first one has none
};

Agreement agreement(const analysis::MatchAnalysis& truth, const analysis::MatchAnalysis& other);

}  // namespace vok::matchreport
