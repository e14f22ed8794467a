// What players tell each other of the ball and of themselves, in ten characters.
#pragma once

#include <cstddef>
#include <optional>

#include "coordinates.h"

namespace vok {

/// Kind of a player's message.
enum MessageType {
  MSGTYPE_NONE = 0,
  MSGTYPE_ACTION = 1,
  MSGTYPE_SIM_ACTION = 2,
  MSGTYPE_POSITION = 3,
  MSGTYPE_BALL = 4,
  MSGTYPE_TACKLE = 5
};

/// With `MSGTYPE_POSITION` it tells the sender's position and stamina, with any other type the ball
/// and the sender's distance from the centre spot. Field frame (coordinates.h), metres and cycles.
struct PlayerMessage {
  static constexpr std::size_t LENGTH = 10;
  /// Where the three characters of the caller begin.
  static constexpr std::size_t CALLERS = 6;
  /// How far the true distance may lie from `centreDistance`, but where that is the greatest.
  static constexpr double DISTANCE_ERROR = 32.0 / 73;

  MessageType type = MSGTYPE_NONE;
  Vector2d pos;               ///< on a grid of 0.25 m over the field
  double stamina = 0;         ///< up to `STAMINA_MAX`
  Vector2d velocity;          ///< metres per cycle; the direction in steps of 2 degrees, up to 2.7
  int age = 0;                ///< 0 to 3; an older ball travels with 3
  bool seen = false;          ///< the sender has seen the ball where it says
  double centreDistance = 0;  ///< up to 64

  /// Writes the characters 0 to 5 and, but for a position, 9 of `text`. The others are the
  /// caller's.
  void write(char* text) const;
  /// Reads `LENGTH` characters. Nothing when they are not such a message.
  static std::optional<PlayerMessage> read(const char* text);
};

}  // namespace vok
