// The objects of a JSON game log. See docs/game-logs.md.
#pragma once

#include "jsontext.h"
#include "loghead.h"
#include "textlines.h"

namespace vok::gamelogs {

enum class JsonKind { OTHER, HEAD, SHOW, PLAY_MODE, TEAMS, MESSAGE };

/// What the objects of a log fill.
struct JsonTargets {
  LogHead& head;
  analysis::Frame& frame;
  analysis::Call& call;
  analysis::Score& score;
  LogMessage& message;
  std::string& timestamp;
};

/// Reads one object of the log's array into what it describes; an unknown one is `OTHER`. False
/// when the text ends in it or it has another form; the target may then be partly changed.
bool readObject(JsonText& in, const JsonTargets& to, JsonKind& kind);

}  // namespace vok::gamelogs
