#include "jsonreport.h"

#include "jsonwriter.h"
#include "reporttables.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

int shirtOrNone(int player) {
  return player == NONE ? NONE : shirtOf(player);
}

/// Writes the report's parts. The functions are in the order of the output.
class Report {
 public:
  explicit Report(const Match& match) : match_(match), all_(match.analysis) {}

  std::string write() {
    json_.beginObject();
    writeMatch();
    writeTables(Period::WHOLE);
    writeShootOut();
    writeTextLog();
    writeHalves();
    json_.endObject();
    return json_.text();
  }

 private:
  void writeMatch() {
    const Score& score = all_.lastScore();
    json_.key("match").beginObject();
    json_.member("key", match_.key);
    json_.member("left", score.names[SIDE_LEFT]).member("right", score.names[SIDE_RIGHT]);
    json_.key("score").beginArray();
    json_.value(score.goals[SIDE_LEFT]).value(score.goals[SIDE_RIGHT]).endArray();
    writePenalties(score);
    json_.member("cycles", all_.cycles(Period::WHOLE));
    json_.member("play_cycles", all_.possession.playCycles(Period::WHOLE));
    json_.member("complete", match_.complete).member("source", match_.source);
    json_.member("inferred", all_.inferred());
    json_.endObject();
  }

  void writePenalties(const Score& score) {
    json_.key("penalties");
    if (!score.shootOut) {
      json_.null();
      return;
    }
    json_.beginArray();
    for (const playing_side side : BOTH_SIDES) {
      const Penalties& penalties = score.penalties[side];
      json_.beginArray().value(penalties.goals).value(penalties.misses).endArray();
    }
    json_.endArray();
  }

  /// What exists for the whole match and for each half.
  void writeTables(Period period) {
    json_.key("sides").beginObject();
    for (const playing_side side : BOTH_SIDES) writeSide(period, side);
    json_.endObject();
    json_.key("players").beginArray();
    for (int i = 0; i < PLAYERS; ++i) writePlayer(period, i);
    json_.endArray();
    writeNetwork(period);
    writeTerritory(period);
    writeShots(period);
    writeGoals(period);
    writeSetPlays(period);
    writeDribbles(period);
    writeRecoveries(period);
    writeEntries(period);
    writeCards(period);
    writeCalls("fouls", all_.faults, period);
    writeCalls("offsides", all_.offsides, period);
    writeSubstitutions(period);
  }

  /// What happened in the period or, of the whole match, at all.
  static bool isIn(Period period, Period happened) {
    return period == Period::WHOLE || period == happened;
  }
  bool isIn(Period period, int cycle) const { return isIn(period, periodOf(cycle, all_.rules())); }

  void writeSide(Period period, playing_side side) {
    const SideCounts counts = sideCounts(all_, period, side);
    json_.key(sideLetter(side)).beginObject();
    json_.member("goalie", goalieShirt(all_, side));
    json_.member("possession_cycles", all_.possession.cycles(period, side));
    json_.member("possession", all_.possession.share(period, side));
    json_.member("touches", counts.actions.touches);
    writePasses(counts.passes);
    json_.key("shots").beginObject();
    json_.member("total", counts.shots.total).member("on_target", counts.shots.onTarget);
    json_.member("goals", counts.shots.goals).endObject();
    json_.member("distance", all_.distances.of(period, side));
    json_.member("entries", all_.entries.of(period, side));
    writeFormations(period, side);
    writeShapes(period, side);
    json_.endObject();
  }

  void writePasses(const PassCounts& passes) {
    json_.key("passes").beginObject();
    json_.member("completed", passes.completed).member("intercepted", passes.intercepted);
    json_.member("out", passes.out).endObject();
  }

  static std::string_view nameOf(Ball ball) {
    return ball == Ball::WITH ? "with_ball" : "without_ball";
  }

  void writeFormations(Period period, playing_side side) {
    json_.key("formation").beginObject();
    for (const Ball ball : BOTH_BALLS) {
      const Formation formation = all_.formations.of(period, side, ball, goalieShirt(all_, side));
      json_.key(nameOf(ball)).beginObject();
      json_.member("name", formation.name).member("separation", formation.separation);
      json_.key("places").beginArray();
      for (const Place& place : formation.places) {
        json_.beginObject().member("number", place.shirt);
        json_.member("x", place.pos.x).member("y", place.pos.y).endObject();
      }
      json_.endArray().endObject();
    }
    json_.endObject();
  }

