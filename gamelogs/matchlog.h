// A match in a file: a game log or a coach's recording.
#pragma once

#include <memory>
#include <string>

#include "matchsource.h"

namespace vok::gamelogs {

class MatchLog : public analysis::MatchSource {
 public:
  // After the end:

  /// The match has its end, and no line was refused or cut.
  virtual bool complete() const = 0;
  /// What was wrong with the text in one sentence, empty when nothing was.
  virtual std::string remark() const = 0;
  /// The date of the match, YYYYmmddHHMM; empty when the file does not tell.
  virtual std::string date() const { return {}; }
};

/// Opens a game log or a coach's recording, plain or compressed, as its first bytes tell; "-" is
/// standard input. Null, with the reason in `error`, when it cannot be read or is neither.
std::unique_ptr<MatchLog> openMatchLog(const std::string& name, std::string& error);

}  // namespace vok::gamelogs
