// What the referee announces in a game log: the play modes.
//
// A client's play modes (playmodes.h) are seen from its own side, and some calls of newer servers
// are the same mode there, which a statistic has to tell apart. So a call keeps its own name here.
#pragma once

#include <array>
#include <string_view>

#include "protocol.h"

namespace vok::analysis {

enum class CallKind {
  OTHER,  ///< a name that the table does not know
  BEFORE_KICK_OFF,
  PLAY_ON,
  TIME_OVER,
  KICK_OFF,
  KICK_IN,
  FREE_KICK,
  INDIRECT_FREE_KICK,
  CORNER_KICK,
  GOAL_KICK,
  DROP_BALL,
  GOAL,
  OFFSIDE,
  FOUL_CHARGE,
  FOUL_PUSH,
  FOUL_MULTIPLE_ATTACK,
  FOUL_BALLOUT,
  FREE_KICK_FAULT,
  BACK_PASS,
  CATCH_FAULT,
  ILLEGAL_DEFENSE,
  PENALTY_SETUP,
  PENALTY_READY,
  PENALTY_TAKEN,
  PENALTY_SCORE,
  PENALTY_MISS
};

/// An announced play mode. Whose it is depends on the kind: who takes the kick, scored, committed
/// the foul, shoots.
struct Call {
  int cycle = 0;
  CallKind kind = CallKind::OTHER;
  playing_side side = SIDE_UNKNOWN;  ///< `SIDE_UNKNOWN` for the calls of neither

  /// The name as it was announced, cut at 39 characters.
  std::string_view name() const { return {name_.data(), length_}; }

  /// The call of a name such as "kick_in_l".
  static Call named(std::string_view name, int cycle);

  bool isPlay() const { return kind == CallKind::PLAY_ON; }
  /// Somebody is to take a kick.
  bool isSetPlay() const;
  /// A foul or another fault; offsides are counted on their own.
  bool isFault() const;

 private:
  std::array<char, 39> name_{};
  unsigned char length_ = 0;
};

/// The name of a kind without its side: "kick_in"; empty for `OTHER`.
std::string_view kindName(CallKind kind);

}  // namespace vok::analysis
