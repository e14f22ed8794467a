#include "pagetables.h"

#include <algorithm>
#include <map>

#include "reporttables.h"
#include "tablewriter.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

std::string words(std::string_view name) {
  std::string text = name.empty() ? "not taken" : escaped(name);
  std::replace(text.begin(), text.end(), '_', ' ');
  return text;
}

std::string ofAll(int part, int all) {
  return std::to_string(part) + " of " + std::to_string(all);
}

std::string shirtOrDash(int player) {
  return player == NONE ? "\u2013" : std::to_string(shirtOf(player));
}

/// A table that the reader opens.
void beginDetails(std::string& out, const std::string& summary, std::size_t count) {
  out += "<details><summary>" + summary + " (" + std::to_string(count) + ")</summary>\n";
}

void endDetails(std::string& out) {
  out += "</details>\n";
}

/// A row of the comparison of both sides: left, what it is, right.
template <typename Cell>
void compare(TableWriter& table, const char* what, Cell cell) {
  table.row({cell(SIDE_LEFT), what, cell(SIDE_RIGHT)});
}

int countOf(const std::vector<Call>& calls, playing_side side) {
  return static_cast<int>(std::count_if(calls.begin(), calls.end(),
                                        [side](const Call& call) { return call.side == side; }));
}

}  // namespace

void writeSides(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  BySide<SideCounts> counts;
  for (const playing_side side : BOTH_SIDES) counts[side] = sideCounts(all, Period::WHOLE, side);
  TableWriter table(out, "", {teamWithSpot(all, SIDE_LEFT), "", teamWithSpot(all, SIDE_RIGHT)},
                    "sides");
  compare(table, "goals", [&](playing_side s) {
    return "<b>" + std::to_string(all.lastScore().goals[s]) + "</b>";
  });
  compare(table, "shots, on target", [&](playing_side s) {
    return std::to_string(counts[s].shots.total) + ", " + std::to_string(counts[s].shots.onTarget);
  });
  compare(table, "possession", [&](playing_side s) {
    return percentage(all.possession.share(Period::WHOLE, s), 1) + " %";
  });
  compare(table, "passes completed", [&](playing_side s) {
    return ofAll(counts[s].passes.completed, counts[s].passes.tried());
  });
  compare(table, "dribbles", [&](playing_side s) { return std::to_string(counts[s].dribbles); });
  compare(table, "balls won", [&](playing_side s) { return std::to_string(counts[s].recoveries); });
  compare(table, "entries into the penalty area",
          [&](playing_side s) { return std::to_string(all.entries.of(Period::WHOLE, s)); });
  compare(table, "tackles that worked", [&](playing_side s) {
    return ofAll(counts[s].actions.tacklesWon, counts[s].actions.tacklesTried);
  });
  compare(table, "distance run, km",
          [&](playing_side s) { return shown(all.distances.of(Period::WHOLE, s) / 1000); });
  compare(table, "fouls and faults, offsides", [&](playing_side s) {
    return std::to_string(countOf(all.faults, s)) + ", " + std::to_string(countOf(all.offsides, s));
  });
  compare(table, "formation with, without the ball", [&](playing_side s) {
    const int goalie = goalieShirt(all, s);
    return escaped(all.formations.of(Period::WHOLE, s, Ball::WITH, goalie).name) + ", " +
           escaped(all.formations.of(Period::WHOLE, s, Ball::WITHOUT, goalie).name);
  });
  table.end();
}

void writeShots(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  if (all.shots.all().empty()) return;
  TableWriter table(out, "All shots", {"cycle", "team", "number", "outcome", "on target"});
  for (const Shot& shot : all.shots.all()) {
    table.row({sceneLink(shot.cycle), teamWithSpot(all, shot.side()), shirtOrDash(shot.player),
               words(outcomeName(Shots::outcome(shot, all.goalies()))),
               shot.onTarget ? "yes" : "no"});
  }
  table.end();
}

void writeSetPlays(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  struct Counts {
    int taken = 0;
    std::map<SetPlayOutcome, int> outcomes;
  };
  std::map<std::pair<std::string_view, playing_side>, Counts> kinds;
  for (const SetPlay& play : all.setPlays.all()) {
    Counts& counts = kinds[{play.kindName(), play.side}];
    ++counts.taken;
    ++counts.outcomes[SetPlays::outcome(play, all.shots)];
  }
  TableWriter table(out, "Set plays, and what came of them within 100 cycles",
                    {"kind", "team", "all", "goal", "shot", "kept", "lost", "not taken"});
  for (const auto& [key, counts] : kinds) {
    std::vector<std::string> cells = {words(key.first), teamWithSpot(all, key.second),
                                      std::to_string(counts.taken)};
    for (const SetPlayOutcome outcome :
         {SetPlayOutcome::GOAL, SetPlayOutcome::SHOT, SetPlayOutcome::KEPT, SetPlayOutcome::LOST,
          SetPlayOutcome::NOT_TAKEN}) {
      const auto found = counts.outcomes.find(outcome);
      cells.push_back(std::to_string(found == counts.outcomes.end() ? 0 : found->second));
    }
    table.row(cells);
  }
  table.end();

  beginDetails(out, "Each set play", all.setPlays.all().size());
  TableWriter each(out, "", {"cycle", "team", "kind", "taker", "to", "outcome"});
  for (const SetPlay& play : all.setPlays.all()) {
    const bool lost = play.second != NONE && sideOf(play.second) != play.side;
    each.row({sceneLink(play.cycle, play.cycle), teamWithSpot(all, play.side),
              words(play.kindName()), shirtOrDash(play.taker),
              lost ? "opponent " + shirtOrDash(play.second) : shirtOrDash(play.second),
              words(outcomeName(SetPlays::outcome(play, all.shots)))});
  }
  each.end();
  endDetails(out);
}

