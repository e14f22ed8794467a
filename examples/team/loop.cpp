// The main loop, and the one decision of a cycle: exactly one command for the body, then the neck,
// the view and the voice.
#include <VOK/constants.h>
#include <VOK/cycleloop.h>
#include <VOK/playmodes.h>
#include <VOK/stopsignals.h>
#include <VOK/worldstream.h>

#include <algorithm>

#include "player.h"

using namespace vok;

Player::Player(Comm& connection)
    : comm(connection),
      world(&connection),
      skills(world),
      passes(&goalShots),
      places(&goalShots, &passes),
      tactics(&world, &skills) {
  world.takeChangesWithoutComma();  // current servers announce our types so
  // Until the goalie is seen or the coach names it, we take it for the first player. The world
  // keeps what it learns first, so it must not take the assumption for learned.
  const int goalie = isGoalie() ? comm.getMyNumber() : FIRST_SHIRT;
  world.adjustTacticalNumbers(goalie);
  if (!isGoalie()) world.ourGoalieNo = -1;
}

namespace {

void followMode(Player& player) {
  Memory& memory = player.memory;
  const play_mode mode = player.mode();
  ++memory.modeCycles;
  if (mode == memory.mode) return;
  const bool kickIsTaken = isSetPlay(memory.mode) && mode == PLAY_MODE_PLAY_ON;
  if (kickIsTaken && player.pictures != nullptr) writeWorld(*player.pictures, player.world);
  memory.mode = mode;
  memory.modeCycles = 0;
  memory.kicker = -1;
  if (mode == PLAY_MODE_PENALTY_SETUP_US) ++memory.ourPenalties;
  // The left team kicks off first, the right one in the second half.
  if (mode == PLAY_MODE_HALF_TIME) memory.kickOffIsOurs = player.comm.getMySide() == SIDE_RIGHT;
  if (mode == PLAY_MODE_BEFORE_KICK_OFF && player.world.time == 0) {
    memory.kickOffIsOurs = player.comm.getMySide() == SIDE_LEFT;
  }
  if (mode == PLAY_MODE_GOAL_US) memory.kickOffIsOurs = false;
  if (mode == PLAY_MODE_GOAL_THEM) memory.kickOffIsOurs = true;
}

/// Whoever is next to the ball and within reach of it has touched it.
void followBall(Player& player) {
  constexpr int JUST_SEEN = 2;     // cycles
  constexpr double AT_BALL = 1.5;  // metres
  const Worldmodel& world = player.world;
  Memory& memory = player.memory;
  const int mate = world.ourTeamClosestTo(world.ball.pos, JUST_SEEN, 1);
  const int opponent = world.otherTeamClosestTo(world.ball.pos, JUST_SEEN, 1);
  const double ours = mate == -1 ? NEVER : world.ourTeam[mate].distTo(world.ball.pos);
  const double theirs = opponent == -1 ? NEVER : world.otherTeam[opponent].distTo(world.ball.pos);
  if (std::min(ours, theirs) > AT_BALL) return;
  memory.lastTouch = ours < theirs ? TEAM_US : TEAM_THEM;
  memory.lastToucher = ours < theirs ? mate : opponent;
  const bool mine = memory.lastTouch == TEAM_US && memory.lastToucher == world.my.number;
  if (!mine) memory.tookKick = false;
}

/// Neither ball nor own place are known well enough. A ball within reach is in every view, even
/// behind the back: when the last one did not show it, it is not there.
bool isLost(const Worldmodel& world) {
  constexpr int FORGOTTEN = 20;  // cycles
  constexpr int LOST_BALL = 10;
  const WBall& ball = world.ball;
  const bool notThere = world.my.ballKickable(ball) && ball.age > world.visualAge;
  return world.my.age > FORGOTTEN || ball.age > LOST_BALL || notThere;
}

/// The command for the body.
Command decide(Player& player) {
  const play_mode mode = player.mode();
  if (allowsPlacing(mode)) return takePlace(player);
  if (isPenalty(mode)) return penalty(player);
  if (player.me().cyclesSinceTackle <= TACKLE_CYCLES) return {};  // it lies on the ground
  if (isLost(player.world)) return searchBall(player);
  if (mode != PLAY_MODE_PLAY_ON) return setPlay(player);
  return player.isGoalie() ? guardGoal(player) : playOn(player);
}

void runCycle(Player& player) {
  followMode(player);
  followBall(player);
  player.skills.feedbackWorld();
  player.tactics.feedbackWorld();
  player.places.CalMinMaxX(&player.world);
  player.places.CalPlayerPositions(&player.world);

  const Command command = decide(player);
  const bool setPlayOurs = isSetPlay(player.mode()) && playmodeTeam(player.mode()) == TEAM_US;
  if (setPlayOurs) player.memory.tookKick = command.kind == KICK_COMMAND;
  send(player.comm, command);
  // Every cycle has a command, also when there is nothing to do or the connection refused it.
  if (player.comm.isActionNeeded()) player.comm.sendTurn(0);
  look(player, command);
  talk(player);
  endCycle(player.comm);
}

}  // namespace

const char* play(Player& player) {
  Comm& comm = player.comm;
  while (!comm.isGameOver()) {
    comm.drainSocket();
    if (isStopRequested()) return nullptr;
    const bool newCycle = takeCycle(comm, player.world);
    listen(player);
    if (newCycle) runCycle(player);
    if (!comm.isServerAlive()) return "has lost the server";
  }
  return nullptr;
}
