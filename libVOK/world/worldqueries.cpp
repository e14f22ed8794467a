// What the evaluations ask the world: closest players, corridors, offside lines, and how long ago a
// direction was looked at.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "playmodes.h"
#include "worldmodel.h"

namespace vok {

namespace {

using TeamArray = Squad<WPlayer>;

constexpr int MAX_RUN_CYCLES = 2;  // that a defender is assumed to have run unseen
constexpr int LOOK_DIRECTIONS = 16;
constexpr int OLD_LOOK = 7;  // cycles

/// Ranks are small, so each takes a scan of its own, and nothing is sorted or allocated.
int closestTo(const TeamArray& team, const Vector2d& target, int maxAge, int index) {
  if (!isShirtNumber(index)) return -1;

  Squad<bool> sorted;
  int closest = -1;
  for (int rank = 1; rank <= index; ++rank) {
    closest = -1;
    double smallest = 0;
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      if (sorted[n] || team[n].age > maxAge) continue;
      const Vector2d way = team[n].pos - target;
      if (closest != -1 && way * way >= smallest) continue;
      closest = n;
      smallest = way * way;
    }
    if (closest == -1) return -1;
    sorted[closest] = true;
  }
  return closest;
}

int countInCorridor(const TeamArray& team, const Vector2d& source, const Vector2d& target, double d,
                    Angle alpha, int maxAge) {
  const auto found = std::count_if(team.begin(), team.end(), [&](const WPlayer& player) {
    return player.age <= maxAge && player.inCorridor(source, target, d, alpha);
  });
  return static_cast<int>(found);
}

/// A distance (metres) behind the ball, but within our half.
double behindBall(const WBall& ball, double distance) {
  return std::min(0.0, std::max(-HALF_LENGTH, ball.pos.x - distance));
}

}  // namespace

int Worldmodel::ourTeamClosestTo(const Vector2d& target, int maxAge, int index) const {
  return closestTo(ourTeam, target, maxAge, index);
}

int Worldmodel::otherTeamClosestTo(const Vector2d& target, int maxAge, int index) const {
  return closestTo(otherTeam, target, maxAge, index);
}

int Worldmodel::ourTeamInCorridor(const Vector2d& source, const Vector2d& target, double d,
                                  Angle alpha, int maxAge) const {
  return countInCorridor(ourTeam, source, target, d, alpha, maxAge);
}

int Worldmodel::otherTeamInCorridor(const Vector2d& source, const Vector2d& target, double d,
                                    Angle alpha, int maxAge) const {
  return countInCorridor(otherTeam, source, target, d, alpha, maxAge);
}

double Worldmodel::ourOffsideLine(int maxAge) const {
  if (isInOwnHalves(playMode)) return 0.0;
  const int maxRun = std::min(maxAge / 2, MAX_RUN_CYCLES);
  double last = 0.0;
  double secondLast = 0.0;
  for (const WPlayer& defender : otherTeam) {
    if (defender.age > maxAge) continue;
    const double x = defender.pos.x - defender.vmax * std::min(maxRun, defender.age);
    secondLast = std::max(secondLast, std::min(last, x));
    last = std::max(last, x);
  }
  return std::max(secondLast, ball.pos.x);
}

double Worldmodel::otherOffsideLine(int maxAge) const {
  switch (playMode) {
    case PLAY_MODE_KICK_IN_US:
    case PLAY_MODE_FREE_KICK_US:
      return behindBall(ball, 10.0);
    case PLAY_MODE_KICK_IN_THEM:
    case PLAY_MODE_FREE_KICK_THEM:
      return behindBall(ball, 20.0);
    case PLAY_MODE_CORNER_KICK_US:
    case PLAY_MODE_CORNER_KICK_THEM:
    case PLAY_MODE_GOAL_KICK_THEM:
      return 0.0;
    case PLAY_MODE_GOAL_KICK_US:
      return -PENALTY_AREA_X;
    default:
      break;
  }
  double last = 0.0;
  double secondLast = 0.0;
  for (const WPlayer& defender : ourTeam) {
    if (defender.age > maxAge) continue;
    const double x = defender.pos.x;
    secondLast = std::min(secondLast, std::max(last, x));
    last = std::min(last, x);
  }
  return std::min(secondLast, ball.pos.x);
}

Angle Worldmodel::getViewAngle(view_width width) {
  switch (width) {
    case VIEW_WIDTH_NARROW:
      return PI / 8;
    case VIEW_WIDTH_NORMAL:
      return PI / 4;
    case VIEW_WIDTH_WIDE:
      return PI / 2;
    default:
      return 0.0;
  }
}

int Worldmodel::dirAge(Angle alpha) const {
  long freshest = NEVER;
  for (std::size_t i = 0; i < vDir.size(); ++i) {
    if (std::abs(vDir[i] - alpha) <= std::abs(vAngle[i])) freshest = std::min(freshest, vAge[i]);
  }
  return static_cast<int>(freshest);
}

bool Worldmodel::lookAroundFinished() const {
  int old = 0;
  for (int j = 0; j < LOOK_DIRECTIONS; ++j) {
    const double relative = -PI + j * PI / 8;
    if (dirAge(my.bodyDir + relative) > OLD_LOOK) ++old;
  }
  return old < LOOK_DIRECTIONS / 2;
}

}  // namespace vok
