// The coach's message to its players: the positions of all players and the ball as the coach sees
// them, the opponents' types, who is to take the kick, and two opposing defenders.
//
// Who writes or reads the message uses this value; its characters are known in coachmessage.cpp
// alone, where one list of the fields serves both directions.
#pragma once

#include <optional>

#include "audiomsg.h"
#include "coordinates.h"
#include "pitch.h"

namespace vok {

/// Positions are in the field frame of the team (coordinates.h), in metres; they travel in steps of
/// 0.1 m, rounded down.
struct CoachMessage {
  /// Characters of the whole payload, behind the header.
  static constexpr unsigned PAYLOAD_LENGTH = 112;

  int ourGoalie = -1;    ///< shirt number, -1 while unknown
  int otherGoalie = -1;  ///< shirt number, -1 while unknown
  Vector2d ball;
  Squad<Vector2d> ourTeam;
  Squad<Vector2d> otherTeam;
  Squad<int> otherTypes;  ///< the opponents' heterogeneous types, -1 while unknown
  int kicker = -1;        ///< our player who is to take the kick, -1 for none
  int lastDefender = 0;   ///< the opponent who stands rearmost on average, 0 for none
  int secondLastDefender = 0;

  CoachMessage() { otherTypes.fill(-1); }
  bool operator==(const CoachMessage&) const = default;

  /// Appends everything to a coach's message. A position beyond the code's range and what does not
  /// fit are left out and clear the message's state.
  void write(AudioMsg& message) const;
  /// Appends goalies, ball and players only.
  void writePicture(AudioMsg& message) const;

  /// Reads a heard message from its beginning. Nothing when its checksum does not hold, when it is
  /// not a coach's, carries no picture of the match, or ends early.
  static std::optional<CoachMessage> read(AudioMsg message);
  /// Reads on from the read position up to the opponents' types; what follows stays unread. Nothing
  /// when the message carries no picture of the match or ends before.
  static std::optional<CoachMessage> readPicture(AudioMsg& message);
};

}  // namespace vok
