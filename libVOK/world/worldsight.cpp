// What a player's senses make of its world. The body sense of a cycle comes first: the world is
// predicted to it (worldsim.cpp), then our own motion is corrected by what is felt of it. The view
// then corrects our place by the landmarks, and by our place all that moves. A view that comes
// before the body sense of its cycle opens the cycle itself; its body sense then only tells the
// speed.
#include <algorithm>
#include <cmath>

#include "constants.h"
#include "playerassignment.h"
#include "worldmodel.h"

namespace vok {

namespace {

/// The server cuts the decimals of felt angles off (degrees), so that the truth lies farther from
/// 0.
constexpr double CUT_OFF_MIDDLE = toRadians(0.5);
/// Felt speeds are rounded to hundredths of a metre per cycle.
constexpr double HALF_SPEED_STEP = 0.005;
/// Standard deviation of what is equally likely within +-1.
constexpr double UNIFORM = 0.57735;
/// The server adds a vector of any direction, up to the share of the speed that is configured: its
/// standard deviation in one direction, in such shares.
constexpr double NOISE = 0.41;
/// Faster is nobody, metres per cycle; and no type decays more: both bound what a text may say.
constexpr double TOP_SPEED = 3;
constexpr double LEAST_DECAY = 0.1;
/// Nothing is farther away, metres, or faster, metres per cycle, than this, but after nonsense.
constexpr double FARTHEST = 1000;
constexpr double FASTEST = 20;
/// Standard deviations, metres: of a way in a cycle that was not felt, of a place after a command
/// to move, of a place after a collision; and radians: of turns not felt, or not known.
constexpr double UNFELT_WAY = 0.4;
constexpr double PLACED = 0.2;
constexpr double PUSHED = 0.2;
constexpr double UNFELT_TURN = 0.2;
constexpr double UNKNOWN_TURN = 1;

/// The standard deviation of what a player does in a cycle that its run does not tell, metres:
/// along its body, since it dashes there, across it, and in any direction where its body is not
/// known.
constexpr double UNFORESEEN_WAY = 0.17;
constexpr double UNFORESEEN_ASIDE = 0.01;
constexpr double UNFORESEEN_ANYHOW = 0.15;
/// The share of an error of the velocity that a cycle leaves of it.
constexpr double KEEPS_SPEED = 0.85;
/// A body direction not older than this tells where a player dashes, in cycles.
constexpr int KNOWN_BODY = 3;
/// How much of the dashing that keeps up its speed a player is expected to go on with, and for how
/// many cycles out of sight.
constexpr double KEEPS_RUNNING = 0.75;
constexpr int LONGEST_RUN = 8;
/// Out of sight for so many cycles, a player may be anywhere.
constexpr int LOST = 100;
/// What lies within the view by so much, radians, and by so many standard deviations of its place,
/// must be seen, unless it is nearer than this, metres.
constexpr double SIGHT_MARGIN = toRadians(3);
constexpr double CERTAIN = 3;
constexpr double NEAR = 1;
/// What speeds may be where nothing is known of them, metres per cycle.
constexpr double BALL_SPEED = 1.5;
constexpr double PLAYER_SPEED = 0.4;

double boundedDecay(double decay) {
  return decay >= LEAST_DECAY ? std::min(decay, 1.0) : LEAST_DECAY;
}

double middleOfCutOff(double told) {
  if (told == 0) return 0;
  return told + std::copysign(CUT_OFF_MIDDLE, told);
}

}  // namespace

void Worldmodel::turnNeck(const NeckTurn& turned) {
  // The server's limits may be any numbers, also the wrong way round.
  neck = std::max(toRadians(MINNECKANG), std::min(toRadians(MAXNECKANG), neck + turned.moment));
}

void Worldmodel::senseNeck(const SensorData& data, const ServerState& state) {
  const long executed = data.turn_neck_count - turnNeckCount;
  const NeckTurn& turned = state.neckTurn;
  const bool isKnown = executed == turned.commands && turned.time >= data.time - 1;
  if (executed != 0 && isKnown && !waitForSenseBody) turnNeck(turned);
  // The neck turns without noise, so that the commands tell it better than the sense.
  const double told = data.head_angle;
  const double range = told == 0 ? 2 * CUT_OFF_MIDDLE : CUT_OFF_MIDDLE;
  if (std::abs(neck - middleOfCutOff(told)) > range + toRadians(0.02)) {
    neck = middleOfCutOff(told);
    place.blur(0, UNIFORM * range);
  }
  my.headAngle = neck;
}

void Worldmodel::senseTurn(const SensorData& data) {
  const double turn = Angle::mod2pi(my.bodyDir - oldMy.bodyDir);
  if (data.turn_count == turnCount) {
    if (!waitForSenseBody) my.bodyDir = oldMy.bodyDir;
  } else if (turn != 0) {
    place.blur(0, UNIFORM * PLAYER_RAND * std::abs(turn));
  } else {
    place.blur(0, UNKNOWN_TURN);
  }
  my.faceDir = my.bodyDir + neck;
}

void Worldmodel::senseMotion(const SensorData& data, long cycles) {
  const bool moved = data.move_count != moveCount;
  // While the clock stands, players turn and are placed, but nothing moves.
  const bool standing = cycles == 0 && !waitForSenseBody;
  if (standing) {
    oldMy = my;
    const bool placed = action.command == MOVE_COMMAND && moved;
    const bool turned = action.command == TURN_COMMAND && data.turn_count != turnCount;
    if (placed || turned) applyAction();
  }
  senseTurn(data);

  const Vector2d expected = my.v;
  const double speed = std::clamp(data.speed, 0.0, TOP_SPEED);
  // The noise of a slow motion is less than the rounding of what is felt of it.
  const bool slow = NOISE * PLAYER_RAND * expected.getLength() < UNIFORM * HALF_SPEED_STEP &&
                    std::abs(expected.getLength() - speed) <= 1.02 * HALF_SPEED_STEP;
  if (!slow) my.v = polar(speed, my.faceDir + middleOfCutOff(data.speed_angle));

  const bool knowsWay = !standing && !waitForSenseBody && !moved && cycles == 1;
  if (knowsWay) {
    senseWay(slow);
  } else if (!waitForSenseBody) {
    place.set(my.pos, my.bodyDir);
    place.blur(UNFELT_WAY * static_cast<double>(cycles) + (moved ? PLACED : 0), 0);
  }
  waitForSenseBody = false;
  if (my.number > 0) forgetImpossible();
}

/// The velocity that is felt is that of the way in the last cycle, slowed by the decay.
void Worldmodel::senseWay(bool slow) {
  const double waysPerSpeed = 1 / boundedDecay(my.decay);
  const Vector2d predicted = my.pos - oldMy.pos;
  const Vector2d unfelt = my.v * waysPerSpeed - predicted;
  // After a collision the velocity is turned round, and the way is not what it tells.
  const bool collided =
      my.v * predicted < 0 &&
      unfelt.getLength() > PLAYER_RAND * predicted.getLength() + 0.03 * waysPerSpeed;
  if (collided) {
    place.set(my.pos, my.bodyDir);
    return place.blur(PUSHED + 0.5 * predicted.getLength(), 0);
  }
  const Vector2d way = my.v * waysPerSpeed;
  const double length = way.getLength();
  const double along =
      slow ? NOISE * PLAYER_RAND * length : UNIFORM * HALF_SPEED_STEP * waysPerSpeed;
  place.set(oldMy.pos, my.bodyDir);
  place.walk(way, along, UNIFORM * CUT_OFF_MIDDLE * length);
  my.pos = place.pos();
}

void Worldmodel::takeSight(const SensorData& view, const ServerState& state) {
  if (view.time < time) return;
  if (view.time > time) {
    if (state.lastAction.time >= time && !state.actionLost) action.store(state.lastAction);
    if (state.neckTurn.time >= time) turnNeck(state.neckTurn);
    const long cycles = view.time - time;
    predictTo(view.time);
    my.faceDir = my.bodyDir + neck;
    place.set(my.pos, my.bodyDir);
    place.blur(UNFELT_WAY * static_cast<double>(cycles), UNFELT_TURN);
    waitForSenseBody = true;
  }
  takeServerState(state);
  checkViewWidth(view);
  calcMyPos(view);
  adjustGoals(view);
  adjustBall(view);
  adjustPlayers(view);
  if (my.age == 0) forgetMissing();
  forgetImpossible();
  visualAge = 0;
}

void Worldmodel::checkViewWidth(const SensorData& view) {
  view_width width = view.see_view_width == VIEW_WIDTH_NONE ? viewWidth : view.see_view_width;
  double widest = 0;
  for (const SensorFlag& flag : view.flag) {
    if (flag.valid) widest = std::max(widest, std::abs(flag.dir));
  }
  while (width < VIEW_WIDTH_WIDE && widest > getViewAngle(width) + toRadians(1)) {
    width = static_cast<view_width>(width + 1);
  }
  viewWidth = width;
}

void Worldmodel::calcMyPos(const SensorData& view) {
  const SeenLandmarks landmarks(view, ourSide);
  place.set(my.pos, my.bodyDir);
  if (place.look(landmarks.all(), neck)) {
    const double turned = Angle::mod2pi(place.body() - my.bodyDir);
    my.v.turn(turned);
    my.pos = place.pos();
    my.bodyDir = place.body();
    my.faceDir = my.bodyDir + neck;
    my.age = 0;
    my.bodyAge = 0;
    my.state = VISUAL;
  }
  const auto slot = static_cast<std::size_t>(vCounter);
  vDir[slot] = my.faceDir;
  vAngle[slot] = getViewAngle(viewWidth);
  vAge[slot] = 0;
  vCounter = (vCounter + 1) % static_cast<long>(vDir.size());
  if (isShirtNumber(my.number)) ourTeam[my.number] = my;
}

void Worldmodel::adjustGoals(const SensorData& view) {
  for (const SensorGoal& seen : view.goal) {
    if (!seen.valid) continue;
    (seen.team == TEAM_US ? ourGoal : otherGoal).age = 0;
  }
}

void Worldmodel::driftSights() {
  const double decay = boundedDecay(ball.decay);
  const double noise = NOISE * BALL_RAND * ball.v.getLength() / decay;
  drift(ballMotion, {1, decay, decay, noise, noise, 0});
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    driftPlayer(ourTeam[n], ourMotion[n]);
    driftPlayer(otherTeam[n], otherMotion[n]);
  }
}

