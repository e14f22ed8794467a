// What the fuzzers of a player's senses share: the check-in of the player, and the good senses that
// stand between theirs.
#pragma once

#include <string>
#include <string_view>

namespace vok::fuzz {

/// How one of their lines begins.
struct Step {
  long cycles = 0;      ///< that have passed, 0 to 3, or a hundred
  bool isPlain = true;  ///< the good sense that belongs to the line comes, too
  std::string_view rest;
};
Step takeStep(std::string_view line);

/// Begins the match of a player, from what stands in the server's answer: side, number and mode.
/// The seven types of players are announced. False when the check-in is refused.
bool checkInPlayer(std::string_view answer);

/// Of a body at rest, in the normal width.
std::string goodBodySense(long time);
/// Of the landmarks, the ball and two players, from one place.
std::string goodView(long time);

}  // namespace vok::fuzz
