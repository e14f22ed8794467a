// Who touched the ball, where the source counts no kicks: inferred from its movement.
//
// The ball moves by the velocity that it has, plus noise in proportion to it, and then shows this
// way times ball_decay. So the way from one frame to the next differs from the velocity that was
// shown before by more than the noise exactly where the ball was touched or hit somebody. A
// collision leaves a tenth of the velocity, backwards: where that is the velocity from before, the
// ball hit somebody and was not touched.
//
// The one who touched it could reach it in the frame before, and neither turned nor dashed, since a
// cycle has one command for the body. The nearest such player of each side did, in terms of his own
// reach, so that of two opponents at the ball both have touched it. Where no such player is well
// within reach, a tackle counts, too, and then whoever is nearest; where nobody could reach it,
// nobody touched it. In a set play only the side that takes it is asked, and the ball lies still
// before it.
#pragma once

#include "calls.h"
#include "touches.h"

namespace vok::analysis {

/// `modeBefore` is the play mode of the frame before. A type that is not known has the reach of the
/// default type. Catches are told by the states.
Touches inferredTouches(const Step& step, const Call& modeBefore, const MatchRules& rules);

/// A tackle begins in the frame, as the states show it.
bool beginsTackle(int player, const Frame& now, const Frame* before);

}  // namespace vok::analysis
