// What a say message tells its reader, as text and as a picture.
#pragma once

#include <iosfwd>
#include <optional>

#include "fielddrawing.h"
#include "worldmodel.h"

namespace vok::saydecode {

/// The content of a coach's message.
struct CoachNews {
  Worldmodel world;    ///< of a player that knew nothing before
  unsigned kicker;     ///< who is to take the set piece
  unsigned opponents;  ///< the two that the statistics name: b + 12 a

  static constexpr unsigned NO_KICKER = 262143;  ///< -1 in eighteen bits
};

/// Reads a message as a player does; nothing when it is damaged, no coach's or too short.
std::optional<CoachNews> readNews(AudioMsg msg);

/// Everything but the payload, "checksum holds" included.
void printHeader(std::ostream& out, const AudioMsg& msg);
void printNews(std::ostream& out, const CoachNews& news);
/// The picture of a message; the kicker and the two opponents are marked.
tools::FieldDrawing draw(const CoachNews& news, const AudioMsg& msg);

}  // namespace vok::saydecode
