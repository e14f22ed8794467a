// The prediction of one cycle, in the order of the simulator: our own command takes effect, then
// everything moves, we collide with the ball, stamina recovers, and all ages grow by a cycle. Of
// the other players no command is known: they keep their velocity, slowed by their decay.
#include <algorithm>

#include "constants.h"
#include "playmodes.h"
#include "worldmodel.h"

namespace vok {

namespace {

/// Metres. A caught ball is put where it touches the goalie; rounding must not make that a
/// collision.
constexpr double TOUCH = 1e-9;

}  // namespace

void Worldmodel::simCycle() {
  oldBallRelpos = ball.pos - my.pos;
  oldMy = my;
  applyAction();
  moveAll();
  collideWithBall();
  simStamina();
  if (my.number > 0) driftSights();
  ageAll();
  if (isShirtNumber(my.number)) ourTeam[my.number] = my;
}

void Worldmodel::applyAction() {
  if (my.cyclesSinceTackle > TACKLE_CYCLES) {
    switch (action.command) {
      case DASH_COMMAND:
        dash();
        break;
      case TURN_COMMAND:
        my.turn(action.moment);
        break;
      case KICK_COMMAND:
        my.kick(ball, action.power, action.moment);
        break;
      case CATCH_COMMAND:
        catchBall();
        break;
      case MOVE_COMMAND:
        move();
        break;
      case TACKLE_COMMAND:
        my.cyclesSinceTackle = 0;
        break;
      default:
        break;
    }
  }
  action = {};
}

void Worldmodel::dash() {
  my.dash(action.power);
  const bool carries = my.isGoalie == GOALIE_TRUE && playMode == PLAY_MODE_FREE_KICK_US;
  if (carries && my.ballKickable(ball)) ball.pos += my.v;
}

void Worldmodel::catchBall() {
  if (my.isGoalie != GOALIE_TRUE || cyclesSinceCatch <= CATCH_BAN_CYCLES) return;
  cyclesSinceCatch = 0;
  if (!my.ballCatchable(ball, action.moment)) return;
  const double direction = (ball.pos - my.pos).getAngle();
  ball.pos = my.pos + my.v + polar(BALL_SIZE + my.size, direction);
  ball.v = {};
}

void Worldmodel::move() {
  const Vector2d offset = action.pos - my.pos;
  if (playMode == PLAY_MODE_FREE_KICK_US) {
    if (my.isGoalie != GOALIE_TRUE) return;
    if (my.ballKickable(ball)) ball.pos += offset;
  } else if (!allowsPlacing(playMode)) {
    return;
  }
  my.pos = action.pos;
  my.v = {};
}

void Worldmodel::moveAll() {
  my.simulate();
  ball.simulate();
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (my.number > 0) {
      ourTeam[n].acc(ourTeam[n].push);
      otherTeam[n].acc(otherTeam[n].push);
    }
    ourTeam[n].simulate();
    otherTeam[n].simulate();
  }
}

void Worldmodel::collideWithBall() {
  collState = CollisionState::NONE;
  if (my.number <= 0) return;
  const double range = my.size + BALL_SIZE;
  const double dist = my.distTo(ball.pos);
  if (dist >= range - TOUCH) return;

  const double direction = dist > 0 ? (ball.pos - my.pos).getAngle() : double(my.bodyDir);
  const Vector2d middle = 0.5 * (my.pos + ball.pos);
  const Vector2d half = polar(0.5 * range * 1.0001, direction);
  my.pos = middle - half;
  ball.pos = middle + half;
  my.v *= -0.1;
  ball.v *= -0.1;
}

void Worldmodel::simStamina() {
  if (my.number > 0) my.recover();

  // Cautious estimates: our players are assumed to dash at full power all the time, theirs to rest.
  const double tired = EFFORT_DEC_THR * STAMINA_MAX;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    WPlayer& ours = ourTeam[n];
    WPlayer& theirs = otherTeam[n];
    ours.stamina =
        std::max(tired, std::min(STAMINA_MAX, ours.stamina + ours.staminaIncMax - MAXPOWER));
    theirs.stamina = std::min(STAMINA_MAX, theirs.stamina + theirs.staminaIncMax);
  }
}

void Worldmodel::ageAll() {
  ageOneCycle(my.age);
  ageOneCycle(my.cyclesSinceTackle);
  ageOneCycle(ball.age);
  ageOneCycle(ourGoal.age);
  ageOneCycle(otherGoal.age);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    for (WPlayer* player : {&ourTeam[n], &otherTeam[n]}) {
      ageOneCycle(player->age);
      ageOneCycle(player->bodyAge);
      ageOneCycle(player->cyclesSinceTackle);
    }
  }
  for (std::size_t i = 0; i < vAge.size(); ++i) {
    ageOneCycle(vAge[i]);
    ageOneCycle(aOppAge[i]);
    ageOneCycle(aOurAge[i]);
  }
  ageOneCycle(visualAge);
  ageOneCycle(cyclesSinceCatch);
  ageOneCycle(cyclesSincePointTo);
}

}  // namespace vok
