// A player's tactics: who goes to the ball, whose it is, and what the team does with it.
#include <algorithm>
#include <array>
#include <cmath>

#include "ballreach.h"
#include "constants.h"
#include "playmodes.h"
#include "tacticalmodule.h"

namespace vok {

namespace {

/// A ball that was not seen for longer is nobody's, cycles.
constexpr int MAX_BALL_AGE = 30;

/// Two players see the same race a little differently and would both go, or both stay. So who was
/// first remains it until another is sooner by so many cycles.
constexpr double STAY_FIRST = 0.5;
/// The goalie leaves balls outside its area to others who are not later by more, cycles.
constexpr double GOALIE_LATE = 6;

/// How a way to our goal compares with one to the ball, cycles per metre: about the time in which a
/// shot covers it.
constexpr double GOAL_WAY = 0.5;

/// A told action holds for so long at most, cycles: about the longest pass.
constexpr int MAX_ACTION_AGE = 25;

/// Orders a team by a key, best first; keeps the three with the smallest.
class ThreeBest {
 public:
  void offer(int number, double key) {
    if (!(key < NEVER)) return;
    std::size_t place = 3;
    while (place > 0 && key < keys_[place - 1]) --place;
    for (std::size_t i = 2; i > place; --i) {
      keys_[i] = keys_[i - 1];
      numbers_[i] = numbers_[i - 1];
    }
    if (place == 3) return;
    keys_[place] = key;
    numbers_[place] = number;
  }
  int operator[](std::size_t place) const { return numbers_[place]; }

 private:
  std::array<double, 3> keys_{NEVER, NEVER, NEVER};
  std::array<int, 3> numbers_{-1, -1, -1};
};

bool isTheirs(play_mode mode) {
  return isSetPlay(mode) && playmodeTeam(mode) == TEAM_THEM;
}

bool isOurs(play_mode mode) {
  return isSetPlay(mode) && playmodeTeam(mode) == TEAM_US;
}

Reach reachOf(const WPlayer& player, const BallWay& way, bool ours) {
  if (player.age == NEVER) return {};
  const bool atGoal = ours ? inOurPenaltyArea(way[0], 0) : inOtherPenaltyArea(way[0], 0);
  Reach reach = earliestReach(Runner(player, playingReach(player, atGoal)), way);
  const int lying = TACKLE_CYCLES - player.cyclesSinceTackle;
  if (lying > 0) reach.cycles = std::min(NEVER, reach.cycles + lying);
  return reach;
}

}  // namespace

void TacticalModule::determineResponsibility() {
  fillReachTables();
  rankResponsible();
  rankDangerous();
}

void TacticalModule::fillReachTables() {
  const BallWay way(world->ball.pos, world->ball.v);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const WPlayer& mate = n == world->my.number ? world->my : world->ourTeam[n];
    const Reach ours = reachOf(mate, way, true);
    ourTeamReachBallTime[n] = ours.cycles;
    ourTeamReachBallPos[n] = ours.pos;
    const Reach theirs = reachOf(world->otherTeam[n], way, false);
    otherTeamReachBallTime[n] = theirs.cycles;
    otherTeamReachBallPos[n] = theirs.pos;
  }
}

/// Equal times are decided by the way to the ball as it lies. Who was not seen for long still
/// counts where he was: in recordings of players who look around at random, leaving those out after
/// 30 cycles made players who were not the first take themselves for it more than twice as often,
/// and hardly more of those who were.
void TacticalModule::rankResponsible() {
  ThreeBest best;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    double key = static_cast<double>(ourTeamReachBallTime[n]);
    key += 0.01 * std::min(50.0, world->ourTeam[n].distTo(ourTeamReachBallPos[n]));
    if (n == firstResponsiblePlayer) key -= STAY_FIRST;
    if (n == world->ourGoalieNo && !inOurPenaltyArea(ourTeamReachBallPos[n], 0)) key += GOALIE_LATE;
    best.offer(n, key);
  }
  firstResponsiblePlayer = best[0];
  secondResponsiblePlayer = best[1];
  thirdResponsiblePlayer = best[2];
}

void TacticalModule::rankDangerous() {
  ThreeBest best;
  const Vector2d goal(-HALF_LENGTH, 0);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const double way = (otherTeamReachBallPos[n] - goal).getLength();
    const double time = static_cast<double>(otherTeamReachBallTime[n]);
    const double apart = world->otherTeam[n].distTo(goal);
    best.offer(n, time + GOAL_WAY * (way + 0.1 * apart));
  }
  firstDangerousOpponent = best[0];
  secondDangerousOpponent = best[1];
  thirdDangerousOpponent = best[2];
}

int TacticalModule::ourEdge(int n) const {
  if (n == world->ourGoalieNo) return ourEdgeGoalie;
  if (ourTeamDefender(n)) return ourEdgeDefender;
  if (ourTeamDefMidfield(n)) return ourEdgeDefMidfield;
  return ourTeamOffMidfield(n) ? ourEdgeOffMidfield : ourEdgeOffender;
}

