// A shot is a race between the ball and each opponent, and the mouth is narrow for a ball that
// strays. Both become chances:
//
// - The margin is the least number of metres by which an opponent is too late at any place on the
//   ball's way (ballreach.h). It becomes a chance by a logistic curve.
// - Noise turns the ball a little in every cycle, in proportion to its speed. The lateral errors
//   add up to a normal distribution where the ball crosses the goal line, and the part of it that
//   lies between the posts is the other chance.
//
// The score is their product in per cent.
#include "goalshoteval.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Config.h"
#include "ballreach.h"
#include "constants.h"
#include "pitch.h"

namespace vok {

namespace {

constexpr int AIMS = 9;  ///< points of the mouth that are tried

/// The margin at which every second shot is a goal, and how fast the chance grows around it,
/// metres. Measured with 75 balls that a trainer sent at goals of scripted players, goalies among
/// them: with a margin of 0 and more 16 of 18 were goals, with -1.5 to 0 8 of 12, and below -3 2
/// of 38.
constexpr double EVEN_MARGIN = -1.3;
constexpr double MARGIN_SCALE = 0.7;

/// A goalie that nobody has seen lately is taken to wait so far in front of the middle, metres.
constexpr double UNSEEN_GOALIE_OUT = 1.5;

double logistic(double x) {
  return 1 / (1 + std::exp(-x));
}

/// The part of a normal distribution that lies below x.
double normalBelow(double x) {
  return 0.5 * std::erfc(-x / std::sqrt(2.0));
}

}  // namespace

/// One team shooting at the other's goal.
struct GoalShotEval::Shooting {
  Shooting(const Squad<WPlayer>& defenders, double direction, int maxAge) : direction(direction) {
    for (const WPlayer& defender : defenders) {
      WPlayer taken = defender;
      if (defender.age > maxAge) {
        if (defender.isGoalie != GOALIE_TRUE) continue;
        taken.pos = {direction * (HALF_LENGTH - UNSEEN_GOALIE_OUT), 0};
        taken.v = {};
        taken.bodyAge = NEVER;
      }
      runners[count++] = Runner(taken, playingReach(taken, true));
    }
  }

