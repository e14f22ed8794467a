// One match of the command line: a source read to its end, and its statistics.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "clientlog.h"
#include "matchanalysis.h"
#include "sources.h"

namespace vok::matchreport {

struct Match {
  std::string source;  ///< the name on the command line
  std::string key;     ///< date, teams and score
  std::string date;    ///< YYYYmmddHHMM; empty when the source does not tell
  std::string remark;  ///< what was wrong with the source, in a sentence; empty when nothing was
  std::string error;   ///< why it could not be read; empty when it was
  bool complete = false;
  analysis::MatchAnalysis analysis;
  std::unique_ptr<ClientLog> clients;  ///< what the text log tells; null without one
  std::string textLogProblem;          ///< why there is none, or what was wrong with it

  bool isRead() const { return error.empty(); }
};

/// What somebody else does with each frame of the match and the play mode that holds in it, when
/// the analysis has taken it.
using EachFrame = std::function<void(const analysis::Frame& frame, std::string_view playMode,
                                     const Match& soFar)>;

/// Reads a source: a game log or a coach's recording.
std::unique_ptr<Match> readMatch(const Source& source, const EachFrame& eachFrame = {});

}  // namespace vok::matchreport