int TacticalModule::otherEdge(int n) const {
  if (n == world->ourGoalieNo) return otherEdgeGoalie;
  if (ourTeamDefender(n)) return otherEdgeDefender;
  if (ourTeamDefMidfield(n)) return otherEdgeDefMidfield;
  return ourTeamOffMidfield(n) ? otherEdgeOffMidfield : otherEdgeOffender;
}

void TacticalModule::determineBallControl() {
  const auto soonest =
      std::min_element(otherTeamReachBallTime.begin(), otherTeamReachBallTime.end());
  ourBallControl = BC_UNKNOWN;
  if (isOurs(world->playMode)) {
    ourBallControl = BC_SAFE;
  } else if (isTheirs(world->playMode)) {
    ourBallControl = BC_LOST;
  } else if (world->ball.age <= MAX_BALL_AGE) {
    const int ours = firstResponsiblePlayer;
    if (ours == -1) {
      if (*soonest < NEVER) ourBallControl = BC_LOST;
      return;
    }
    const long lead = *soonest - ourTeamReachBallTime[ours];
    ourBallControl = BC_DANGER;
    if (lead >= ourEdge(ours)) ourBallControl = BC_SAFE;
    if (lead <= -otherEdge(ours)) ourBallControl = BC_LOST;
  }
}

void TacticalModule::determineOurTacticalAction() {
  ageOneCycle(ourAction.age);
  if (reportedTAction.state != TA_UNKNOWN) {
    ourAction = reportedTAction;
  } else if (audioTAction.state != TA_UNKNOWN && ourAction.quality > TQ_REPORTED) {
    ourAction = audioTAction;
  }
  if (!goesOn(ourAction)) {
    const TacticalAction guessed = guessedAction();
    const bool same = guessed.state == ourAction.state && guessed.performer == ourAction.performer;
    const long age = same ? ourAction.age : 0;
    ourAction = guessed;
    ourAction.age = age;
  }
  attentionTo = ourAction.performer;
  if (ourAction.state == TA_PASS) attentionTo = ourAction.receiver;
  if (attentionTo == world->my.number) attentionTo = secondResponsiblePlayer;
  if (attentionTo == world->my.number) attentionTo = -1;
}

/// Our player who can kick the ball, -1 for none.
int TacticalModule::ourKicker() const {
  if (firstResponsiblePlayer == -1 || ourTeamReachBallTime[firstResponsiblePlayer] > 0) return -1;
  return firstResponsiblePlayer;
}

/// The opponent who can kick the ball, -1 for none.
int TacticalModule::otherKicker() const {
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (otherTeamReachBallTime[n] == 0) return n;
  }
  return -1;
}

/// Whether a told action may still be what happens. A guess is made anew in every cycle.
bool TacticalModule::goesOn(const TacticalAction& action) const {
  if (action.state == TA_UNKNOWN || action.quality == TQ_GUESSED) return false;
  if (action.age > MAX_ACTION_AGE || otherKicker() != -1) return false;
  const int kicker = ourKicker();
  switch (action.state) {
    case TA_PASS:
    case TA_GOALSHOT:
      return kicker == -1 || kicker == action.performer;
    case TA_CONTROL:
      return kicker == action.performer || firstResponsiblePlayer == action.performer;
    case TA_REACT:
      return kicker == -1;
    default:
      return false;
  }
}

/// A ball that rolls away from a player who controlled it goes to who gets there first.
TacticalAction TacticalModule::guessedAction() const {
  TacticalAction guess;
  guess.quality = TQ_GUESSED;
  guess.performer = firstResponsiblePlayer;
  const int kicker = ourKicker();
  if (ourBallControl == BC_UNKNOWN) {
    guess.quality = TQ_UNKNOWN;
    guess.performer = -1;
  } else if (kicker != -1) {
    guess.state = TA_CONTROL;
  } else if (otherKicker() != -1 || ourBallControl == BC_LOST) {
    guess.state = TA_REACT;
  } else if (WBall mirrored(-world->ball.pos, -world->ball.v);
             mirrored.willCrossOurGoalLine(GOAL_WIDTH / 2)) {
    guess.state = TA_GOALSHOT;
    guess.performer = ourAction.performer;
  } else if (ourAction.performer != -1 && ourAction.performer != firstResponsiblePlayer &&
             (ourAction.state == TA_CONTROL || ourAction.state == TA_PASS)) {
    guess.state = TA_PASS;
    guess.performer = ourAction.performer;
    guess.receiver = firstResponsiblePlayer;
  } else {
    guess.state = TA_CONTROL;
  }
  return guess;
}

void TacticalModule::reportOurTacticalAction(TacticalActionState state, int performer,
                                             int receiver) {
  reportedTAction.state = state;
  reportedTAction.quality = TQ_REPORTED;
  reportedTAction.age = 0;
  reportedTAction.performer = isShirtNumber(performer) ? performer : -1;
  reportedTAction.receiver = isShirtNumber(receiver) ? receiver : -1;
  communicateAction = state != TA_UNKNOWN;
}

void TacticalModule::reportOurTacticalAction(TacticalActionState state, int performer, int receiver,
                                             const WBall& ball) {
  reportOurTacticalAction(state, performer, receiver);
  simulatedBall = ball;
  simulatedBall.age = 0;
  communicateSimAction = communicateAction;
}

}  // namespace vok
