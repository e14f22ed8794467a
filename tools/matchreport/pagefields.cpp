#include "pagefields.h"

#include <algorithm>
#include <cmath>

#include "reporttables.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

std::string at(double x, double y) {
  return shown(x) + " " + shown(y);
}

std::string at(const Vector2d& pos) {
  return at(pos.x, pos.y);
}

bool isPlace(const Vector2d& pos) {
  return std::isfinite(pos.x) && std::isfinite(pos.y);
}

std::string words(std::string_view name) {
  std::string text = escaped(name);
  std::replace(text.begin(), text.end(), '_', ' ');
  return text;
}

void drawLabel(std::string& out, const Vector2d& pos, const std::string& text) {
  out += "<text class='halo' x='" + shown(pos.x) + "' y='" + shown(pos.y) + "'>" + text + "</text>";
}

/// An arrow that tells the direction of attack, for the side's own frame.
void drawAttack(std::string& out) {
  out += "<path class='way' d='M-8 -35h16m-2 -.8l2 .8l-2 .8'/>";
}

// Passes.

struct PassLine {
  int from = 0;
  int to = 0;
  int count = 0;
};

std::vector<PassLine> passLines(const MatchAnalysis& all, playing_side side) {
  constexpr std::size_t SHOWN = 25;
  std::vector<PassLine> lines;
  for (int a = FIRST_SHIRT; a <= LAST_SHIRT; ++a) {
    for (int b = a + 1; b <= LAST_SHIRT; ++b) {
      const int from = playerOf(side, a);
      const int to = playerOf(side, b);
      const int count =
          all.passes.between(Period::WHOLE, from, to) + all.passes.between(Period::WHOLE, to, from);
      if (count > 0) lines.push_back({from, to, count});
    }
  }
  std::stable_sort(lines.begin(), lines.end(),
                   [](const PassLine& a, const PassLine& b) { return a.count > b.count; });
  if (lines.size() > SHOWN) lines.resize(SHOWN);
  return lines;
}

void drawNetwork(std::string& out, const Match& match, const MatchFilm& film, playing_side side) {
  constexpr double THICKEST = 2;      // metres on the pitch
  constexpr std::size_t LABELS = 10;  // lines with their number
  const MatchAnalysis& all = match.analysis;
  const auto place = [&](int player) { return ownFrame(film.meanPlace(player), side); };
  beginField(out, "Who passes to whom: " + teamWithSpot(all, side) + ", attacking to the right");
  drawAttack(out);
  const std::vector<PassLine> lines = passLines(all, side);
  for (const PassLine& line : lines) {
    if (!isPlace(place(line.from)) || !isPlace(place(line.to))) continue;
    const double width = std::max(THICKEST * line.count / lines.front().count, 0.2);
    out += "<path class='link' stroke-width='" + shown(width, 2) + "' d='M" + at(place(line.from)) +
           "L" + at(place(line.to)) + "'/>";
  }
  for (std::size_t i = 0; i < std::min(lines.size(), LABELS); ++i) {
    const Vector2d middle = 0.5 * (place(lines[i].from) + place(lines[i].to));
    if (isPlace(middle)) drawLabel(out, {middle.x, middle.y + 0.9}, std::to_string(lines[i].count));
  }
  int most = 1;
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    most = std::max(most, all.actions.of(Period::WHOLE, playerOf(side, shirt)).touches);
  }
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    const int player = playerOf(side, shirt);
    const double share = static_cast<double>(all.actions.of(Period::WHOLE, player).touches) / most;
    if (isPlace(place(player)))
      drawPlayer(out, place(player), player, 1.8 + 1.2 * std::sqrt(share));
  }
  endPicture(out,
             "Each player at his mean place in play; the larger, the more touches. Lines are the "
             "completed passes between two players, both ways together: the thicker, the more; the "
             "ten thickest have their number.");
}

// Formations.

void drawFormation(std::string& out, const MatchAnalysis& all, playing_side side, Ball ball) {
  const Formation formation = all.formations.of(Period::WHOLE, side, ball, goalieShirt(all, side));
  const bool with = ball == Ball::WITH;
  beginField(out, teamWithSpot(all, side) + (with ? " with the ball: " : " without the ball: ") +
                      escaped(formation.name));
  drawAttack(out);
  for (const Place& place : formation.places) {
    drawPlayer(out, place.pos, playerOf(side, place.shirt));
  }
  endPicture(out, formation.places.empty()
                      ? "No cycles of play to build it on."
                      : "Mean places of the field players while the team " +
                            std::string(with ? "has" : "does not have") +
                            " the ball, attacking to the right. The name counts the lines from the "
                            "back; smallest step between two lines " +
                            shown(formation.separation) + " m.");
}

// Shots.

std::string polyline(const std::vector<Vector2d>& way) {
  std::string path = "M";
  for (std::size_t i = 0; i < way.size(); ++i) path += (i == 0 ? "" : "L") + at(way[i]);
  return path;
}

