// A pass is a race, too (see goalshoteval.cpp): from every opponent's least lateness on the way to
// the receiver comes the chance that the ball arrives. `SECURITY_DIST` is the scale of that: who is
// too late by so many metres takes one pass in twenty.
#include "passeval.h"

#include <algorithm>
#include <cmath>

#include "Config.h"
#include "ballreach.h"
#include "constants.h"
#include "kicking.h"
#include "pitch.h"

namespace vok {

namespace {

constexpr int LATTICE_REACH = 2;  ///< steps around the mate in each direction

/// How fast the ball is to be where it is played to, metres per cycle: slow enough to be stopped,
/// or faster to get past opponents.
constexpr double END_SPEEDS[] = {0.8, 1.4, 2.0};

/// The margin in metres at which every second pass arrives. It is below 0, since not every opponent
/// runs for the ball at once: of 2600 kicks in matches of scripted players 58 % arrived with a
/// margin of -2 to 0, 82 % with 0 to 1, 88 % with 1 to 2, and 17 % with -5 to -4.
constexpr double EVEN_MARGIN = -0.5;
/// A logistic curve is at 0.95 here.
constexpr double NINETEEN_OF_TWENTY = 2.944;

/// Nobody sees the kick before it is done: mates set off so many cycles later. Opponents are given
/// no such delay, to be on the safe side.
constexpr int MATE_DELAY = 2;

/// Opponents may be too late by this at most to be followed; beyond it no chance is left.
constexpr double MAX_MARGIN = 20;

}  // namespace

/// One team in possession against the other.
struct PassEval::Passing {
  Passing(const Worldmodel& world, const Squad<WPlayer>& mates, const Squad<WPlayer>& opponents,
          const WPlayer& passer, const WBall& ball, bool ours)
      : mates(mates), passer(passer), ball(ball), direction(ours ? 1 : -1) {
    // An offside player may receive from these.
    const bool anyPlace = ours ? world.playMode == PLAY_MODE_KICK_IN_US ||
                                     world.playMode == PLAY_MODE_GOAL_KICK_US ||
                                     world.playMode == PLAY_MODE_CORNER_KICK_US
                               : world.playMode == PLAY_MODE_KICK_IN_THEM ||
                                     world.playMode == PLAY_MODE_GOAL_KICK_THEM ||
                                     world.playMode == PLAY_MODE_CORNER_KICK_THEM;
    const double line =
        ours ? world.ourOffsideLine(MAX_MATE_AGE) : -world.otherOffsideLine(MAX_MATE_AGE);
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      const bool offside = !anyPlace && mates[n].pos.x * direction > line;
      plays[n] = n != passer.number && mates[n].age <= MAX_MATE_AGE && !offside;
      if (plays[n]) mateRunners[n] = Runner(mates[n], mates[n].kickRange());
      if (opponents[n].age < NEVER) {
        const bool atGoal = direction > 0 ? inOtherPenaltyArea(opponents[n].pos, 0)
                                          : inOurPenaltyArea(opponents[n].pos, 0);
        opponentRunners[numOpponents++] = Runner(opponents[n], playingReach(opponents[n], atGoal));
      }
    }
  }

  const Squad<WPlayer>& mates;
  const WPlayer& passer;
  WBall ball;
  double direction;     ///< 1 towards the other goal, -1 towards ours
  Squad<bool> plays{};  ///< mates who may receive
  Squad<Runner> mateRunners;
  std::array<Runner, LAST_SHIRT> opponentRunners;
  std::size_t numOpponents = 0;
};

PassEval::PassEval(const GoalShotEval* goalshoteval) : goalshoteval(goalshoteval) {
  SAMELEVEL_LENGTH = Config::getValueAsDouble("pass_sameLevelLength");
  MAXKICK_DURATION = Config::getValueAsInt("pass_maxKickDuration");
  MAXPASS_LENGTH = Config::getValueAsDouble("pass_maxKickLength");
  RPASS_LATTICELENGTH = Config::getValueAsDouble("pass_rpassLatticeLength");
  SHORTPASS_LENGTH = Config::getValueAsDouble("pass_shortPassLength");
  SHORTPASS_LENGTH_GOALIE = Config::getValueAsDouble("pass_shortPassLengthGoalie");
  SECURITY_DIST = Config::getValueAsDouble("pass_securityDist");
  BORDER_DIST = Config::getValueAsDouble("pass_borderDist");
  SCORE_POOR = Config::getValueAsInt("pass_score_POOR");
  SCORE_AVERAGE = Config::getValueAsInt("pass_score_AVERAGE");
  SCORE_GOOD = Config::getValueAsInt("pass_score_GOOD");
  SCORE_PERFECT = Config::getValueAsInt("pass_score_PERFECT");
}

Pass PassEval::ourEvalProp(const Worldmodel* world, int n) const {
  return bestPass(Passing(*world, world->ourTeam, world->otherTeam, world->my, world->ball, true),
                  n);
}