void Worldmodel::driftPlayer(WPlayer& player, Motion& motion) const {
  const double aside = player.bodyAge <= KNOWN_BODY ? UNFORESEEN_ASIDE : UNFORESEEN_ANYHOW;
  const double decay = boundedDecay(player.decay);
  drift(motion, {1 / decay, KEEPS_SPEED, decay, UNFORESEEN_WAY, aside, player.bodyDir});
  if (player.age > LONGEST_RUN) player.push = {};
}

Observer Worldmodel::observer() const {
  const double error = place.error();
  return {my.pos, my.v, my.faceDir, 0.5 * error * error, place.bodyVariance()};
}

void Worldmodel::adjustBall(const SensorData& view) {
  // A direction alone does not tell a place that is not known.
  if (!view.ball.valid || my.age == NEVER) return;
  if (view.ball.dist <= 0 && ball.age == NEVER) return;
  seeObject(ball, ballMotion, view.ball, observer(), BALL_SPEED);
  ball.age = 0;
  ball.state = VISUAL;
  ball.coneTime = 0;
}

void Worldmodel::seePlayer(const SensorPlayer& seen, team_number team, int number) {
  WPlayer& player = (team == TEAM_US ? ourTeam : otherTeam)[number];
  Motion& motion = (team == TEAM_US ? ourMotion : otherMotion)[number];
  const bool isNew = player.age > KNOWN_BODY;
  seeObject(player, motion, seen, observer(), PLAYER_SPEED);
  if (seen.body_dir > NO_ANGLE) runAhead(player, motion, my.faceDir + seen.body_dir, isNew);
  const Vector2d pos = player.pos;
  const Vector2d v = player.v;
  player.setBySensorData(seen, my, VISUAL, playMode);
  // Somebody whom the view calls by our own number is one of the others.
  player.number = number;
  player.pos = pos;
  player.v = v;

  Vector2d run = v;
  if (player.bodyAge <= KNOWN_BODY) {
    const Vector2d ahead = polar(1, player.bodyDir);
    run = ahead * (v * ahead);
  }
  player.push = run * ((1 / boundedDecay(player.decay) - 1) * KEEPS_RUNNING);
}

