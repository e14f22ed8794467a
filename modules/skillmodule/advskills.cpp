#include "advskills.h"

#include <algorithm>

#include "Config.h"
#include "constants.h"

namespace vok {

namespace {

/// Cycles after which an opponent's place says nothing of who comes to the ball first.
constexpr int OPPONENT_MEMORY = 10;

/// A walk may need this much more in a cycle than a half allows in the mean: nobody walks all the
/// time.
constexpr double WALKING_SHARE = 2;

}  // namespace

AdvSkills::AdvSkills(const Worldmodel& world)
    : world_(world),
      fullCapacity_(Config::getOptionalInt("skill_staminaCapacity", DEFAULT_CAPACITY)),
      capacity_(fullCapacity_),
      oldStamina_(world.my.stamina),
      oldTime_(world.time) {}

/// The stamina that came back is not told. It is the full rate of each cycle but where the stamina
/// is full afterwards; then what a weak dash has cost is left out.
void AdvSkills::feedbackWorld() {
  const WPlayer& my = world_.my;
  if (world_.playMode == PLAY_MODE_BEFORE_KICK_OFF) capacity_ = fullCapacity_;
  const double cycles = static_cast<double>(std::clamp<long>(world_.time - oldTime_, 0, NEVER));
  const double back = my.stamina < STAMINA_MAX ? cycles * my.recovery * my.staminaIncMax
                                               : std::max(0.0, my.stamina - oldStamina_);
  capacity_ = std::max(0.0, capacity_ - back);
  oldStamina_ = my.stamina;
  oldTime_ = world_.time;
}

int AdvSkills::cyclesLeft() const {
  const long half = std::max(1L, HALF_TIME * 1000L / std::max(1, SIMULATOR_STEP));
  return static_cast<int>(std::min<long>(NEVER, half - std::max(0L, world_.time) % half));
}

double AdvSkills::energyLeft() const {
  const WPlayer& my = world_.my;
  const double back = std::min(capacity_, cyclesLeft() * my.recovery * my.staminaIncMax);
  return sparingPower(my, STAMINA_MAX) + back;
}

Command AdvSkills::runTo(const Vector2d& place, double reach) const {
  return dashTo(world_.my, place, reach, MAXPOWER);
}

Command AdvSkills::walkTo(const Vector2d& place, double reach) const {
  const double lasting = WALKING_SHARE * energyLeft() / cyclesLeft();
  return dashTo(world_.my, place, reach, sparingPower(world_.my, std::min(MAXPOWER, lasting)));
}

Command AdvSkills::turnTo(const Vector2d& point) const {
  return vok::turnTo(world_.my, point);
}

int AdvSkills::cyclesTo(const Vector2d& place, double reach) const {
  return vok::cyclesTo(world_.my, place, reach);
}

Interception AdvSkills::interception() const {
  return vok::interception(world_.my, world_.ball);
}

Command AdvSkills::intercept() const {
  return vok::intercept(world_.my, world_.ball);
}

int AdvSkills::cyclesToOpponent(int maxAge) const {
  int first = NEVER;
  for (const WPlayer& opponent : world_.otherTeam) {
    if (opponent.age > maxAge) continue;
    const int limit = std::min(first, Interceptor{}.limit);
    const Interceptor how{limit, maxAge, opponent.kickRange()};
    first = std::min(first, vok::interception(opponent, world_.ball, how).cycles);
  }
  return first;
}

Command AdvSkills::tackle(double probability) const {
  return vok::tackle(world_.my, world_.ball, probability);
}

Command AdvSkills::catchBall() const {
  return vok::catchBall(world_);
}

KickPlan AdvSkills::passTo(const Vector2d& place, double endSpeed) const {
  return kickTo(place, vok::startSpeed((place - world_.ball.pos).getLength(), endSpeed));
}

KickPlan AdvSkills::kickTo(const Vector2d& place, double startSpeed) const {
  return planKick(world_.my, world_.ball, place, startSpeed, cyclesToOpponent(OPPONENT_MEMORY));
}

Command AdvSkills::stopBall() const {
  return vok::stopBall(world_.my, world_.ball);
}

Dribble AdvSkills::dribble(Angle direction, int maxDashes) const {
  return vok::dribble(world_.my, world_.ball, direction, world_.otherTeam, maxDashes);
}

}  // namespace vok
