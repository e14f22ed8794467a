// The statistics of a match, from its frames and the referee's calls.
//
// It takes a match in its order, whatever the source: `start`, then `call`, `score` and `frame` as
// they come, and `end`. Within a frame the touching comes first, then what was announced between
// the frame before and this one, then what every cycle counts. Each statistic is a class of its
// own, whose head has its definition; here is only who is told what, and when.
//
// With the first call of a penalty shoot-out the match has ended for everything but the shoot-out
// itself and the question who is goalie.
//
// After `start` nothing allocates, as long as a match has no more events than there is room for: a
// thousand shots or set plays.
#pragma once

#include <vector>

#include "actions.h"
#include "distances.h"
#include "dribbles.h"
#include "entries.h"
#include "formations.h"
#include "goals.h"
#include "matchsource.h"
#include "passes.h"
#include "possession.h"
#include "presences.h"
#include "recoveries.h"
#include "setplays.h"
#include "shapes.h"
#include "shootout.h"
#include "shots.h"
#include "silences.h"
#include "staminas.h"
#include "territory.h"

namespace vok::analysis {

class MatchAnalysis {
 public:
  void start(const MatchRules& rules);
  void call(const Call& call);
  void score(const Score& score) { score_ = score; }
  void frame(const Frame& frame);
  void end();

  // The results. Those that depend on the goalie, and those of the last run, set play and kick, are
  // right after `end` only.

  Possession possession;
  Shots shots;
  Goals goals;
  Passes passes;
  Dribbles dribbles;
  Recoveries recoveries;
  Entries entries;
  Actions actions;
  Distances distances;
  Staminas staminas;
  Silences silences;
  Presences presences;
  Formations formations;
  Shapes shapes;
  Territory territory;
  SetPlays setPlays;
  ShootOut shootOut;
  std::vector<Touching> touchings;  ///< all of the match
  std::vector<Call> faults;
  std::vector<Call> offsides;

  /// The player who was last seen as goalie; number 1 where nobody was.
  const BySide<int>& goalies() const { return goalies_; }
  const Score& lastScore() const { return score_; }
  const MatchRules& rules() const { return rules_; }
  /// How many cycles the source shows, without the shoot-out. Servers leave out the one in which a
  /// half ends.
  int cycles(Period period) const { return cycles_[period]; }
  /// The last cycle of the match, without the shoot-out; 0 before the first frame.
  int lastCycle() const { return lastCycle_; }
  /// Some touches were inferred from the ball's movement, as the source counts no commands.
  bool inferred() const { return inferred_; }

 private:
  void seeGoalies(const Frame& frame);
  void play(const Frame& frame);
  void touching(const Step& step, PlayerSet players);
  void announce(const Call& call, int cycle, bool withCatch);
  void interrupt(const Call& call, Period period);
  void announceUpToShootOut();

  MatchRules rules_;
  Score score_;
  std::vector<Call> pending_;  ///< announced since the last frame
  Frame before_;
  bool hasBefore_ = false;
  Call mode_;  ///< of the last frame
  bool inferred_ = false;
  bool inShootOut_ = false;
  int lastCycle_ = 0;
  ByPeriod<int> cycles_;
  Stretch stretch_;
  BySide<int> goalies_;
};

/// Takes a whole match from a source.
void analyse(MatchSource& source, MatchAnalysis& match);

}  // namespace vok::analysis