  void writeShapes(Period period, playing_side side) {
    json_.key("shape").beginObject();
    for (const Ball ball : BOTH_BALLS) {
      const Shape shape = all_.shapes.of(period, side, ball, goalieShirt(all_, side));
      json_.key(nameOf(ball)).beginObject();
      json_.member("length", shape.length).member("width", shape.width);
      json_.member("hull_area", shape.hullArea).member("x", shape.x).member("y", shape.y);
      json_.member("last_line", shape.lastLine).endObject();
    }
    json_.endObject();
  }

  void writeWho(int player) {
    json_.member("side", sideLetter(sideOf(player))).member("number", shirtOf(player));
  }

  void writePlayer(Period period, int player) {
    const ActionCounts& actions = all_.actions.of(period, player);
    json_.beginObject();
    writeWho(player);
    json_.member("touches", actions.touches);
    json_.member("distance", all_.distances.of(period, player));
    writePasses(all_.passes.of(period, player));
    json_.member("dribbles", all_.dribbles.of(period, player));
    json_.member("recoveries", all_.recoveries.of(period, player));
    json_.member("catches", actions.catches);
    json_.key("tackles").beginObject().member("tried", actions.tacklesTried);
    json_.member("won", actions.tacklesWon).endObject();
    json_.key("kick_faults").valueOrNull(all_.inferred() ? NONE : actions.kickFaults);
    writeStamina(period, player);
    writePresence(period, player);
    writeCommands(period, player);
    writeCells("heat_map", all_.territory.player(period, player), [](int n) { return n; });
    json_.endObject();
  }

  void writeStamina(Period period, int player) {
    const StaminaTable& table = all_.staminas.of(period, player);
    json_.key("stamina").beginObject();
    const bool isLater = period == Period::SECOND_HALF || period == Period::EXTRA_TIME;
    json_.member("half_time", isLater ? ABSENT : all_.staminas.of(Period::FIRST_HALF, player).left);
    json_.member("end", table.left).member("minimum", table.least);
    json_.key("low_cycles").valueOrNull(isAbsent(table.left) ? NONE : table.lowCycles);
    json_.member("effort", table.leastEffort);
    json_.member("recovery", table.leastRecovery).member("capacity", table.capacity);
    json_.endObject();
  }

  void writePresence(Period period, int player) {
    json_.key("types").beginArray();
    for (const TypeFrom& type : all_.presences.types(player)) {
      if (!isIn(period, type.period)) continue;
      json_.beginObject().member("from", type.cycle).member("type", type.type).endObject();
    }
    json_.endArray().key("presence");
    const Presence& presence = all_.presences.of(period, player);
    if (!presence.ever) {
      json_.null();
      return;
    }
    json_.beginObject().member("first", presence.span.first).member("last", presence.span.last);
    json_.key("absent").beginArray();
    for (const Span& span : presence.away) writeSpan(span);
    json_.endArray().endObject();
  }

  void writeSpan(const Span& span) {
    json_.beginArray().value(span.first).value(span.last).endArray();
  }

  void writeCommands(Period period, int player) {
    json_.key("silent").beginArray();
    for (const Span& span : all_.silences.of(player)) {
      if (isIn(period, span.first)) writeSpan(span);
    }
    json_.endArray();
    const BodyCommands* const commands = match_.clients ? &match_.clients->commands() : nullptr;
    json_.key("holes").valueOrNull(commands ? commands->holes(period, player) : NONE);
    json_.key("doubles").valueOrNull(commands ? commands->doubles(period, player) : NONE);
  }

