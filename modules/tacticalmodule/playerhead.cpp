// Where a player looks: at the ball as often as its place becomes doubtful, at what it needs for a
// pass or shot, and otherwise where it has not looked for long.
#include <algorithm>
#include <cmath>

#include "constants.h"
#include "tacticalmodule.h"

namespace vok {

namespace {

/// A ball that far away is worth a look every so many cycles more, metres.
constexpr double FAR_BALL = 12;
/// Shots are looked for within this distance of the goal, metres.
constexpr double SHOT_DIST = 28;
/// What is known of the goalie and of a receiver may be so old, cycles.
constexpr int FRESH = 1;

constexpr int NECK_STEPS = 8;    ///< directions that are compared, but one
constexpr int CONE_STEPS = 4;    ///< directions of a view that are asked for their age, but one
constexpr double OLD_LOOK = 12;  ///< cycles; a look that is older is no older than this
/// A direction in which the field ends within this distance shows little, metres.
constexpr double WIDE_VIEW = 25;

/// Radians, cut to degrees that the server may have set to anything.
double within(double radians, double least, double most) {
  return std::max(toRadians(least), std::min(toRadians(most), radians));
}

/// How far the field goes on from a place in a direction, metres.
double depthOfField(const Vector2d& from, double direction) {
  const double cosine = std::cos(direction);
  const double sine = std::sin(direction);
  double depth = 2 * HALF_LENGTH;
  if (std::fabs(cosine) > 1e-6) {
    depth = std::min(depth, (std::copysign(HALF_LENGTH, cosine) - from.x) / cosine);
  }
  if (std::fabs(sine) > 1e-6) {
    depth = std::min(depth, (std::copysign(HALF_WIDTH, sine) - from.y) / sine);
  }
  return std::max(depth, 0.0);
}

}  // namespace

TurnHeadWish TacticalModule::calcTurnHead() const {
  const WPlayer& my = world->my;
  const WBall& ball = world->ball;
  const bool mine = my.ballKickable(ball);
  if (ball.age > FRESH + my.distTo(ball.pos) / FAR_BALL && !(mine && ball.age <= 2)) return TH_BALL;
  if (mine || firstResponsiblePlayer == my.number) {
    const int mate = ourAction.receiver;
    const bool passing = ourAction.state == TA_PASS && ourAction.performer == my.number;
    if (passing && isShirtNumber(mate) && world->ourTeam[mate].age > FRESH) return TH_RECEIVER;
    const int goalie = world->otherGoalieNo;
    const bool nearGoal = my.distTo({HALF_LENGTH, 0}) < SHOT_DIST;
    if (nearGoal && isShirtNumber(goalie) && world->otherTeam[goalie].age > FRESH) return TH_GOAL;
    if (!mine && ball.age > 0) return TH_BALL;
  }
  return TH_AROUND;
}

Angle TacticalModule::turnHeadMoment(TurnHeadWish wish, Angle bodyTurn) const {
  if (wish == TH_STAY) return 0;
  const WPlayer& my = world->my;
  const Angle body = my.bodyDir + bodyTurn;
  double neck = 0;
  if (wish == TH_AROUND) {
    neck = leastKnownNeck(body);
  } else {
    neck = Angle((turnHeadTarget(wish) - my.pos - my.v).getAngle()) - body;
  }
  neck = within(neck, MINNECKANG, MAXNECKANG);
  return within(neck - my.headAngle, MINNECKMOMENT, MAXNECKMOMENT);
}

/// As it will be in the next view.
Vector2d TacticalModule::turnHeadTarget(TurnHeadWish wish) const {
  const int mate = ourAction.receiver;
  if (wish == TH_GOAL) return {HALF_LENGTH, 0};
  if (wish == TH_RECEIVER && isShirtNumber(mate)) {
    return world->ourTeam[mate].pos + world->ourTeam[mate].v;
  }
  return world->ball.pos + world->ball.v;
}

/// The direction of the neck (radians from the body) whose view would renew most, where there is
/// field to be seen.
double TacticalModule::leastKnownNeck(Angle body) const {
  const double half = Worldmodel::getViewAngle(world->viewWidth);
  const double least = toRadians(MINNECKANG);
  const double range = toRadians(MAXNECKANG) - least;
  double bestNeck = 0;
  double best = -1;
  for (int i = 0; i <= NECK_STEPS; ++i) {
    const double neck = least + range * i / NECK_STEPS;
    double worth = 0;
    for (int j = 0; j <= CONE_STEPS; ++j) {
      const Angle direction = body + neck + half * (2.0 * j / CONE_STEPS - 1) * 0.95;
      const double age = std::min<double>(world->dirAge(direction), OLD_LOOK);
      worth += age * std::min(1.0, depthOfField(world->my.pos, direction) / WIDE_VIEW);
    }
    if (worth <= best) continue;
    best = worth;
    bestNeck = neck;
  }
  return bestNeck;
}

}  // namespace vok
