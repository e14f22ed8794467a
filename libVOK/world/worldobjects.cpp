#include "worldobjects.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "constants.h"

namespace vok {

namespace {

double squared(const Vector2d& v) {
  return v * v;
}

/// Where the foot of the perpendicular from `o` lies: 0 at `source`, 1 at `target`.
double projection(const Vector2d& o, const Vector2d& source, const Vector2d& target) {
  return ((source - o) * (source - target)) / squared(source - target);
}

}  // namespace

double WObject::distToLine(const Vector2d& source, const Vector2d& target) const {
  const double proj = projection(pos, source, target);
  if (proj < 0) return distTo(source);
  if (proj <= 1) return (pos - source - (target - source) * proj).getLength();
  return distTo(target);
}

bool WObject::inCorridor(const Vector2d& source, const Vector2d& target, double d,
                         Angle alpha) const {
  const double halfSquared = d * d / 4;
  if (squared(target - pos) <= halfSquared) return true;
  if (squared(source - pos) <= 0.0001 * 0.0001) return true;
  if (squared(target - source) <= halfSquared) return false;

  const double proj = projection(pos, source, target);
  if (proj < 0 || proj > 1) return false;

  if (squared(pos - source - (target - source) * proj) > halfSquared) return false;

  const Angle aside = Angle((pos - source).getAngle()) - (target - source).getAngle();
  return std::fabs(aside) <= alpha;
}

void WMovedObject::acc(const Vector2d& acceleration) {
  v += acceleration;
  if (v.getLength() > vmax) v.stretch(vmax);
}

void WMovedObject::simulate() {
  pos += v;
  v *= decay;
}

void WMovedObject::calcVelocity(const WMovedObject& relObject, double distChange,
                                double dirChange) {
  const Vector2d relpos = pos - relObject.pos;
  const double dist = relpos.getLength();
  const Vector2d radial = dist > 0 ? relpos * (distChange / dist) : Vector2d();
  v = radial + dirChange * Vector2d(-relpos.y, relpos.x) + relObject.v;
  if (v.getLength() > vmax) v.stretch(vmax);
}

void WMovedObject::setPos(const SensorObject& object, const WPlayer& my) {
  const double lower = lowerDistLimit(object.dist, QUANTIZE_STEP);
  const double upper = upperDistLimit(object.dist, QUANTIZE_STEP);
  Vector2d away;
  away.setRadAng((lower + upper) * 0.5, my.faceDir + object.dir);
  pos = my.pos + away;
}

WBall::WBall(Vector2d pos, Vector2d v) : WMovedObject(pos, v) {
  decay = BALL_DECAY;
  vmax = BALL_SPEED_MAX;
  size = BALL_SIZE;
}

bool WBall::willCrossOurGoalLine(double distance) const {
  const Vector2d end = pos + v * (1 / (1 - decay));
  if (pos.x <= -HALF_LENGTH || end.x >= -HALF_LENGTH) return false;
  const double part = (pos.x + HALF_LENGTH) / (pos.x - end.x);
  return std::fabs(pos.y + (end.y - pos.y) * part) <= distance;
}

WPlayerType WPlayerType::fromDefaults() {
  WPlayerType type;
  type.playerSpeedMax = PLAYER_SPEED_MAX;
  type.playerDecay = PLAYER_DECAY;
  type.playerSize = PLAYER_SIZE;
  type.staminaIncMax = STAMINA_INC_MAX;
  type.inertiaFactor = INERTIA_MOMENT;
  type.dashPowerRate = DASH_POWER_RATE;
  type.kickableMargin = KICKABLE_MARGIN;
  type.kickRand = KICK_RAND;
  type.effortMin = EFFORT_MIN;
  type.effortMax = EFFORT_MAX;
  return type;
}

std::ostream& operator<<(std::ostream& out, const WPlayerType& type) {
  return out << "(PlayerType " << type.state << " ((speed_max " << type.playerSpeedMax
             << ") (player_decay " << type.playerDecay << ") (inertia_moment " << type.inertiaFactor
             << ") (dash_power_rate " << type.dashPowerRate << ")) (player_size " << type.playerSize
             << ") ((kickable_margin " << type.kickableMargin << ") (kick_rand " << type.kickRand
             << ")) ((stamina_inc_max " << type.staminaIncMax << ") (extra_stamina "
             << type.extraStamina << ") (effort_max " << type.effortMax << ") (effort_min "
             << type.effortMin << ")))";
}

double reachableSpeed(double speedMax, double dashPowerRate, double decay) {
  if (decay >= 1) return speedMax;  // never slows down: nothing but the limit bounds it
  return std::min(speedMax, dashPowerRate * MAXPOWER / (1 - decay));
}

WPlayer::WPlayer(Vector2d pos, Vector2d v) : WMovedObject(pos, v), stamina(STAMINA_MAX) {
  setType(WPlayerType::fromDefaults());
}

void WPlayer::setType(const WPlayerType& physics) {
  decay = physics.playerDecay;
  vmax = reachableSpeed(physics.playerSpeedMax, physics.dashPowerRate, physics.playerDecay);
  size = physics.playerSize;
  staminaIncMax = physics.staminaIncMax;
  inertiaFactor = physics.inertiaFactor;
  dashPowerRate = physics.dashPowerRate;
  kickableMargin = physics.kickableMargin;
  kickRand = physics.kickRand;
  extraStamina = physics.extraStamina;
  effortMin = physics.effortMin;
  effortMax = physics.effortMax;
}

Angle WPlayer::bodyAngleTo(const Vector2d& point) const {
  return Angle((point - pos).getAngle()) - bodyDir;
}

Angle WPlayer::faceAngleTo(const Vector2d& point) const {
  return Angle((point - pos).getAngle()) - faceDir;
}

double WPlayer::kickRange() const {
  return size + BALL_SIZE + kickableMargin;
}

bool WPlayer::ballCatchable(const WBall& ball, Angle catchAngle) const {
  if (ball.pos.x > -PENALTY_AREA_X || std::fabs(ball.pos.y) > PENALTY_AREA_HALF_WIDTH) return false;
  const double dist = distTo(ball.pos);
  const Angle direction = bodyAngleTo(ball.pos) - catchAngle;
  const double along = dist * std::cos(direction);
  const double across = dist * std::sin(direction);
  return std::fabs(across) <= 0.5 * CATCHABLE_AREA_W && 0 <= along && along <= CATCHABLE_AREA_L;
}

double WPlayer::kickPowerRate(const WBall& ball) const {
  const double aside = std::fabs(bodyAngleTo(ball.pos)) / PI;
  const double away = (distTo(ball.pos) - BALL_SIZE - size) / kickableMargin;
  return KICK_POWER_RATE * (1 - 0.25 * aside - 0.25 * away);
}

double WPlayer::inertiaMoment() const {
  return 1 / (1 + inertiaFactor * v.getLength());
}

double WPlayer::tackleProb(const WBall& ball) const {
  const Vector2d rel = (ball.pos - pos).turn(-bodyDir);
  const double limit = rel.x < 0 ? TACKLE_BACK_DIST : TACKLE_DIST;
  // (d / limit)^e + (|w| / width)^e over a common denominator. The distance ahead keeps its sign;
  // that makes a difference for odd exponents only.
  const double fail =
      (power(TACKLE_WIDTH * rel.x, TACKLE_EXP) + power(limit * std::fabs(rel.y), TACKLE_EXP)) /
      power(limit * TACKLE_WIDTH, TACKLE_EXP);
  const double prob = 1 - fail;
  return prob > 0 ? std::min(prob, 1.0) : 0;  // also when the parameters make it no number
}

void WPlayer::dash(double power) {
  const double costRate = power < 0 ? -2 : 1;  // backwards costs double
  const double cost = std::min(costRate * power, stamina + extraStamina);
  acc(polar(dashPowerRate * effort * cost / costRate, bodyDir));
  stamina = std::max(0.0, stamina - cost);
}

void WPlayer::turn(double moment) {
  const double allowed = std::max(toRadians(MINMOMENT), std::min(toRadians(MAXMOMENT), moment));
  const double turned = allowed * inertiaMoment();
  bodyDir += turned;
  faceDir += turned;
}

void WPlayer::kick(WBall& ball, double power, double direction) const {
  if (!ballKickable(ball)) return;
  ball.acc(polar(kickPowerRate(ball) * power, bodyDir + direction));
}

void WPlayer::recover() {
  if (stamina <= RECOVER_DEC_THR * STAMINA_MAX && recovery > RECOVER_MIN) {
    recovery = std::max(RECOVER_MIN, recovery - RECOVER_DEC);
  }
  if (stamina <= EFFORT_DEC_THR * STAMINA_MAX) effort = std::max(effortMin, effort - EFFORT_DEC);
  if (stamina >= EFFORT_INC_THR * STAMINA_MAX) effort = std::min(effortMax, effort + EFFORT_INC);
  stamina = std::min(STAMINA_MAX, stamina + recovery * staminaIncMax);
}

void WPlayer::setBySensorData(const SensorPlayer& player, const WPlayer& my,
                              WObjectState confidence, play_mode playMode) {
  setPos(player, my);
  age = 0;
  state = confidence;
  coneTime = 0;
  if (player.number != -1) number = player.number;
  if (player.goalie != GOALIE_UNKNOWN) isGoalie = player.goalie;
  if (player.tackle) cyclesSinceTackle = 0;
  if (player.pointto_dir > NO_ANGLE) pointDir = my.faceDir + player.pointto_dir;
  if (player.face_dir > NO_ANGLE) faceDir = my.faceDir + player.face_dir;

  // Only a player near enough to show its body shows its changes.
  if (player.body_dir > NO_ANGLE) {
    bodyDir = my.faceDir + player.body_dir;
    bodyAge = 0;
    calcVelocity(my, player.dist_change, player.dir_change);
  } else if (playMode == PLAY_MODE_BEFORE_KICK_OFF) {
    v = {};  // it was placed, it did not run there
  }
}

void WAction::store(const CycleAction& action) {
  *this = {};
  command = action.command;
  switch (command) {
    case KICK_COMMAND:
      power = action.param1;
      moment = action.param2;
      break;
    case DASH_COMMAND:
    case TACKLE_COMMAND:
      power = action.param1;
      break;
    case TURN_COMMAND:
    case CATCH_COMMAND:
      moment = action.param1;
      break;
    case MOVE_COMMAND:
      pos = {action.param1, action.param2};
      break;
    default:
      break;
  }
}

}  // namespace vok
