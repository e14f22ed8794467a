// What the text log beside a game log tells: whether each player gave its command in every cycle,
// what the coaches said, and which types they asked for.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "bodycommands.h"
#include "coachmessage.h"
#include "matchanalysis.h"
#include "textlog.h"

namespace vok::matchreport {

/// A message of a coach to its players.
struct CoachSaid {
  int cycle = 0;
  playing_side side = SIDE_UNKNOWN;
  std::string text;
  std::optional<CoachMessage> told;  ///< in the own frame of the side; empty for another code
};

struct TypeRequest {
  int cycle = 0;
  playing_side side = SIDE_UNKNOWN;
  int shirt = 0;
  int type = 0;
  bool granted = false;  ///< the player had the type later
};

class ClientLog {
 public:
  static constexpr std::size_t MAX_KEPT = 4096;  ///< messages, and likewise requests

  /// Reads a whole text log up to a shoot-out; a line of another team does not count. `match` is
  /// what the game log told. False, with the reason in `error`, when it cannot be read.
  bool read(const std::string& name, const analysis::MatchAnalysis& match, std::string& error);

  const std::string& source() const { return source_; }
  /// What was wrong with the text, empty when nothing was.
  const std::string& remark() const { return remark_; }
  const analysis::BodyCommands& commands() const { return commands_; }
  const std::vector<CoachSaid>& said() const { return said_; }
  const std::vector<TypeRequest>& requests() const { return requests_; }

 private:
  void take(const gamelogs::TextLogLine& line, playing_side side,
            const analysis::MatchAnalysis& match);
  void takeRequest(const gamelogs::TextLogLine& line, playing_side side,
                   const analysis::MatchAnalysis& match);

  std::string source_;
  std::string remark_;
  analysis::BodyCommands commands_{{}};
  std::vector<CoachSaid> said_;
  std::vector<TypeRequest> requests_;
};

}  // namespace vok::matchreport
