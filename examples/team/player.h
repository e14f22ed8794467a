// What the topics of this team share: one player with its world, its evaluations and what it
// remembers from cycle to cycle. Places are metres in the field frame (<VOK/coordinates.h>):
// whatever side we play on, we attack towards positive x. Times are cycles.
#pragma once

#include <VOK/Comm.h>
#include <VOK/advskills.h>
#include <VOK/goalshoteval.h>
#include <VOK/passeval.h>
#include <VOK/positioneval.h>
#include <VOK/tacticalmodule.h>
#include <VOK/worldmodel.h>

#include <iosfwd>

/// What is remembered that the world does not know.
struct Memory {
  vok::play_mode mode = vok::PLAY_MODE_UNKNOWN;  ///< in the cycle before
  long modeCycles = 0;                           ///< own cycles since it began
  int kicker = -1;                               ///< whom the coach named in this set play
  int ourPenalties = 0;                          ///< penalties of ours up to now
  bool kickOffIsOurs = false;
  vok::team_number lastTouch = vok::TEAM_UNKNOWN;  ///< who touched the ball last
  int lastToucher = -1;                            ///< his shirt number
  bool tookKick = false;       ///< we took a kick, and nobody has touched the ball since
  double runDirection = 0;     ///< of our run with the ball, radians in the field frame
  long runTime = -vok::NEVER;  ///< the last cycle of it
  int listenedTo = -1;         ///< shirt number of the team-mate who has our attention
  long listenedSince = -10;    ///< the cycle in which he got it
};

struct Player {
  explicit Player(vok::Comm& connection);

  const vok::WPlayer& me() const { return world.my; }
  vok::play_mode mode() const { return comm.getPlayMode(); }
  bool isGoalie() const { return comm.amIGoalie(); }

  vok::Comm& comm;
  vok::Worldmodel world;
  vok::AdvSkills skills;
  vok::GoalShotEval goalShots;
  vok::PassEval passes;
  vok::PositionEval places;
  vok::TacticalModule tactics;
  Memory memory;
  std::ostream* pictures =
      nullptr;  ///< takes the world at the end of every set play, if anybody does
};

// loop.cpp

/// Plays the match to its end. Returns null when it is over, else why this player stops.
const char* play(Player& player);

// positioning.cpp

/// Where the player belongs at present: its place in the formation, not offside.
vok::Vector2d home(const Player& player);
/// Before a kick-off: to the place by a command of the server's.
vok::Command takePlace(const Player& player);
/// Without the ball: hold the place, or guard an opponent near it.
vok::Command holdPlace(const Player& player);
/// Turns around until the ball is in sight.
vok::Command searchBall(const Player& player);

// ball.cpp

/// Play on for a field player.
vok::Command playOn(Player& player);
/// With the ball in reach: shot, pass, dribbling or a clearance.
vok::Command handleBall(Player& player);
/// The pass that promises most, by one kick; none when nobody is free.
vok::Command passBall(Player& player);

// setplays.cpp

/// From an interruption to the kick, ours and theirs.
vok::Command setPlay(Player& player);

// goalie.cpp
vok::Command guardGoal(Player& player);

// penalties.cpp
bool isPenalty(vok::play_mode mode);
vok::Command penalty(const Player& player);

// talk.cpp

/// Takes over what coach and team-mates said.
void listen(Player& player);
/// Tells the team-mates of the ball, or where we are, and chooses whom to listen to.
void talk(Player& player);

// look.cpp

/// Turns the neck where most is to be learned, and sets the width of the view.
void look(const Player& player, const vok::Command& command);
