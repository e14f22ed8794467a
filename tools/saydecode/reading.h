// What a say message tells its reader, as text and as a picture.
#pragma once

#include <iosfwd>

#include "coachmessage.h"
#include "fielddrawing.h"

namespace vok::saydecode {

/// Everything but the payload, "checksum holds" included.
void printHeader(std::ostream& out, const AudioMsg& msg);
void printNews(std::ostream& out, const CoachMessage& told);
/// The message as a picture of the field, on which the kicker and the two defenders are marked.
tools::FieldDrawing draw(const CoachMessage& told, const AudioMsg& msg);

}  // namespace vok::saydecode
