#include "interception.h"

#include <algorithm>
#include <cmath>

#include "constants.h"
#include "movement.h"

namespace vok {

namespace {

/// Of the kickable margin: so far inside the kick range the ball is wanted, for what noise and
/// views get wrong.
constexpr double INSIDE = 0.25;

/// Metres between body and ball that are wanted at least.
constexpr double CLEAR = 0.08;

/// Metres per cycle: for a type that, by what was told of it, cannot run.
constexpr double LEAST_SPEED = 0.001;

/// Cycles after which a body direction tells nothing.
constexpr int BODY_MEMORY = 10;

/// Steps of power in which the last dash is tried.
constexpr double POWER_STEP = 5;

double safeReach(const WPlayer& player) {
  return player.kickRange() - INSIDE * player.kickableMargin;
}

WPlayer facing(const WPlayer& player, const Vector2d& place) {
  WPlayer turned = player;
  if (player.bodyAge > BODY_MEMORY) turned.bodyDir = (place - player.pos).getAngle();
  return turned;
}

/// How far a player can be after each cycle at best, without a turn.
class Sprint {
 public:
  explicit Sprint(const WPlayer& player)
      : player_(player),
        acceleration_(player.dashPowerRate * player.effort * MAXPOWER),
        speed_(player.v.getLength()) {}
  double distance() const { return distance_; }
  void dash() {
    speed_ = std::min(speed_ + acceleration_, std::max(speed_, player_.vmax));
    distance_ += speed_;
    speed_ *= player_.decay;
  }

 private:
  const WPlayer& player_;
  double acceleration_;
  double speed_;
  double distance_ = 0;
};

/// How badly the ball would lie after one dash: how far from the middle of the kick range, and much
/// worse where it would be hit.
double discomfort(const WPlayer& player, const WBall& ball, double power) {
  WPlayer next = player;
  if (power > 0) next.dash(power);
  const double distance = (ball.pos + ball.v - next.pos - next.v).getLength();
  const double touch = player.size + ball.size;
  const double aside = std::fabs(distance - touch - 0.5 * player.kickableMargin);
  return distance < touch + CLEAR ? aside + player.kickableMargin : aside;
}

Command lastDash(const WPlayer& player, const WBall& ball) {
  double best = 0;
  for (double power = POWER_STEP; power <= MAXPOWER; power += POWER_STEP) {
    if (discomfort(player, ball, power) < discomfort(player, ball, best)) best = power;
  }
  return best > 0 ? Command::dash(best) : Command{};
}

/// Full dashes alone bring the ball within reach in `limit` cycles: then a turn to the place of the
/// earliest interception, which may lie a little aside, would be lost.
bool dashesReach(WPlayer runner, WBall ball, double reach, int limit) {
  for (int cycle = 0; cycle < std::min(limit, Interceptor{}.limit); ++cycle) {
    Command::dash(MAXPOWER).simulate(runner);
    ball.simulate();
    if (runner.distTo(ball.pos) <= reach) return true;
  }
  return false;
}

}  // namespace

Interception interception(const WPlayer& player, const WBall& ball, const Interceptor& how) {
  const double reach = (how.reach > 0 ? how.reach : safeReach(player)) +
                       player.vmax * std::clamp(player.age, 0, std::max(0, how.ageAllowance));
  WBall rolling = ball;
  Sprint sprint(player);
  int next = 0;  // before it the player cannot be there, by what the last attempt told
  for (int cycle = 0; cycle <= how.limit && rolling.inField(-BALL_SIZE); ++cycle) {
    if (cycle >= next && player.distTo(rolling.pos) <= reach + sprint.distance()) {
      const int needed = cyclesTo(facing(player, rolling.pos), rolling.pos, reach, how.limit);
      if (needed <= cycle) return {cycle, rolling.pos};
      // The ball can come towards him by its own speed at most.
      const double late = std::min(needed, how.limit + 1) - cycle;
      const double closing = 1 + rolling.v.getLength() / std::max(player.vmax, LEAST_SPEED);
      next = cycle + static_cast<int>(late / closing);
    }
    sprint.dash();
    rolling.simulate();
  }
  return {NEVER, rolling.pos};
}

Command intercept(const WPlayer& player, const WBall& ball) {
  if (player.ballKickable(ball)) return {};
  const Interception meeting = interception(player, ball);
  if (meeting.cycles <= 1) return lastDash(player, ball);
  const double reach = safeReach(player);
  const bool straight = dashesReach(player, ball, reach, meeting.cycles);
  return straight ? Command::dash(MAXPOWER) : dashTo(player, meeting.place, reach, MAXPOWER);
}

}  // namespace vok
