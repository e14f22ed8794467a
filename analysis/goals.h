// Goals: who scored, and how it came to that.
//
// A goal ends a stretch. With a player of the scoring side in its last touching, the
// lowest-numbered of them scored. Otherwise the side's last shot in the stretch went in off an
// opponent, when its last touching was a shot; else it is an own goal of the lowest-numbered player
// of the last touching. Without any touching nobody scored.
#pragma once

#include <optional>
#include <vector>

#include "shots.h"
#include "touches.h"

namespace vok::analysis {

/// The touchings since the last interruption, as far as a goal's way shows them.
struct Stretch {
  static constexpr std::size_t KEPT = 5;

  std::array<Touching, KEPT> latest;  ///< of touching number i at i % KEPT
  int touchings = 0;
  BySide<std::optional<Touching>> lastOf;  ///< the last with a player of the side
  BySide<std::optional<Touching>> recovery;
  int setPlay = NONE;  ///< the number of the one that began it

  Touching* last() {
    return touchings == 0 ? nullptr : &latest[static_cast<std::size_t>(touchings - 1) % KEPT];
  }
  void add(const Touching& now, bool isRecovery);
};

struct Goal {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  playing_side side = SIDE_UNKNOWN;  ///< whose score it counts for
  int scorer = NONE;                 ///< of an own goal a player of the other side
  bool own = false;
  std::array<Touching, Stretch::KEPT> way;  ///< the last touchings of its stretch
  int touchings = 0;                        ///< how many of `way` there are
  int setPlay = NONE;                       ///< that led to it
  std::optional<Touching> recovery;         ///< the side's last in the stretch
};

class Goals {
 public:
  void reserve() { goals_.reserve(ROOM); }

  /// `period` is that of the announcement's cycle.
  void announce(int cycle, Period period, playing_side side, Stretch& stretch, Shots& shots);

  const std::vector<Goal>& all() const { return goals_; }

 private:
  static constexpr std::size_t ROOM = 128;

  std::vector<Goal> goals_;
};

}  // namespace vok::analysis
