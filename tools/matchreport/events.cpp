#include "events.h"

#include <algorithm>

#include "reporttables.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

class Collector {
 public:
  explicit Collector(const MatchAnalysis& match) : match_(match) {}

  std::vector<Event> collect() {
    addTouches();
    addPasses();
    addDribbles();
    addRecoveries();
    addShots();
    addGoals();
    addEntries();
    addSetPlays();
    addCalls("foul", match_.faults);
    addCalls("offside", match_.offsides);
    addCards();
    addSubstitutions();
    addPenalties();
    std::stable_sort(events_.begin(), events_.end(),
                     [](const Event& a, const Event& b) { return a.cycle < b.cycle; });
    return std::move(events_);
  }

 private:
  Event& add(std::string_view name, int cycle, playing_side side) {
    events_.emplace_back();
    Event& event = events_.back();
    event.name = name;
    event.cycle = cycle;
    event.side = side;
    return event;
  }
  Event& add(std::string_view name, int cycle, int player) {
    Event& event = add(name, cycle, sideOf(player));
    event.player = player;
    return event;
  }

  void addTouches() {
    for (const Touching& touching : match_.touchings) {
      for (int i = 0; i < PLAYERS; ++i) {
        if (!touching.players.has(i)) continue;
        Event& event = add("touch", touching.cycle, i);
        event.kind = touching.isSingle() ? "single" : "shared";
        event.place = touching.place;
      }
    }
  }

  void addPasses() {
    for (const Pass& pass : match_.passes.all()) {
      Event& event = add("pass", pass.cycle, pass.from);
      event.place = pass.place;
      event.to = pass.to;
      if (pass.to != NONE) event.toPlace = pass.toPlace;
      event.outcome = resultName(pass.result);
    }
  }

  void addDribbles() {
    for (const Dribble& dribble : match_.dribbles.all()) {
      Event& event = add("dribble", dribble.cycle, dribble.player);
      event.place = dribble.place;
      event.toPlace = dribble.toPlace;
    }
  }

  void addRecoveries() {
    for (const Touching& recovery : match_.recoveries.all()) {
      add("recovery", recovery.cycle, recovery.player()).place = recovery.place;
    }
  }

  void addShots() {
    for (const Shot& shot : match_.shots.all()) {
      Event& event = add("shot", shot.cycle, shot.player);
      event.kind = shot.onTarget ? "on_target" : "off_target";
      event.place = shot.place;
      event.outcome = outcomeName(Shots::outcome(shot, match_.goalies()));
    }
  }

  void addGoals() {
    for (const Goal& goal : match_.goals.all()) {
      Event& event = add("goal", goal.cycle, goal.side);
      event.player = goal.scorer;
      event.kind = goal.own ? "own" : "";
    }
  }

  void addEntries() {
    for (const Entry& entry : match_.entries.all()) add("entry", entry.cycle, entry.side);
  }

  void addSetPlays() {
    for (const SetPlay& play : match_.setPlays.all()) {
      Event& event = add("set_play", play.cycle, play.side);
      event.kind = play.kindName();
      event.player = play.taker;
      event.to = play.second;
      event.outcome = outcomeName(SetPlays::outcome(play, match_.shots));
    }
  }

  void addCalls(std::string_view name, const std::vector<Call>& calls) {
    for (const Call& call : calls) add(name, call.cycle, call.side).kind = kindName(call.kind);
  }

  void addCards() {
    for (const Card& card : match_.presences.cards()) {
      add("card", card.cycle, card.player).kind = card.red ? "red" : "yellow";
    }
  }

  /// The kind is the new type.
  void addSubstitutions() {
    for (int i = 0; i < PLAYERS; ++i) {
      const std::vector<TypeFrom>& types = match_.presences.types(i);
      for (std::size_t n = 1; n < types.size(); ++n) {
        add("substitution", types[n].cycle, i).kind = std::to_string(types[n].type);
      }
    }
  }

  void addPenalties() {
    for (const PenaltyKick& kick : match_.shootOut.kicks()) {
      Event& event = add("penalty", kick.cycle, kick.side);
      event.player = kick.taker;
      event.outcome = resultName(kick.result);
    }
  }

  const MatchAnalysis& match_;
  std::vector<Event> events_;
};

}  // namespace

std::vector<Event> eventsOf(const MatchAnalysis& match) {
  return Collector(match).collect();
}

}  // namespace vok::matchreport
