#include "settled.h"

#include <algorithm>
#include <cmath>

namespace vok::formationview {
namespace {

constexpr double GUARD = 15;         // metres between the ball and the opponents' back line
constexpr int MAX_CYCLES = 1000;     // the longest movement, 44 m of the back line, takes 177
constexpr int OFFSIDE_MAX_AGE = 20;  // cycles; the value that the positions use

bool samePlaces(const PositionEval& eval, const std::array<PlayerPos, 10>& places) {
  return std::equal(
      places.begin(), places.end(), eval.RealPositions.begin(),
      [](const PlayerPos& a, const PlayerPos& b) { return a.Pos == b.Pos && a.Area == b.Area; });
}

/// The last but one opponent makes the offside line. The others were never seen and do not count.
SensorData viewOf(Vector2d ball, double line) {
  SensorData view;
  view.type = SENSOR_TYPE_EXACT;
  view.exactball.valid = true;
  view.exactball.x = ball.x;
  view.exactball.y = ball.y;
  for (const int n : {1, 2}) {
    ExactPlayer& opponent = view.exactplayer[static_cast<std::size_t>(n)];
    opponent.valid = true;
    opponent.team = TEAM_THEM;
    opponent.number = n;
    opponent.x = line;
  }
  return view;
}

bool isFinite(Vector2d v) {
  return std::isfinite(v.x) && std::isfinite(v.y);
}

}  // namespace

Pitch::Pitch() : world_(nullptr), tactical_(&world_, nullptr), eval_(nullptr, nullptr) {
  world_.adjustTacticalNumbers(1);
}

std::optional<SettledTeam> Pitch::settle(Vector2d ball, std::optional<double> offside) {
  const double line = offside.value_or(std::clamp(ball.x + GUARD, 0.0, PENALTY_AREA_X));
  runUntilSettled(viewOf(ball, line));

  SettledTeam team{{}, eval_.GetMinX(), eval_.GetMaxX(), world_.ourOffsideLine(OFFSIDE_MAX_AGE)};
  for (int n = 2; n <= LAST_SHIRT; ++n) {
    SettledPlace place = {n, roleOf(n), eval_.GetPlayerPosition(&world_, n), {}, {}};
    eval_.GetPlayerArea(&world_, n, place.lo, place.hi);
    if (!isFinite(place.pos) || !isFinite(place.lo) || !isFinite(place.hi)) return std::nullopt;
    team.places.push_back(place);
  }
  return team;
}

/// Band and ball factors move step by step. Once all places stay for one cycle they stay for good.
void Pitch::runUntilSettled(const SensorData& view) {
  SensorData next = view;
  ServerState state;
  state.mode = PLAY_MODE_PLAY_ON;
  for (int cycle = 0; cycle < MAX_CYCLES; ++cycle) {
    const std::array<PlayerPos, 10> before = eval_.RealPositions;
    const double bandBefore = eval_.GetMinX();
    next.time = world_.time + 1;
    world_.adjust(next, state);
    eval_.CalMinMaxX(&world_);
    eval_.CalPlayerPositions(&world_);
    if (eval_.GetMinX() == bandBefore && samePlaces(eval_, before)) return;
  }
}

Role Pitch::roleOf(int n) const {
  if (tactical_.ourTeamDefender(n)) return Role::DEFENCE;
  return tactical_.ourTeamMidfield(n) ? Role::MIDFIELD : Role::ATTACK;
}

}  // namespace vok::formationview
