#include "page.h"

#include <algorithm>

#include "assets.h"
#include "pagecharts.h"
#include "pagefields.h"
#include "pagetables.h"
#include "reporttables.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

/// JSON within a script element, which "</script>" in a name must not end.
std::string withinScript(const std::string& json) {
  std::string text;
  for (const char c : json) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

std::string plainName(const MatchAnalysis& all, playing_side side) {
  const std::string& name = all.lastScore().names[side];
  if (name.empty()) return side == SIDE_LEFT ? "left" : "right";
  return name;
}

std::string who(const MatchAnalysis& all, int player) {
  return plainName(all, sideOf(player)) + " " + std::to_string(shirtOf(player));
}

struct Mark {
  int cycle = 0;
  const char* kind = "";
  playing_side side = SIDE_UNKNOWN;
  std::string text;
};

std::string spaced(std::string_view name) {
  std::string text(name);
  std::replace(text.begin(), text.end(), '_', ' ');
  return text;
}

/// What the time line shows.
std::vector<Mark> marksOf(const MatchAnalysis& all, const std::vector<HeardMessage>& messages) {
  std::vector<Mark> marks;
  for (const Goal& goal : all.goals.all()) {
    std::string text = "goal for " + plainName(all, goal.side);
    if (goal.scorer != NONE) text += (goal.own ? ", own goal of " : " by ") + who(all, goal.scorer);
    marks.push_back({goal.cycle, "goal", goal.side, text});
  }
  for (const Shot& shot : all.shots.all()) {
    marks.push_back({shot.cycle, "shot", shot.side(),
                     "shot by " + who(all, shot.player) + ", " +
                         spaced(outcomeName(Shots::outcome(shot, all.goalies())))});
  }
  for (const Card& card : all.presences.cards()) {
    marks.push_back(
        {card.cycle, card.red ? "card red" : "card yellow", sideOf(card.player),
         std::string(card.red ? "red" : "yellow") + " card for " + who(all, card.player)});
  }
  for (const SetPlay& play : all.setPlays.all()) {
    marks.push_back({play.cycle, "set", play.side,
                     spaced(play.kindName()) + " of " + plainName(all, play.side)});
  }
  for (const HeardMessage& heard : messages) {
    marks.push_back(
        {heard.cycle, "say", heard.side, "message of the coach of " + plainName(all, heard.side)});
  }
  return marks;
}

void writeMarks(JsonWriter& json, const std::vector<Mark>& marks) {
  json.key("marks").beginArray();
  for (const Mark& mark : marks) {
    json.beginArray().value(mark.cycle).value(mark.kind).value(sideLetter(mark.side));
    json.value(mark.text).endArray();
  }
  json.endArray();
}

double tenths(double metres) {
  return std::round(10 * metres) / 10;
}

void writeMessage(JsonWriter& json, const HeardMessage& heard) {
  const CoachMessage& said = heard.said;
  json.beginArray().value(heard.cycle).beginObject();
  json.member("side", sideLetter(heard.side)).member("kicker", said.kicker);
  json.key("opponents").beginArray();
  for (const int shirt : {said.lastDefender, said.secondLastDefender}) {
    if (isShirtNumber(shirt)) json.value(shirt);
  }
  json.endArray().key("types").beginArray();
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) json.value(said.otherTypes[shirt]);
  json.endArray().key("places").beginArray();
  const auto place = [&json](const Vector2d& pos) {
    json.value(tenths(pos.x)).value(tenths(pos.y));
  };
  place(said.ball);
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    place(said.ourTeam[shirt]);
    place(said.otherTeam[shirt]);
  }
  json.endArray().endObject().endArray();
}

/// What the replay shows of a player besides what the frames tell.
std::string numbersOf(const MatchAnalysis& all, int player) {
  const PassCounts& passes = all.passes.of(Period::WHOLE, player);
  return shown(all.distances.of(Period::WHOLE, player) / 1000) + " km, " +
         std::to_string(all.actions.of(Period::WHOLE, player).touches) + " touches, " +
         std::to_string(passes.completed) + " of " + std::to_string(passes.tried()) +
         " passes completed, " + std::to_string(all.recoveries.of(Period::WHOLE, player)) +
         " balls won";
}

std::string matchJson(const MatchAnalysis& all, const MatchFilm& film,
                      const std::vector<HeardMessage>& messages) {
  JsonWriter json;
  json.beginObject();
  json.key("teams").beginArray();
  for (const playing_side side : BOTH_SIDES) json.value(plainName(all, side));
  json.endArray();
  json.member("step", all.rules().simulatorStep).member("goal", all.rules().goalWidth);
  json.member("low", all.rules().effortDecThr);
  json.member("frames", film.frames().frames());
  FilmWriter::writeCode(json);
  film.frames().writeChanges(json);
  writeMarks(json, marksOf(all, messages));
  json.key("messages").beginArray();
  for (const HeardMessage& heard : messages) writeMessage(json, heard);
  json.endArray().key("players").beginArray();
  for (int i = 0; i < PLAYERS; ++i) json.value(numbersOf(all, i));
  json.endArray().endObject();
  return json.text();
}