Pass PassEval::otherEval(const Worldmodel* world, int passer, int n) const {
  if (!isShirtNumber(passer)) return {};
  const WPlayer& player = world->otherTeam[passer];
  const WBall ball = player.ballKickable(world->ball) ? world->ball : WBall(player.pos, {});
  return bestPass(Passing(*world, world->otherTeam, world->ourTeam, player, ball, false), n);
}

Pass PassEval::evalPass(const Worldmodel* world, const Vector2d& target, double speed,
                        int kicks) const {
  return rate(Passing(*world, world->ourTeam, world->otherTeam, world->my, world->ball, true),
              target, speed, kicks);
}

Pass PassEval::bestPass(const Passing& passing, int n) const {
  Pass best;
  if (!isShirtNumber(n) || !passing.plays[n]) return best;
  const Vector2d& mate = passing.mates[n].pos;
  const double shortPass =
      passing.passer.isGoalie == GOALIE_TRUE ? SHORTPASS_LENGTH_GOALIE : SHORTPASS_LENGTH;
  const bool intoSpace = passing.mates[n].distTo(passing.ball.pos) > shortPass;
  const int reach = intoSpace ? LATTICE_REACH : 0;
  for (int x = -reach; x <= reach; ++x) {
    for (int y = -reach; y <= reach; ++y) {
      const Vector2d target = mate + Vector2d(x * passing.direction, y) * RPASS_LATTICELENGTH;
      const Vector2d way = target - passing.ball.pos;
      const double length = way.getLength();
      if (length > MAXPASS_LENGTH || !inField(target, BORDER_DIST)) continue;
      for (const double endSpeed : END_SPEEDS) {
        const double speed = startSpeed(length, endSpeed);
        if (speed > BALL_SPEED_MAX) break;
        const int kicks =
            kicksFor(passing.passer, passing.ball, Vector2d(way).stretch(speed), MAXKICK_DURATION);
        if (kicks > MAXKICK_DURATION) break;
        Pass pass = rate(passing, target, speed, kicks);
        pass.xIndex = x;
        pass.yIndex = y;
        if (pass.receiver == n && isBetter(pass, best, passing.direction)) best = pass;
      }
    }
  }
  return best;
}

bool PassEval::isBetter(const Pass& pass, const Pass& than, double direction) const {
  if (than.receiver == -1) return true;
  if (pass.grade.value != than.grade.value) return pass.grade.value < than.grade.value;
  const double ahead = (pass.target.x - than.target.x) * direction;
  if (std::fabs(ahead) > SAMELEVEL_LENGTH) return ahead > 0;
  return pass.score > than.score;
}

Pass PassEval::rate(const Passing& passing, const Vector2d& target, double speed, int kicks) const {
  Pass pass;
  pass.target = target;
  pass.speed = speed;
  pass.kicks = kicks;
  const BallWay way(passing.ball.pos, (target - passing.ball.pos).stretch(speed));
  const int before = std::clamp(kicks, 1, MAX_WAY / 2) - 1;
  const int lastCycle = std::min(way.cyclesInside, MAX_WAY - before);
  pass.margin = MAX_MARGIN;
  for (int cycle = 1; cycle <= lastCycle && pass.receiver == -1; ++cycle) {
    for (std::size_t i = 0; i < passing.numOpponents; ++i) {
      const double late = passing.opponentRunners[i].shortage(way[cycle], cycle + before);
      pass.margin = std::min(pass.margin, late);
    }
    double earliest = 0;
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      if (!passing.plays[n] || cycle <= MATE_DELAY) continue;
      const double late = passing.mateRunners[n].shortage(way[cycle], cycle - MATE_DELAY);
      if (late > earliest) continue;
      earliest = late;
      pass.receiver = n;
      pass.duration = cycle;
    }
  }
  if (pass.receiver == -1) return pass;
  const double scale = std::max(SECURITY_DIST - EVEN_MARGIN, 0.1) / NINETEEN_OF_TWENTY;
  const double chance = 1 / (1 + std::exp((EVEN_MARGIN - pass.margin) / scale));
  if (chance > 0) pass.score = static_cast<int>(std::lround(100 * chance));
  pass.grade = scoreToGrade(pass.score);
  return pass;
}

int PassEval::timeForPass(double distance, double speed) {
  return rollingCycles(distance, speed);
}

Grade PassEval::scoreToGrade(int score) const {
  if (score >= SCORE_PERFECT) return PERFECT;
  if (score >= SCORE_GOOD) return GOOD;
  if (score >= SCORE_AVERAGE) return AVERAGE;
  if (score >= SCORE_POOR) return POOR;
  return score > 0 ? BAD : IMPOSSIBLE;
}

int PassEval::gradeToScore(Grade grade) const {
  switch (grade.value) {
    case ABSOLUTE:
    case PERFECT:
      return SCORE_PERFECT;
    case GOOD:
      return SCORE_GOOD;
    case AVERAGE:
      return SCORE_AVERAGE;
    case POOR:
      return SCORE_POOR;
    case BAD:
      return 1;
    default:
      return 0;
  }
}

}  // namespace vok