void Worldmodel::adjustPlayers(const SensorData& view) {
  seenAs.fill({});
  if (my.age == NEVER) return;
  for (std::size_t i = 0; i < view.player.size(); ++i) {
    const SensorPlayer& seen = view.player[i];
    if (!seen.valid || !isShirtNumber(seen.number) || seen.team == TEAM_UNKNOWN) continue;
    if (seen.team == TEAM_US && seen.number == my.number) continue;
    seenAs[i] = {seen.team, seen.number};
    if (seen.goalie == GOALIE_TRUE) {
      if (seen.team == TEAM_US && ourGoalieNo == -1) adjustTacticalNumbers(seen.number);
      if (seen.team == TEAM_THEM && otherGoalieNo == -1) setOtherGoalie(seen.number);
    }
    seePlayer(seen, seen.team, seen.number);
  }
  namePlayers(view);
}

void Worldmodel::namePlayers(const SensorData& view) {
  std::array<Unnamed, std::tuple_size_v<decltype(SensorData::player)>> unnamed;
  std::array<std::size_t, unnamed.size()> index{};
  std::size_t count = 0;
  for (std::size_t i = 0; i < view.player.size(); ++i) {
    const SensorPlayer& seen = view.player[i];
    if (!seen.valid || seenAs[i].number != -1 || seen.dist <= 0) continue;
    WPlayer somebody;
    Motion motion;
    somebody.age = NEVER;
    seeObject(somebody, motion, seen, observer(), PLAYER_SPEED);
    index[count] = i;
    unnamed[count++] = {somebody.pos, motion.cov[0][0], motion.cov[0][1], motion.cov[1][1],
                        seen.team};
  }
  if (count == 0) return;

  std::array<Candidate, 2UL * LAST_SHIRT> candidates;
  std::size_t known = 0;
  for (const team_number team : {TEAM_US, TEAM_THEM}) {
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      if (team == TEAM_US && n == my.number) continue;
      const WPlayer& player = (team == TEAM_US ? ourTeam : otherTeam)[n];
      const Motion& motion = (team == TEAM_US ? ourMotion : otherMotion)[n];
      const auto isIt = [&](const SeenAs& seen) { return seen.team == team && seen.number == n; };
      if (std::any_of(seenAs.begin(), seenAs.end(), isIt)) continue;
      candidates[known++] = {
          player.pos, motion.cov[0][0],  motion.cov[0][1], motion.cov[1][1], team,
          n,          player.age >= LOST};
    }
  }
  assignPlayers({unnamed.data(), count}, {candidates.data(), known});
  for (std::size_t k = 0; k < count; ++k) {
    if (unnamed[k].who == -1) continue;
    const Candidate& who = candidates[static_cast<std::size_t>(unnamed[k].who)];
    seenAs[index[k]] = {who.team, who.number};
    seePlayer(view.player[index[k]], who.team, who.number);
  }
}

