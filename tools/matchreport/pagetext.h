// Pieces of a page: text that is not markup, numbers, the frame of a picture.
#pragma once

#include <string>
#include <string_view>

#include "matchfile.h"

namespace vok::matchreport {

/// A text from a log as text of the page. What could be markup is escaped; bytes that are not ASCII
/// are written as the characters of ISO 8859-1, unprintable ones as a question mark.
std::string escaped(std::string_view text);

/// With at most so many decimals; a dash for what is absent.
std::string shown(double value, int decimals = 1);
/// A share as a percentage without its sign; a dash for what is absent.
std::string percentage(double share, int decimals = 0);

/// The team's name, escaped; "left" and "right" where it has none.
std::string teamName(const analysis::MatchAnalysis& match, playing_side side);
/// The team's name behind a spot of its colour.
std::string teamWithSpot(const analysis::MatchAnalysis& match, playing_side side);

/// A link to the scene before a cycle, its text the cycle itself.
std::string sceneLink(int cycle, int from);
inline std::string sceneLink(int cycle) {
  constexpr int LEAD = 20;  // cycles
  return sceneLink(cycle, cycle - LEAD);
}

/// "l" or "r": the class of whatever has a team's colour.
inline const char* classOf(playing_side side) {
  return side == SIDE_LEFT ? "l" : "r";
}

// A picture is a figure with a title that says what one sees, and a legend below. `title` and
// `legend` are markup.

void beginPicture(std::string& out, const std::string& title, std::string_view viewBox);
/// One of the whole pitch, in metres, with its lines.
void beginField(std::string& out, const std::string& title);
void endPicture(std::string& out, std::string_view legend);

/// A player as a numbered disc.
void drawPlayer(std::string& out, const Vector2d& pos, int player, double radius = 2.1);

}  // namespace vok::matchreport
