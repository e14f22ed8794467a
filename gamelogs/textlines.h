// The lines of a text game log, versions 4 to 6: read and written. See docs/game-logs.md.
#pragma once

#include <string>
#include <string_view>

#include "matchsource.h"

namespace vok::gamelogs {

/// A message that a log holds: the result near its end, words of a trainer.
struct LogMessage {
  int cycle = 0;
  int board = 0;
  std::string text;
};

// Each reads one whole line without its end; false when it has another form. The target may then
// be partly changed.

bool readShow(std::string_view line, analysis::Frame& frame);
bool readPlayMode(std::string_view line, analysis::Call& call);
bool readTeams(std::string_view line, analysis::Score& score);
bool readMessage(std::string_view line, LogMessage& message);

// Each appends one line of version 6 with its end. What is absent is written as 0, or left out
// where the format allows it.

void writeShow(const analysis::Frame& frame, std::string& to);
void writePlayMode(const analysis::Call& call, std::string& to);
void writeTeams(const analysis::Score& score, std::string& to);
void writeMessage(const LogMessage& message, std::string& to);

/// No object of a match is this far away, in metres; such a number is damage.
inline constexpr double MAX_COORDINATE = 1e6;
bool isPlausible(const Vector2d& v);

}  // namespace vok::gamelogs