/// The outcome is the mark's form.
std::string shotMark(const Vector2d& pos, ShotOutcome outcome, const std::string& look) {
  const std::string x = shown(pos.x);
  const std::string y = shown(pos.y);
  const auto circle = [&](const char* radius, const std::string& lookOfIt) {
    return "<circle class='" + lookOfIt + "' cx='" + x + "' cy='" + y + "' r='" + radius + "'/>";
  };
  switch (outcome) {
    case ShotOutcome::GOAL:
      return circle("2.4", "hollow " + look) + circle("1.5", look);
    case ShotOutcome::SAVED:
      return circle("1.2", look);
    case ShotOutcome::BLOCKED:
      return "<path class='" + look + "' d='M" + at(pos.x - 1.1, pos.y - 1.1) + "h2.2v2.2h-2.2z'/>";
    case ShotOutcome::OFF_TARGET:
      return "<path class='cross " + look + "' d='M" + at(pos.x - 1, pos.y - 1) +
             "l2 2m0 -2l-2 2'/>";
    case ShotOutcome::OTHER:
      break;
  }
  return circle("1.2", "hollow " + look);
}

std::string markLegend(ShotOutcome outcome, const char* text) {
  return "<span><svg viewBox='-3 -3 6 6' class='key'>" + shotMark({}, outcome, "l") + "</svg> " +
         text + "</span> ";
}

// Ways of goals.

std::string goalTitle(const MatchAnalysis& all, const Goal& goal, const BySide<int>& score) {
  std::string title = std::to_string(score[SIDE_LEFT]) + " : " + std::to_string(score[SIDE_RIGHT]) +
                      " " + teamWithSpot(all, goal.side);
  if (goal.scorer != NONE) title += " " + std::to_string(shirtOf(goal.scorer));
  if (goal.own) title += " (own goal)";
  const int from = goal.touchings == 0 ? goal.cycle : goal.way[0].cycle;
  return title + ", cycle " + sceneLink(goal.cycle, from - 20);
}

std::string goalLegend(const MatchAnalysis& all, const Goal& goal) {
  std::string text;
  if (goal.setPlay != NONE) {
    const SetPlay& play = all.setPlays.all()[static_cast<std::size_t>(goal.setPlay)];
    if (play.side == goal.side && play.taker != NONE) {
      text +=
          "From a " + words(play.kindName()) + " by " + std::to_string(shirtOf(play.taker)) + ". ";
    }
  }
  if (goal.recovery) {
    text += "Ball won by " + std::to_string(shirtOf(goal.recovery->player())) + " in cycle " +
            sceneLink(goal.recovery->cycle) + ".";
  }
  return text;
}

void drawGoal(std::string& out, const MatchFilm& film, const Goal& goal) {
  for (int i = 0; i + 1 < goal.touchings; ++i) {
    const auto n = static_cast<std::size_t>(i);
    out += "<path class='way arrow' d='M" + at(goal.way[n].place) + "L" +
           at(goal.way[n + 1].place) + "'/>";
  }
  if (goal.touchings > 0) {
    const Touching& last = goal.way[static_cast<std::size_t>(goal.touchings - 1)];
    out += "<path class='way dash' d='" + polyline(film.ballWay(last.cycle)) + "'/>";
  }
  for (int i = 0; i < goal.touchings; ++i) {
    const Touching& touching = goal.way[static_cast<std::size_t>(i)];
    drawPlayer(out, touching.place, touching.players.first());
  }
}

// Cells of the pitch.

constexpr std::size_t SHADES = 5;

/// The cells in a few shades, the darkest for the most frequent: a path for each shade.
void drawCells(std::string& out, const Territory::Cells& cells) {
  constexpr double COLUMN = 5;
  constexpr double ROW = 68.0 / Territory::ROWS;
  const int most = *std::max_element(cells.begin(), cells.end());
  if (most == 0) return;
  std::array<std::string, SHADES> paths;
  for (std::size_t column = 0; column < Territory::COLUMNS; ++column) {
    for (std::size_t row = 0; row < Territory::ROWS; ++row) {
      const int count = cells[column * Territory::ROWS + row];
      if (count == 0) continue;
      // By the root, so that rare cells stay visible beside very frequent ones.
      const double share = std::sqrt(static_cast<double>(count) / most);
      const auto shade = std::min(static_cast<std::size_t>(share * SHADES), SHADES - 1);
      paths[shade] += "M" + shown(-HALF_LENGTH + COLUMN * static_cast<double>(column)) + " " +
                      shown(-HALF_WIDTH + ROW * static_cast<double>(row), 2) + "h5v4.86h-5z";
    }
  }
  for (std::size_t i = 0; i < SHADES; ++i) {
    if (paths[i].empty()) continue;
    out += "<path class='h" + std::to_string(i + 1) + "' d='" + paths[i] + "'/>";
  }
}

void drawLines(std::string& out) {
  out += "<use href='#lines'/>";
}

std::string shadeLegend(const std::string& what) {
  std::string text = "Darker: " + what + " (few ";
  for (std::size_t i = 1; i <= SHADES; ++i) {
    text +=
        "<svg viewBox='0 0 10 10' class='key'>"
        "<rect class='h" +
        std::to_string(i) + "' width='10' height='10'/></svg>";
  }
  return text + " many)";
}

}  // namespace