bool Worldmodel::shouldBeSeen(const WObject& object, const Motion& motion) const {
  const Vector2d way = object.pos - my.pos;
  const double dist = way.getLength();
  if (object.age == 0 || object.age >= NEVER || dist < NEAR) return false;
  const double error = std::sqrt(motion.cov[0][0] + motion.cov[1][1]);
  const double margin = SIGHT_MARGIN + CERTAIN * error / dist;
  const double aside = std::abs(Angle::mod2pi(way.getAngle() - my.faceDir));
  return aside + margin < getViewAngle(viewWidth);
}

void Worldmodel::forgetMissing() {
  const auto forget = [this](WMovedObject& object, Motion& motion) {
    if (!shouldBeSeen(object, motion)) return;
    object.age = NEVER;
    object.state = UNSAFE;
    forgetMotion(motion);
  };
  forget(ball, ballMotion);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (n != my.number) forget(ourTeam[n], ourMotion[n]);
    forget(otherTeam[n], otherMotion[n]);
  }
}

void Worldmodel::forgetImpossible() {
  const auto forget = [](WMovedObject& object, Motion& motion) {
    // Also what is no number is not within the bounds.
    const bool possible = std::abs(object.pos.x) < FARTHEST && std::abs(object.pos.y) < FARTHEST &&
                          object.v * object.v < FASTEST * FASTEST;
    if (possible) return false;
    object.pos = object.v = {};
    object.age = NEVER;
    object.state = UNSAFE;
    forgetMotion(motion);
    return true;
  };
  // The own velocity is felt, wherever the player is.
  const Vector2d felt = my.v;
  Motion none;
  if (forget(my, none)) {
    place = {};
    if (felt * felt < FASTEST * FASTEST) my.v = felt;
  }
  forget(ball, ballMotion);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (forget(ourTeam[n], ourMotion[n])) ourTeam[n].push = {};
    if (forget(otherTeam[n], otherMotion[n])) otherTeam[n].push = {};
  }
}

}  // namespace vok