void writeHead(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  const Score& score = all.lastScore();
  out += "<h1>" + teamWithSpot(all, SIDE_LEFT) + " " + std::to_string(score.goals[SIDE_LEFT]) +
         " : " + std::to_string(score.goals[SIDE_RIGHT]) + " " + teamWithSpot(all, SIDE_RIGHT) +
         "</h1>\n<p class='about'>";
  if (score.shootOut) {
    out += "Penalties " + std::to_string(score.penalties[SIDE_LEFT].goals) + " : " +
           std::to_string(score.penalties[SIDE_RIGHT].goals) + ". ";
  }
  out += std::to_string(all.lastCycle()) + " cycles, " +
         std::to_string(all.possession.playCycles(Period::WHOLE)) + " of them in play. From " +
         escaped(match.source) + (match.complete ? "" : ", which is not complete") + ".";
  if (all.inferred()) {
    out += " The source counts no kicks: who touched the ball is inferred from its movement.";
  }
  out += "</p>\n<nav>";
  out += LINKS;
  out +=
      "<a href='#replay' class='player'>Replay</a> <a href='#numbers'>Numbers</a> "
      "<a href='#goals'>Goals</a> <a href='#shots'>Shots</a> <a href='#passes'>Passes</a> "
      "<a href='#formations'>Formations</a> <a href='#time'>Over time</a> "
      "<a href='#setplays'>Set plays</a> <a href='#players'>Players</a></nav>\n";
}

void writeData(std::string& out, const MatchAnalysis& all, const MatchFilm& film,
               const std::vector<HeardMessage>& messages) {
  out += "<script type='application/json' id='match'>";
  out += withinScript(matchJson(all, film, messages));
  out += "</script>\n<script type='text/plain' id='frames'>";
  out += film.frames().packed();
  out += "</script>\n<script>";
  out += REPLAY_JS;
  out += "</script>\n";
}

void writeSections(std::string& out, const Match& match, const MatchFilm& film) {
  const auto section = [&out](const char* id, const char* title, const char* look = "two") {
    out += std::string("<h2 id='") + id + "'>" + title + "</h2>\n<div class='" + look + "'>\n";
  };
  const auto end = [&out] { out += "</div>\n"; };
  section("numbers", "The match in numbers", "one");
  writeSides(out, match);
  writeShootOut(out, match);
  end();
  if (!match.analysis.goals.all().empty()) {
    section("goals", "The way to each goal");
    drawGoals(out, match, film);
    end();
    out +=
        "<p class='about'>The last five touchings before each goal, in the order of the line; "
        "the dashed line is the ball&#39;s way behind the last one.</p>\n";
  }
  section("shots", "Shots");
  drawShots(out, match, film);
  writeShots(out, match);
  end();
  section("passes", "Passes");
  drawNetworks(out, match, film);
  end();
  writeLostBalls(out, match);
  section("formations", "Formations");
  drawFormations(out, match);
  end();
  section("time", "Over time");
  drawPossession(out, match, film);
  drawStamina(out, match, film);
  drawShapes(out, match, film);
  drawTerritory(out, match);
  end();
  section("setplays", "Set plays and offences", "one");
  writeSetPlays(out, match);
  writeOffences(out, match);
  end();
  section("players", "Players", "one");
  writePlayers(out, match);
  end();
  out +=
      "<h3>Where each player was in play</h3>\n<p class='about'>The left team defends the left "
      "goal. Darker: more cycles in the cell of 5 by 4.9 metres.</p>\n<div class='many'>\n";
  drawHeatMaps(out, match);
  end();
}

}  // namespace

void beginPage(std::string& out, const std::string& title) {
  out +=
      "<!DOCTYPE html>\n<html lang='en'>\n<head>\n<meta charset='utf-8'>\n"
      "<meta name='viewport' content='width=device-width, initial-scale=1'>\n"
      "<meta http-equiv='Content-Security-Policy' content=\"default-src 'none'; "
      "script-src 'unsafe-inline'; style-src 'unsafe-inline'\">\n<title>" +
      escaped(title) + "</title>\n<style>\n";
  out.append(PALETTE_CSS).append(PAGE_CSS).append("</style>\n</head>\n<body>\n");
}

std::string matchPage(const Match& match, const MatchFilm& film,
                      const std::vector<HeardMessage>& messages) {
  const MatchAnalysis& all = match.analysis;
  const Score& score = all.lastScore();
  std::string out;
  beginPage(out, plainName(all, SIDE_LEFT) + " " + std::to_string(score.goals[SIDE_LEFT]) + " : " +
                     std::to_string(score.goals[SIDE_RIGHT]) + " " + plainName(all, SIDE_RIGHT));
  writeHead(out, match);
  out += "<p class='unscripted'>The replay needs JavaScript; the report below does not.</p>\n";
  out += REPLAY_HTML;
  // Before the pictures, so that the replay runs as soon as its own part of the page is there.
  writeData(out, all, film, messages);
  defineField(out);
  writeSections(out, match, film);
  out += "</body>\n</html>\n";
  return out;
}

}  // namespace vok::matchreport
