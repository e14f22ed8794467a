// Running to a place and turning to a point, by the rules of the simulator (`WPlayer::dash`,
// `turn`).
//
// The skills answer with the command of this cycle and are asked again in the next one, so that
// noise and a changed picture are corrected on the way. They take any player: what they predict for
// a player is what they would have it do. Metres in the field frame, cycles, radians.
#pragma once

#include "command.h"

namespace vok {

/// The stamina that a current server gives back to a player in a half. It does not tell clients of
/// this protocol, so a configuration may know better ("skill_staminaCapacity").
inline constexpr int DEFAULT_CAPACITY = 130600;

/// The moment of a turn that turns the body by `angle` at the present speed, cut to what the server
/// allows: a fast player may need several turns.
double turnMoment(const WPlayer& player, Angle angle);

/// Turns the body to a point; none when it is within `tolerance` (radians).
Command turnTo(const WPlayer& player, const Vector2d& point, double tolerance = 0.02);

/// Turns or dashes, so that the player comes within `reach` of a place soonest with dashes of at
/// most `power`; the last one is weaker, so that it does not run past. None when the player is
/// there or drifts there.
Command dashTo(const WPlayer& player, const Vector2d& place, double reach, double power);

/// In how many cycles `dashTo` at full power brings the player within `reach` of a place, with the
/// server's noise taken at its mean: a long way needs a second turn; `NEVER` when that takes more
/// than `limit`.
int cyclesTo(const WPlayer& player, const Vector2d& place, double reach, int limit = 100);

/// The greatest power up to `power` that leaves the stamina above the marks below which effort and
/// recovery fall, with a small margin.
double sparingPower(const WPlayer& player, double power);

}  // namespace vok
