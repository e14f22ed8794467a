// All events of a match in one list.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "matchanalysis.h"

namespace vok::matchreport {

struct Event {
  int cycle = 0;
  std::string_view name;             ///< "touch", "pass" ...
  std::string kind;                  ///< what sort of it; empty where there is one only
  playing_side side = SIDE_UNKNOWN;  ///< of a goal whose score it counts for
  int player = analysis::NONE;       ///< who did it; of an own goal one of the other side
  std::optional<Vector2d> place;     ///< of the ball, in the log's frame
  int to = analysis::NONE;           ///< who touched the ball next, in passes and set plays
  std::optional<Vector2d> toPlace;
  std::string_view outcome;  ///< empty where none is known
};

/// In the order of their cycles; those of one cycle in the order of the table in
/// docs/match-report.md.
std::vector<Event> eventsOf(const analysis::MatchAnalysis& match);

}  // namespace vok::matchreport