  void writeNetwork(Period period) {
    json_.key("passes").beginArray();
    for (int from = 0; from < PLAYERS; ++from) {
      for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
        const int count = all_.passes.between(period, from, playerOf(sideOf(from), shirt));
        if (count == 0) continue;
        json_.beginObject().member("side", sideLetter(sideOf(from)));
        json_.member("from", shirtOf(from)).member("to", shirt).member("count", count);
        json_.endObject();
      }
    }
    json_.endArray();
  }

  void writeTerritory(Period period) {
    const int cycles = all_.possession.playCycles(period);
    json_.key("territory").beginObject().key("thirds").beginArray();
    for (const int inThird : all_.territory.thirds(period)) {
      json_.value(cycles == 0 ? ABSENT : static_cast<double>(inThird) / cycles);
    }
    json_.endArray();
    writeCells("cells", all_.territory.ball(period),
               [cycles](int n) { return cycles == 0 ? ABSENT : static_cast<double>(n) / cycles; });
    json_.endObject();
  }

  /// A column in x after the other.
  template <typename Shown>
  void writeCells(std::string_view name, const Territory::Cells& cells, Shown shown) {
    json_.key(name).beginArray();
    for (std::size_t column = 0; column < Territory::COLUMNS; ++column) {
      json_.beginArray();
      for (std::size_t row = 0; row < Territory::ROWS; ++row) {
        json_.value(shown(cells[column * Territory::ROWS + row]));
      }
      json_.endArray();
    }
    json_.endArray();
  }

  void writeShots(Period period) {
    json_.key("shots").beginArray();
    for (const Shot& shot : all_.shots.all()) {
      if (!isIn(period, shot.period)) continue;
      json_.beginObject().member("cycle", shot.cycle);
      writeWho(shot.player);
      json_.member("on_target", shot.onTarget);
      json_.member("outcome", outcomeName(Shots::outcome(shot, all_.goalies())));
      json_.endObject();
    }
    json_.endArray();
  }

  void writeTouching(const Touching& touching) {
    json_.beginObject().member("cycle", touching.cycle).key("players").beginArray();
    for (int i = 0; i < PLAYERS; ++i) {
      if (!touching.players.has(i)) continue;
      json_.beginObject();
      writeWho(i);
      json_.endObject();
    }
    json_.endArray().member("x", touching.place.x).member("y", touching.place.y).endObject();
  }

  void writeGoals(Period period) {
    json_.key("goals").beginArray();
    for (const Goal& goal : all_.goals.all()) {
      if (!isIn(period, goal.period)) continue;
      json_.beginObject().member("cycle", goal.cycle).member("side", sideLetter(goal.side));
      json_.key("number").valueOrNull(shirtOrNone(goal.scorer));
      json_.member("own", goal.own).key("way").beginObject().key("touchings").beginArray();
      for (int i = 0; i < goal.touchings; ++i) writeTouching(goal.way[static_cast<std::size_t>(i)]);
      json_.endArray().key("set_play");
      writeSetPlayOf(goal);
      json_.key("recovery");
      if (goal.recovery) {
        writeRecovery(*goal.recovery);
      } else {
        json_.null();
      }
      json_.endObject().endObject();
    }
    json_.endArray();
  }

  void writeRecovery(const Touching& recovery) {
    json_.beginObject().member("cycle", recovery.cycle);
    writeWho(recovery.player());
    json_.member("x", recovery.place.x).member("y", recovery.place.y).endObject();
  }

  /// The one that led to a goal, if its side took it.
  void writeSetPlayOf(const Goal& goal) {
    const SetPlay* const play = goal.setPlay == NONE
                                    ? nullptr
                                    : &all_.setPlays.all()[static_cast<std::size_t>(goal.setPlay)];
    if (play == nullptr || play->side != goal.side || play->taker == NONE) {
      json_.null();
      return;
    }
    json_.beginObject().member("cycle", play->cycle).member("kind", play->kindName());
    json_.member("taker", shirtOf(play->taker)).endObject();
  }

  void writeSetPlays(Period period) {
    json_.key("set_plays").beginArray();
    for (const SetPlay& play : all_.setPlays.all()) {
      if (!isIn(period, play.period)) continue;
      json_.beginObject().member("cycle", play.cycle).member("side", sideLetter(play.side));
      json_.member("kind", play.kindName()).key("taker").valueOrNull(shirtOrNone(play.taker));
      json_.key("second");
      if (play.second == NONE) {
        json_.null();
      } else {
        json_.beginObject();
        writeWho(play.second);
        json_.endObject();
      }
      json_.key("outcome").valueOrNull(outcomeName(SetPlays::outcome(play, all_.shots)));
      json_.endObject();
    }
    json_.endArray();
  }

  void writeShootOut() {
    json_.key("shoot_out").beginArray();
    for (const PenaltyKick& kick : all_.shootOut.kicks()) {
      json_.beginObject().member("cycle", kick.cycle).member("side", sideLetter(kick.side));
      json_.key("number").valueOrNull(shirtOrNone(kick.taker));
      json_.key("result").valueOrNull(resultName(kick.result)).endObject();
    }
    json_.endArray();
  }

  void writeDribbles(Period period) {
    json_.key("dribbles").beginArray();
    for (const Dribble& dribble : all_.dribbles.all()) {
      if (!isIn(period, dribble.period)) continue;
      json_.beginObject().member("cycle", dribble.cycle);
      writeWho(dribble.player);
      json_.member("touches", dribble.touchings).endObject();
    }
    json_.endArray();
  }

  void writeRecoveries(Period period) {
    json_.key("recoveries").beginArray();
    for (const Touching& recovery : all_.recoveries.all()) {
      if (isIn(period, recovery.period)) writeRecovery(recovery);
    }
    json_.endArray();
  }

  void writeEntries(Period period) {
    json_.key("entries").beginArray();
    for (const Entry& entry : all_.entries.all()) {
      if (!isIn(period, entry.period)) continue;
      json_.beginObject().member("cycle", entry.cycle);
      json_.member("side", sideLetter(entry.side)).endObject();
    }
    json_.endArray();
  }

  void writeCards(Period period) {
    json_.key("cards").beginArray();
    for (const Card& card : all_.presences.cards()) {
      if (!isIn(period, card.cycle)) continue;
      json_.beginObject().member("cycle", card.cycle);
      writeWho(card.player);
      json_.member("card", card.red ? "red" : "yellow").endObject();
    }
    json_.endArray();
  }

  void writeCalls(std::string_view name, const std::vector<Call>& calls, Period period) {
    json_.key(name).beginArray();
    for (const Call& call : calls) {
      if (!isIn(period, call.cycle)) continue;
      json_.beginObject().member("cycle", call.cycle).member("side", sideLetter(call.side));
      json_.member("kind", kindName(call.kind)).endObject();
    }
    json_.endArray();
  }

  void writeSubstitutions(Period period) {
    json_.key("substitutions").beginArray();
    for (int i = 0; i < PLAYERS; ++i) {
      const std::vector<TypeFrom>& types = all_.presences.types(i);
      for (std::size_t n = 1; n < types.size(); ++n) {
        if (!isIn(period, types[n].period)) continue;
        json_.beginObject().member("cycle", types[n].cycle);
        writeWho(i);
        json_.member("old_type", types[n - 1].type).member("new_type", types[n].type).endObject();
      }
    }
    json_.endArray();
  }

  void writeTextLog() {
    json_.key("text_log");
    if (!match_.clients) {
      json_.null();
      return;
    }
    json_.beginObject().member("source", match_.clients->source());
    json_.key("coach_messages").beginArray();
    for (const CoachSaid& said : match_.clients->said()) writeMessage(said);
    json_.endArray().key("type_requests").beginArray();
    for (const TypeRequest& request : match_.clients->requests()) {
      json_.beginObject().member("cycle", request.cycle).member("side", sideLetter(request.side));
      json_.member("number", request.shirt).member("type", request.type);
      json_.member("granted", request.granted).endObject();
    }
    json_.endArray().endObject();
  }

  void writeMessage(const CoachSaid& said) {
    json_.beginObject().member("cycle", said.cycle).member("side", sideLetter(said.side));
    json_.member("text", said.text).key("told");
    if (!said.told) {
      json_.null().endObject();
      return;
    }
    const CoachMessage& told = *said.told;
    json_.beginObject().key("kicker").valueOrNull(told.kicker);
    json_.key("opponents").beginArray();
    for (const int shirt : {told.lastDefender, told.secondLastDefender}) {
      if (shirt != 0) json_.value(shirt);
    }
    json_.endArray().key("our_goalie").valueOrNull(told.ourGoalie);
    json_.key("their_goalie").valueOrNull(told.otherGoalie);
    json_.key("their_types").beginArray();
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) json_.valueOrNull(told.otherTypes[n]);
    json_.endArray();
    writePlaces("our_team", told.ourTeam);
    writePlaces("their_team", told.otherTeam);
    json_.key("ball").beginArray().value(told.ball.x).value(told.ball.y).endArray();
    json_.endObject().endObject();
  }

  /// By shirt number.
  void writePlaces(std::string_view name, const Squad<Vector2d>& places) {
    json_.key(name).beginArray();
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      json_.beginArray().value(places[n].x).value(places[n].y).endArray();
    }
    json_.endArray();
  }

  void writeHalves() {
    json_.key("by_half").beginObject();
    for (const Period period : {Period::FIRST_HALF, Period::SECOND_HALF, Period::EXTRA_TIME}) {
      if (!hasPeriod(all_, period)) continue;
      json_.key(periodName(period)).beginObject();
      json_.member("cycles", all_.cycles(period));
      json_.member("play_cycles", all_.possession.playCycles(period));
      writeTables(period);
      json_.endObject();
    }
    json_.endObject();
  }

  const Match& match_;
  const MatchAnalysis& all_;
  JsonWriter json_;
};

}  // namespace

std::string jsonReport(const Match& match) {
  return Report(match).write();
}

}  // namespace vok::matchreport
