// Where a match comes from: a game log, a coach's recording, the coach itself.
#pragma once

#include <array>
#include <string>

#include "calls.h"
#include "frame.h"
#include "matchrules.h"

namespace vok::analysis {

struct Penalties {
  int goals = 0;
  int misses = 0;
};

/// The names and the score, as a log tells them on every change.
struct Score {
  int cycle = 0;
  BySide<std::string> names;  ///< empty for a side without a team
  BySide<int> goals;
  BySide<Penalties> penalties;
  bool shootOut = false;  ///< penalties were told
};

enum class Told { FRAME, CALL, SCORE, MESSAGE, END };

/// Tells a match from its beginning to its end, one thing after the other. An announcement comes
/// before the frame that first shows it.
class MatchSource {
 public:
  virtual ~MatchSource() = default;

  /// Goes on to what the source tells next. The function of the same name below has it until the
  /// next call.
  virtual Told next() = 0;

  /// Complete with the first thing that `next` finds.
  const MatchRules& rules() const { return rules_; }
  const Frame& frame() const { return frame_; }
  const Call& call() const { return call_; }
  const Score& score() const { return score_; }

 protected:
  MatchRules rules_;
  Frame frame_;
  Call call_;
  Score score_;
};

}  // namespace vok::analysis
