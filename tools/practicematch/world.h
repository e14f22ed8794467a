// Ball and players, and how they move: the simulator's rules.
//
// Field coordinates for both teams, metres and cycles; a player's angles in degrees. In each cycle
// the acceleration goes into the velocity, then comes noise, then the position moves, then the
// velocity decays: what is sent is the decayed velocity.
#pragma once

#include <array>
#include <vector>

#include "coordinates.h"
#include "dice.h"
#include "pitch.h"
#include "playertypes.h"

namespace vok::practicematch {

// The server's own parameters, as it also tells them in server_param.
inline constexpr double BALL_SIZE = 0.085;
inline constexpr double BALL_DECAY = 0.94;
inline constexpr double BALL_ACCEL_MAX = 2.7;
inline constexpr double BALL_SPEED_MAX = 3;
inline constexpr double STAMINA_MAX = 8000;

enum class Side { Left, Right };
inline Side other(Side side) {
  return side == Side::Left ? Side::Right : Side::Left;
}
inline char letter(Side side) {
  return side == Side::Left ? 'l' : 'r';
}
inline std::size_t index(Side side) {
  return side == Side::Left ? 0 : 1;
}
/// Direction of a side's attack along x.
inline double forward(Side side) {
  return side == Side::Left ? 1 : -1;
}

struct Mover {
  Vector2d pos;
  Vector2d vel;
  Vector2d acc;  ///< of the coming step
};

struct Player : Mover {
  Side side = Side::Left;
  int number = 0;
  int type = 0;
  bool typeChosen = false;  ///< by a coach
  double body = 0;          ///< degrees, like all directions here
  double neck = 0;          ///< relative to the body
  double stamina = STAMINA_MAX;
  double effort = 1;
  int tackling = 0;  ///< cycles left in which the player can do nothing
  int pointing = 0;  ///< cycles left
  double pointAngle = 0;
  bool tackleWorks = false;  ///< the last one
  // Commands since the beginning of the match; of the kicks those that hit the ball.
  int kicks = 0;
  int dashes = 0;
  int turns = 0;
  int tackles = 0;

  bool goalie() const { return number == 1; }
};

using Team = Squad<Player>;

struct World {
  World(int typeCount, Dice dice);

  Team& team(Side side) { return teams[index(side)]; }
  const Team& team(Side side) const { return teams[index(side)]; }
  const HeteroType& typeOf(const Player& p) const {
    return types[static_cast<std::size_t>(p.type)];
  }
  double kickableDistance(const Player& p) const;
  bool kickable(const Player& p) const;

  /// Gives a player a type and full stamina, as for a substitute.
  void setType(Player& p, int type);

  // What a player does in a cycle. Each sets accelerations or angles for the coming step.
  void dash(Player& p, double power);
  void turn(Player& p, double degrees);
  /// Changes the ball's velocity towards `wanted`, as far as the power of a kick allows.
  void kick(const Player& p, Vector2d wanted);

  void putBall(Vector2d spot);
  void step();

  Dice dice;
  std::vector<HeteroType> types;
  Mover ball;
  std::array<Team, 2> teams;

 private:
  /// A random vector, each coordinate up to `size`.
  Vector2d scatter(double size);
  void move(Mover& body, double speedMax, double decay, double rand);
  void tire(Player& p) const;
  void separate();
};

/// The same angle in (-180, 180].
double normalDegrees(double degrees);
double distance(Vector2d a, Vector2d b);
/// Direction from one point to another in degrees.
double direction(Vector2d from, Vector2d to);

}  // namespace vok::practicematch