void defineField(std::string& out) {
  out +=
      "<svg style='position:absolute;width:0;height:0' aria-hidden='true'><defs>"
      "<g id='lines'><path class='lines' d='M-52.5 -34h105v68h-105zM0 -34v68"
      "M9.15 0a9.15 9.15 0 1 1 -18.3 0a9.15 9.15 0 1 1 18.3 0"
      "M-52.5 -20.16h16.5v40.32h-16.5M52.5 -20.16h-16.5v40.32h16.5"
      "M-52.5 -9.16h5.5v18.32h-5.5M52.5 -9.16h-5.5v18.32h5.5"
      "M-36 -7.31a9.15 9.15 0 0 1 0 14.62M36 -7.31a9.15 9.15 0 0 0 0 14.62"
      "M-52.5 -7.01h-2v14.02h2M52.5 -7.01h2v14.02h-2'/></g>"
      "<g id='field'><rect class='field' x='-55' y='-36' width='110' height='72'/>"
      "<use href='#lines'/></g>"
      // Its tip is at the edge of a player's disc in which the line ends.
      "<marker id='arrow' markerUnits='userSpaceOnUse' viewBox='0 0 2 2' refX='4.2' refY='1' "
      "markerWidth='2' markerHeight='2' orient='auto'><path d='M0 0l2 1l-2 "
      "1z'/></marker></defs></svg>\n";
}

void drawNetworks(std::string& out, const Match& match, const MatchFilm& film) {
  for (const playing_side side : BOTH_SIDES) drawNetwork(out, match, film, side);
}

void drawFormations(std::string& out, const Match& match) {
  for (const playing_side side : BOTH_SIDES) {
    for (const Ball ball : BOTH_BALLS) drawFormation(out, match.analysis, side, ball);
  }
}

void drawShots(std::string& out, const Match& match, const MatchFilm& film) {
  const MatchAnalysis& all = match.analysis;
  beginField(out, "Shots: " + teamWithSpot(all, SIDE_LEFT) + " to the right, " +
                      teamWithSpot(all, SIDE_RIGHT) + " to the left");
  for (const Shot& shot : all.shots.all()) {
    const std::vector<Vector2d> way = film.ballWay(shot.cycle);
    if (way.empty()) continue;
    out += "<a href='#t=" + std::to_string(std::max(shot.cycle - 20, 0)) + "'><title>cycle " +
           std::to_string(shot.cycle) + ", number " + std::to_string(shirtOf(shot.player)) +
           "</title><path class='way" + (shot.side() == SIDE_LEFT ? "" : " dash") + "' d='" +
           polyline({way.front(), way.back()}) + "'/>" +
           shotMark(way.front(), Shots::outcome(shot, all.goalies()), classOf(shot.side())) +
           "</a>";
  }
  endPicture(out,
             "A mark where the ball was when it was shot, and a line to where it was touched "
             "next or left the pitch (dashed for " +
                 teamName(all, SIDE_RIGHT) + "): " + markLegend(ShotOutcome::GOAL, "goal") +
                 markLegend(ShotOutcome::SAVED, "saved") +
                 markLegend(ShotOutcome::BLOCKED, "blocked") +
                 markLegend(ShotOutcome::OFF_TARGET, "off target") +
                 markLegend(ShotOutcome::OTHER, "other"));
}

void drawGoals(std::string& out, const Match& match, const MatchFilm& film) {
  BySide<int> score;
  for (const Goal& goal : match.analysis.goals.all()) {
    ++score[goal.side];
    beginField(out, goalTitle(match.analysis, goal, score));
    drawGoal(out, film, goal);
    endPicture(out, goalLegend(match.analysis, goal));
  }
}

void drawTerritory(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  beginField(out, "Where the ball was in play: " + teamWithSpot(all, SIDE_LEFT) +
                      " defends the left goal");
  drawCells(out, all.territory.ball(Period::WHOLE));
  drawLines(out);
  const int cycles = all.possession.playCycles(Period::WHOLE);
  for (std::size_t i = 0; i < Territory::THIRDS; ++i) {
    const double share =
        cycles == 0 ? ABSENT : static_cast<double>(all.territory.thirds(Period::WHOLE)[i]) / cycles;
    drawLabel(out, {-35 + 35 * static_cast<double>(i), -30}, percentage(share) + " %");
  }
  out += "<path class='way dash' d='M-17.5 -34v68M17.5 -34v68'/>";
  endPicture(out, shadeLegend("more cycles with the ball in the cell of 5 by 4.9 metres") +
                      ". The shares are those of the thirds of the pitch.");
}

void drawHeatMaps(std::string& out, const Match& match) {
  const MatchAnalysis& all = match.analysis;
  for (int i = 0; i < PLAYERS; ++i) {
    if (!all.presences.of(Period::WHOLE, i).ever) continue;
    beginField(out, teamWithSpot(all, sideOf(i)) + " " + std::to_string(shirtOf(i)));
    drawCells(out, all.territory.player(Period::WHOLE, i));
    drawLines(out);
    endPicture(out, {});
  }
}

}  // namespace vok::matchreport
