// Everything that the world knows as a text: to look at a moment of a match later, or to go on from
// it. (The summary that `Worldmodel::writeToStream` writes is shorter and is not read back.)
//
// The text is a line for each group of members: a name, and values separated by blanks; numbers in
// the shortest form that gives the same value when it is read. "world 1" is its first line, "end"
// with a checksum of all before it its last; what follows belongs to somebody else.
#pragma once

#include <iosfwd>

#include "worldmodel.h"

namespace vok {

/// Writes the world, without its connection.
void writeWorld(std::ostream& out, const Worldmodel& world);

/// Makes the world the same as the one that was written; its connection stays. False when the text
/// is damaged or holds a number that is not finite: then the world is unchanged, and a line on
/// standard error says what is wrong.
bool readWorld(std::istream& in, Worldmodel& world);

}  // namespace vok
