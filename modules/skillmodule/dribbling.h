// Running with the ball.
#pragma once

#include "command.h"
#include "pitch.h"

namespace vok {

struct Dribble {
  int dashes = 0;   ///< until the ball is within reach again; 0 when there is no way
  Command command;  ///< a kick, a dash beside the ball, or the turn and the stop before them
};

/// One cycle of a run with the ball in a direction (radians, field frame): kicks the ball ahead so
/// that it is within reach again after the most dashes, at most `maxDashes`, and until then out of
/// the reach of every opponent seen within the last `maxAge` cycles. The player turns first, with
/// the ball stopped beside him, and does not kick where the ball comes along by itself. While the
/// ball is out of reach the player intercepts it (`intercept`).
Dribble dribble(const WPlayer& player, const WBall& ball, Angle direction,
                const Squad<WPlayer>& opponents, int maxDashes = 5, int maxAge = 10);

}  // namespace vok
