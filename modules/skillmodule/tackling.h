// Winning the ball where it cannot be kicked: the tackle, and the goalie's catch.
#pragma once

#include "command.h"
#include "worldmodel.h"

namespace vok {

/// A tackle at full power when it succeeds with at least `probability` (0 to 1) and does not send
/// the ball into our own goal; else none. It drives the ball where the body faces.
Command tackle(const WPlayer& player, const WBall& ball, double probability);

/// Catches the ball when our own goalie may and can; else none.
Command catchBall(const Worldmodel& world);

}  // namespace vok
