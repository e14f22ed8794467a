// Where to stand without the ball.
#include <VOK/constants.h>
#include <VOK/playmodes.h>

#include <algorithm>
#include <cmath>

#include "player.h"

using namespace vok;

namespace {

// Metres, but for what is called cycles.
constexpr double ONSIDE_GAP = 1.0;      ///< to the offside line
constexpr double IN_PLACE = 1.0;        ///< from a place that count as being there
constexpr double CLEAR_OF_BALL = 10.0;  ///< of a ball that is theirs to kick
constexpr double IN_OWN_HALF = -0.6;    ///< x at a kick-off
constexpr int KNOWN = 15;               ///< cycles since an opponent was seen who is guarded
constexpr double GUARD_RADIUS = 9.0;    ///< from the place in which opponents are guarded
constexpr double GUARD_DISTANCE = 1.5;  ///< goalwards of a guarded opponent
constexpr double GUARD_UNTIL = -15;     ///< x of the ball up to which opponents are guarded
constexpr double AHEAD_OF_BALL = 10.0;  ///< opponents farther ahead are guarded later
constexpr double SPRINT_WAY = 10.0;     ///< to the place, that makes everybody run
constexpr double JOG = 50;              ///< dash power
constexpr double TIRED = 0.45;          ///< share of the stamina; the effort falls below 0.3
constexpr double WALK = 25;             ///< dash power of the tired

Vector2d clearOf(const Vector2d& centre, const Vector2d& place) {
  Vector2d way = place - centre;
  if (way.getLength() >= CLEAR_OF_BALL) return place;
  if (way.getLength() < 0.1) way = {-1, 0};
  return centre + way.stretch(CLEAR_OF_BALL);
}

bool isDefensive(const Player& player) {
  const int number = player.me().number;
  return player.tactics.ourTeamDefender(number) || player.tactics.ourTeamDefMidfield(number);
}

/// The opponent near our place who is nearest to our goal and has nobody of ours nearer than us.
const WPlayer* opponentToGuard(const Player& player, const Vector2d& place) {
  const Worldmodel& world = player.world;
  const WPlayer* chosen = nullptr;
  for (const WPlayer& opponent : world.otherTeam) {
    if (opponent.age > KNOWN || opponent.isGoalie == GOALIE_TRUE) continue;
    if (opponent.distTo(place) > GUARD_RADIUS) continue;
    if (opponent.pos.x > world.ball.pos.x + AHEAD_OF_BALL) continue;
    if (world.ourTeamClosestTo(opponent.pos, KNOWN, 1) != world.my.number) continue;
    if (chosen == nullptr || opponent.pos.x < chosen->pos.x) chosen = &opponent;
  }
  return chosen;
}

/// Who is behind the ball and not far from his place saves his strength.
double positioningPower(const Player& player, double distance) {
  const Worldmodel& world = player.world;
  if (world.my.stamina < TIRED * STAMINA_MAX) return WALK;
  const bool passedBy = world.my.pos.x > world.ball.pos.x && isDefensive(player);
  const double power = passedBy || distance > SPRINT_WAY ? MAXPOWER : JOG;
  return sparingPower(world.my, power);
}

}  // namespace

Vector2d home(const Player& player) {
  const Worldmodel& world = player.world;
  const play_mode mode = player.mode();
  if (player.isGoalie()) return {-HALF_LENGTH + 3, 0};
  Vector2d place = player.places.GetPlayerPosition(&world, world.my.number);
  if (isInOwnHalves(mode)) {
    place.x = std::min(place.x, IN_OWN_HALF);
    if (!player.memory.kickOffIsOurs) place = clearOf({0, 0}, place);
    return place;
  }
  place.x = std::min(place.x, world.ourOffsideLine(KNOWN) - ONSIDE_GAP);
  if (playmodeTeam(mode) == TEAM_THEM) place = clearOf(world.ball.pos, place);
  return place;
}

Command takePlace(const Player& player) {
  const Vector2d place = home(player);
  if (player.me().distTo(place) > IN_PLACE) return Command::move(place);
  return turnTo(player.me(), {0, 0});
}

Command holdPlace(const Player& player) {
  const Worldmodel& world = player.world;
  Vector2d place = home(player);
  if (isDefensive(player) && player.mode() == PLAY_MODE_PLAY_ON && world.ball.pos.x < GUARD_UNTIL) {
    if (const WPlayer* opponent = opponentToGuard(player, place)) {
      const Vector2d goal(-HALF_LENGTH, 0);
      place = opponent->pos + (goal - opponent->pos).stretch(GUARD_DISTANCE);
    }
  }
  // Far from the ball small corrections only cost strength.
  const double reach = std::clamp(world.my.distTo(world.ball.pos) / 15, IN_PLACE, 3.0);
  const double power = positioningPower(player, world.my.distTo(place));
  const Command step = dashTo(world.my, place, reach, power);
  return step.isNone() ? turnTo(world.my, world.ball.pos, toRadians(20)) : step;
}

Command searchBall(const Player& player) {
  // A view is 90 degrees wide and the neck turns as well.
  constexpr double QUARTER = PI / 2;
  return Command::turn(turnMoment(player.me(), QUARTER));
}
