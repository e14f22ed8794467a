// Who touches the ball: touches, touchings and stretches, on which all events are built.
//
// A player's touch, one a frame at most, is a kick counter that rose, a tackle counter that rose
// while the tackle worked, or a catch that begins. All who touch in one frame make one touching;
// but a touch while the clock stands is the offence that was called there, and one in the first
// frame behind a gap is of cycles that nobody saw: these count for the player alone. A stretch is
// the touchings between two interruptions.
#pragma once

#include "frame.h"
#include "matchhalves.h"

namespace vok::analysis {

/// A frame and what the one before it says about it.
struct Step {
  const Frame& now;
  const Frame* before;  ///< null for the first frame of all
  bool play;            ///< the mode of this frame, and of the one before
  bool playBefore;
  Period period;

  /// The clock stands: another frame of this cycle came before.
  bool standing() const { return before != nullptr && now.cycle == before->cycle; }
  /// The frame of the cycle behind the one before. Neither holds behind a gap.
  bool next() const { return before != nullptr && now.cycle == before->cycle + 1; }
  /// The first frame of its cycle, in play.
  bool cycleOfPlay() const { return play && !standing(); }
};

struct Touches {
  PlayerSet all;
  PlayerSet byCounter;  ///< by kick or tackle
  PlayerSet byCatch;
};

/// By the counters and states of two frames; `before` is null for the first frame.
Touches countedTouches(const Frame& now, const Frame* before);

/// A count that a source lacks never rises.
bool hasRisen(int player, CommandCount count, const Frame& now, const Frame& before);

struct Touching {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  PlayerSet players;
  Vector2d place;       ///< of the ball, in the frame before
  bool inPlay = false;  ///< this frame and the one before are of play
  int shot = NONE;      ///< its number among the shots, if it is one
  int shooter = NONE;

  bool isSingle() const { return players.count() == 1; }
  bool isSingleOf(playing_side side) const { return isSingle() && players.onlyOf(side); }
  int player() const { return players.first(); }
};

inline double distance(const Vector2d& a, const Vector2d& b) {
  return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

/// A place or velocity in a side's own frame, where its goal is at x = -52.5.
inline Vector2d ownFrame(const Vector2d& v, playing_side side) {
  return side == SIDE_LEFT ? v : -v;
}

}  // namespace vok::analysis
