// Set plays: who takes them, to whom, and what becomes of them.
//
// Each announced kick of a side is one; a free kick that comes with a catch is the goalie's. The
// taker is the player of the first touching behind it, the second that of the next one. What comes
// first from the taker's touching on decides: a shot or a goal of the side, a touching of the other
// side alone or another interruption (lost), or 100 cycles without any of these (kept).
#pragma once

#include <string_view>
#include <vector>

#include "calls.h"
#include "shots.h"
#include "touches.h"

namespace vok::analysis {

enum class SetPlayOutcome { NOT_TAKEN, GOAL, SHOT, LOST, KEPT };

struct SetPlay {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  playing_side side = SIDE_UNKNOWN;
  CallKind kind = CallKind::FREE_KICK;
  bool fromCatch = false;  ///< a free kick behind a catch
  int taker = NONE;
  int takenAt = 0;    ///< the cycle of the taker's touching
  int second = NONE;  ///< may be the taker or an opponent
  SetPlayOutcome outcome = SetPlayOutcome::NOT_TAKEN;
  int shot = NONE;  ///< its number, with the outcome `SHOT`

  std::string_view kindName() const { return fromCatch ? "catch" : analysis::kindName(kind); }
};

class SetPlays {
 public:
  void reserve() { setPlays_.reserve(ROOM); }

  /// The number of the set play that an announcement begins; `withCatch` tells that a catch stands
  /// in the frame with which it comes.
  int announce(const Call& call, Period period, bool withCatch);
  void touching(const Touching& now);
  /// Before `announce`, if the call is a set play. `last` is the last touching of the stretch that
  /// it ends, null without one: a goal may have made it a shot.
  void interruption(const Call& call, const Touching* last);
  void end();

  const std::vector<SetPlay>& all() const { return setPlays_; }
  /// A shot of it that a goal was made of later counts as a goal.
  static SetPlayOutcome outcome(const SetPlay& play, const Shots& shots);

 private:
  static constexpr std::size_t ROOM = 1024;

  enum class Stage { NONE, ANNOUNCED, TAKEN, FOLLOWED };

  bool decideLate(SetPlay& play, int cycle);
  void decide(SetPlay& play, SetPlayOutcome outcome);
  void follow(SetPlay& play, const Touching& now);

  std::vector<SetPlay> setPlays_;
  Stage stage_ = Stage::NONE;
  bool open_ = false;  ///< the outcome of the last one is not decided
};

}  // namespace vok::analysis