void writeLostBalls(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  for (const playing_side side : BOTH_SIDES) {
    std::vector<Recovery> lost;
    for (const Recovery& recovery : all.recoveries.all()) {
      if (sideOf(recovery.player()) != side) lost.push_back(recovery);
    }
    beginDetails(out, "Balls that " + teamWithSpot(all, side) + " lost", lost.size());
    TableWriter table(out, "", {"cycle", "lost by", "won by", "x, m", "y, m"});
    for (const Recovery& recovery : lost) {
      // Where it was, in the frame of the team that lost it.
      const Vector2d place = ownFrame(recovery.place, side);
      const int loser = recovery.lostBy.first();
      table.row({sceneLink(recovery.cycle), std::to_string(shirtOf(loser)),
                 std::to_string(shirtOf(recovery.player())), shown(place.x), shown(place.y)});
    }
    table.end();
    out += "<p class='about'>x and y are where the ball was won; the own goal is at x = -52.5.</p>";
    endDetails(out);
  }
}

void writeOffences(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  std::multimap<int, std::vector<std::string>> rows;
  const auto add = [&](int cycle, playing_side side, const std::string& who,
                       const std::string& what) {
    rows.insert({cycle, {sceneLink(cycle), teamWithSpot(all, side), who, what}});
  };
  for (const Call& call : all.faults) add(call.cycle, call.side, "", words(kindName(call.kind)));
  for (const Call& call : all.offsides) add(call.cycle, call.side, "", "offside");
  for (const Card& card : all.presences.cards()) {
    add(card.cycle, sideOf(card.player), shirtOrDash(card.player),
        card.red ? "red card" : "yellow card");
  }
  for (int i = 0; i < PLAYERS; ++i) {
    const std::vector<TypeFrom>& types = all.presences.types(i);
    for (std::size_t n = 1; n < types.size(); ++n) {
      add(types[n].cycle, sideOf(i), shirtOrDash(i),
          "type " + std::to_string(types[n].type) + " instead of " +
              std::to_string(types[n - 1].type));
    }
  }
  if (rows.empty()) return;
  beginDetails(out, "Fouls, offsides, cards and substitutions", rows.size());
  TableWriter table(out, "", {"cycle", "team", "number", "what"});
  for (const auto& [cycle, cells] : rows) table.row(cells);
  table.end();
  endDetails(out);
}

void writeShootOut(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  if (all.shootOut.kicks().empty()) return;
  TableWriter table(out, "Penalty shoot-out", {"cycle", "team", "number", "result"});
  for (const PenaltyKick& kick : all.shootOut.kicks()) {
    const std::string_view result = resultName(kick.result);
    table.row({sceneLink(kick.cycle, kick.cycle), teamWithSpot(all, kick.side),
               shirtOrDash(kick.taker), result.empty() ? "\u2013" : std::string(result)});
  }
  table.end();
}

void writePlayers(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  for (const playing_side side : BOTH_SIDES) {
    TableWriter table(out, teamWithSpot(all, side),
                      {"number", "type", "km", "touches", "passes", "dribbles", "balls won",
                       "tackles", "stamina at the end", "lowest"});
    for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
      const int i = playerOf(side, shirt);
      if (!all.presences.of(Period::WHOLE, i).ever) continue;
      const PassCounts& passes = all.passes.of(Period::WHOLE, i);
      const ActionCounts& actions = all.actions.of(Period::WHOLE, i);
      const StaminaTable& stamina = all.staminas.of(Period::WHOLE, i);
      const std::vector<TypeFrom>& types = all.presences.types(i);
      table.row({std::to_string(shirt),
                 types.empty() ? "\u2013" : std::to_string(types.back().type),
                 shown(all.distances.of(Period::WHOLE, i) / 1000), std::to_string(actions.touches),
                 ofAll(passes.completed, passes.tried()),
                 std::to_string(all.dribbles.of(Period::WHOLE, i)),
                 std::to_string(all.recoveries.of(Period::WHOLE, i)),
                 ofAll(actions.tacklesWon, actions.tacklesTried), shown(stamina.left, 0),
                 shown(stamina.least, 0)});
    }
    table.end();
  }
}

}  // namespace vok::matchreport