  double direction;  ///< 1 towards the other goal, -1 towards ours
  std::array<Runner, LAST_SHIRT> runners;
  std::size_t count = 0;
};

GoalShotEval::GoalShotEval()
    : leftEdgeOfGoal(HALF_LENGTH, -GOAL_WIDTH / 2),
      rightEdgeOfGoal(HALF_LENGTH, GOAL_WIDTH / 2),
      leftEdgeOfOurGoal(-HALF_LENGTH, GOAL_WIDTH / 2),
      rightEdgeOfOurGoal(-HALF_LENGTH, -GOAL_WIDTH / 2) {
  minDistToCorner = Config::getValueAsDouble("goal_minDistToCorner");
  maxDistToCorner = Config::getValueAsDouble("goal_maxDistToCorner");
  maxAge = Config::getValueAsInt("goal_maxAge");
  maxKickDuration = Config::getValueAsInt("goal_maxKickDuration");
  score_POOR = Config::getValueAsInt("goal_score_POOR");
  score_AVERAGE = Config::getValueAsInt("goal_score_AVERAGE");
  score_GOOD = Config::getValueAsInt("goal_score_GOOD");
  score_PERFECT = Config::getValueAsInt("goal_score_PERFECT");
  maxSimSteps = Config::getValueAsInt("goal_maxSimSteps");
  maxDist = BALL_SPEED_MAX * (1 - power(BALL_DECAY, maxSimSteps)) / (1 - BALL_DECAY);
}

GoalShot GoalShotEval::ourEval(const Worldmodel* world) const {
  return bestShot(Shooting(world->otherTeam, 1, maxAge), world->my, world->ball);
}

GoalShot GoalShotEval::otherEval(const Worldmodel* world, int n) const {
  if (!isShirtNumber(n) || world->otherTeam[n].age > maxAge) return {};
  return bestShot(Shooting(world->ourTeam, -1, maxAge), world->otherTeam[n],
                  ballOf(*world, world->otherTeam[n]));
}

GoalShot GoalShotEval::teamEval(const Worldmodel* world, int n) const {
  if (!isShirtNumber(n) || world->ourTeam[n].age > maxAge) return {};
  return bestShot(Shooting(world->otherTeam, 1, maxAge), world->ourTeam[n],
                  ballOf(*world, world->ourTeam[n]));
}

GoalShot GoalShotEval::evalShot(const Worldmodel* world, const Vector2d& target, double speed,
                                int kicks) const {
  return rate(Shooting(world->otherTeam, 1, maxAge), world->ball.pos, target, speed, kicks);
}

WBall GoalShotEval::ballOf(const Worldmodel& world, const WPlayer& player) {
  return player.ballKickable(world.ball) ? world.ball : WBall(player.pos, {});
}

/// All aims are shot at full speed: a slower ball gives the goalie time and nothing else.
GoalShot GoalShotEval::bestShot(const Shooting& shooting, const WPlayer& player,
                                const WBall& ball) const {
  const bool ahead = shooting.direction > 0;
  const Vector2d left = correctCorner(ball.pos, ahead ? leftEdgeOfGoal : leftEdgeOfOurGoal);
  const Vector2d right = correctCorner(ball.pos, ahead ? rightEdgeOfGoal : rightEdgeOfOurGoal);
  GoalShot best;
  if ((left - ball.pos).getLength() > maxDist && (right - ball.pos).getLength() > maxDist) {
    return best;
  }
  for (int aim = 0; aim < AIMS; ++aim) {
    const Vector2d target = left + (right - left) * (double(aim) / (AIMS - 1));
    const Vector2d velocity = (target - ball.pos).stretch(BALL_SPEED_MAX);
    const int kicks = kicksFor(player, ball, velocity, maxKickDuration);
    if (kicks > maxKickDuration) continue;
    const GoalShot shot = rate(shooting, ball.pos, target, BALL_SPEED_MAX, kicks);
    if (shot.score > best.score) best = shot;
  }
  return best;
}

GoalShot GoalShotEval::rate(const Shooting& shooting, const Vector2d& from, const Vector2d& target,
                            double speed, int kicks) const {
  GoalShot shot;
  shot.target = target;
  shot.speed = speed;
  shot.kicks = kicks;
  Vector2d place = from;
  Vector2d step = (target - from).stretch(speed);
  shot.margin = HALF_LENGTH;
  // Noise of a size uniform up to r in a random direction has the lateral variance r * r / 6.
  double turning = KICK_RAND * KICK_RAND / 6;  // variance of the lateral speed,
  double strayed = 0;                          // of the lateral place,
  double both = 0;                             // and their covariance
  const int before = std::clamp(kicks, 1, MAX_WAY / 2) - 1;
  const int lastCycle = std::min(maxSimSteps, MAX_WAY - before);
  for (int cycle = 1; cycle <= lastCycle; ++cycle) {
    turning += BALL_RAND * BALL_RAND * (step * step) / 6;
    strayed += 2 * both + turning;
    both = (both + turning) * BALL_DECAY;
    turning *= BALL_DECAY * BALL_DECAY;
    place += step;
    step *= BALL_DECAY;
    if (place.x * shooting.direction > HALF_LENGTH) {
      shot.duration = cycle;
      break;
    }
    for (std::size_t i = 0; i < shooting.count; ++i) {
      shot.margin = std::min(shot.margin, shooting.runners[i].shortage(place, cycle + before));
    }
  }
  if (shot.duration == NEVER) return shot;

  const double slant = std::fabs(target.x - from.x) / (target - from).getLength();
  const double spread = std::max(std::sqrt(strayed) / slant, 1e-6);
  const double half = GOAL_WIDTH / 2;
  const double between =
      normalBelow((half - target.y) / spread) - normalBelow((-half - target.y) / spread);
  const double past = logistic((shot.margin - EVEN_MARGIN) / MARGIN_SCALE);
  const double chance = between * past;
  if (chance > 0) shot.score = static_cast<int>(std::lround(100 * std::min(chance, 1.0)));
  shot.grade = scoreToGrade(shot.score);
  return shot;
}

Vector2d GoalShotEval::correctCorner(const Vector2d& from, const Vector2d& corner) const {
  const double part = maxDist > 0 ? std::min(1.0, (corner - from).getLength() / maxDist) : 1;
  const double inside = minDistToCorner + part * (maxDistToCorner - minDistToCorner);
  const double aside = std::max(0.0, std::fabs(corner.y) - inside);
  return {corner.x, std::copysign(aside, corner.y)};
}

Grade GoalShotEval::scoreToGrade(int score) const {
  if (score >= score_PERFECT) return PERFECT;
  if (score >= score_GOOD) return GOOD;
  if (score >= score_AVERAGE) return AVERAGE;
  if (score >= score_POOR) return POOR;
  return score > 0 ? BAD : IMPOSSIBLE;
}

}  // namespace vok
