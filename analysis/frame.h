// A match as a source tells it: frames, and what the referee called between them.
//
// Everything stands in the log's frame: the left goal at x = -52.5 for both teams, y downwards on a
// screen, metres, metres per cycle, degrees. What a source does not tell is marked: real numbers
// are `ABSENT`, counts and types -1. It is never 0.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "coordinates.h"
#include "pitch.h"
#include "protocol.h"

namespace vok::analysis {

inline constexpr double ABSENT = std::numeric_limits<double>::quiet_NaN();
inline constexpr int NONE = -1;  ///< an absent count or type, no side, no player

inline bool isAbsent(double value) {
  return std::isnan(value);
}

inline constexpr int SIDES = 2;
inline constexpr int PLAYERS = 22;

// A player is a number from 0 to 21: the left side's shirts 1 to 11, then the right side's.

constexpr int playerOf(playing_side side, int shirt) {
  return (side == SIDE_LEFT ? 0 : LAST_SHIRT) + shirt - 1;
}
constexpr playing_side sideOf(int player) {
  return player < LAST_SHIRT ? SIDE_LEFT : SIDE_RIGHT;
}
constexpr int shirtOf(int player) {
  return player % LAST_SHIRT + 1;
}
constexpr playing_side otherSide(playing_side side) {
  return side == SIDE_LEFT ? SIDE_RIGHT : SIDE_LEFT;
}

/// One value for each of the 22 players.
template <typename T>
struct ByPlayer {
  std::array<T, PLAYERS> of{};

  T& operator[](int player) { return of[static_cast<std::size_t>(player)]; }
  const T& operator[](int player) const { return of[static_cast<std::size_t>(player)]; }
};

/// One value for each side.
template <typename T>
struct BySide {
  std::array<T, SIDES> of{};

  T& operator[](playing_side side) { return of[static_cast<std::size_t>(side)]; }
  const T& operator[](playing_side side) const { return of[static_cast<std::size_t>(side)]; }
};

inline constexpr std::array BOTH_SIDES = {SIDE_LEFT, SIDE_RIGHT};

/// Some of the 22 players, a bit each.
struct PlayerSet {
  std::uint32_t bits = 0;

  void add(int player) { bits |= 1U << static_cast<unsigned>(player); }
  bool has(int player) const { return (bits >> static_cast<unsigned>(player) & 1U) != 0; }
  bool empty() const { return bits == 0; }
  int count() const { return std::popcount(bits); }
  /// The lowest one; only when there is one.
  int first() const { return std::countr_zero(bits); }
  PlayerSet of(playing_side side) const {
    constexpr std::uint32_t LEFT = (1U << LAST_SHIRT) - 1;
    return {bits & (side == SIDE_LEFT ? LEFT : LEFT << LAST_SHIRT)};
  }
  /// There are some, and all are of this side.
  bool onlyOf(playing_side side) const { return !empty() && of(side).bits == bits; }
};

/// What a player did and what happened to it, the bits of a log's state.
enum StateBit : std::uint32_t {
  STATE_ON_FIELD = 0x1,
  STATE_KICK = 0x2,
  STATE_KICK_FAULT = 0x4,
  STATE_GOALIE = 0x8,
  STATE_CATCH = 0x10,
  STATE_CATCH_FAULT = 0x20,
  STATE_TACKLE = 0x1000,
  STATE_TACKLE_FAULT = 0x2000,
  STATE_YELLOW_CARD = 0x40000,
  STATE_RED_CARD = 0x80000,
};

/// The commands that the server counts, in the order of a log.
enum CommandCount {
  COUNT_KICK,  ///< those that hit the ball only
  COUNT_DASH,
  COUNT_TURN,
  COUNT_CATCH,
  COUNT_MOVE,
  COUNT_TURN_NECK,
  COUNT_CHANGE_VIEW,
  COUNT_SAY,
  COUNT_TACKLE,  ///< every attempt
  COUNT_POINTTO,
  COUNT_ATTENTIONTO,
  COUNT_CHANGE_FOCUS,  ///< from version 6 on
  COMMAND_COUNTS
};

struct FramePlayer {
  std::uint32_t state = 0;  ///< bits of `StateBit`; 0 is not on the field, and nothing of it counts
  int type = NONE;
  Vector2d pos;
  Vector2d vel;
  double body = 0;  ///< absolute, degrees
  double neck = 0;  ///< from the body, degrees
  double armX = ABSENT;
  double armY = ABSENT;
  char viewQuality = 0;  ///< 'h' or 'l'; 0 when absent
  double viewWidth = ABSENT;
  double focusDistance = ABSENT;
  double focusDirection = ABSENT;
  double stamina = ABSENT;
  double effort = ABSENT;
  double recovery = ABSENT;
  double capacity = ABSENT;
  int attention = NONE;  ///< the player that it listens to
  std::array<int, COMMAND_COUNTS> counts = filled(NONE);

  bool there() const { return state != 0; }
  bool is(StateBit bit) const { return (state & bit) != 0; }

 private:
  static constexpr std::array<int, COMMAND_COUNTS> filled(int value) {
    std::array<int, COMMAND_COUNTS> all{};
    all.fill(value);
    return all;
  }
};

/// One `show` of a log, one view of a coach.
struct Frame {
  int cycle = 0;
  Vector2d ball;
  Vector2d ballVel;
  ByPlayer<FramePlayer> players;
  /// The source counts commands and tells all bits of the states. Without it a state has
  /// `STATE_ON_FIELD`, `STATE_GOALIE` and `STATE_TACKLE` only, and touches have to be inferred.
  bool counted = true;
};

}  // namespace vok::analysis
