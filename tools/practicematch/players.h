// What the 22 players do: the nearest of each team goes to the ball, the others keep formation.
#pragma once

#include <string>
#include <vector>

#include "referee.h"
#include "world.h"

namespace vok::practicematch {

class Players {
 public:
  explicit Players(Dice dice) : dice_(dice) {}

  /// Every player's action of the coming step. Touches and fouls go to the referee, whose calls are
  /// appended.
  void act(World& world, Referee& referee, std::vector<std::string>& calls);

  /// Before a kick-off they only look around.
  void lookAround(World& world);

 private:
  void actWithBall(World& world, Player& p, Referee& referee, std::vector<std::string>& calls);
  bool tackles(World& world, Player& p, Referee& referee, std::vector<std::string>& calls);
  void runTo(World& world, Player& p, Vector2d target, double maxPower) const;
  void face(World& world, Player& p, Vector2d point, double tolerance) const;
  void moveHead(const World& world, Player& p);
  Player* chaser(World& world, const Referee& referee, Side side) const;
  Vector2d formationPlace(const World& world, const Referee& referee, const Player& p);
  Vector2d chooseKick(const World& world, const Player& p, bool setPlay);
  const Player* bestMate(const World& world, const Player& p, bool setPlay);

  Dice dice_;
  Side control_ = Side::Left;  ///< the team that touched the ball last
};

}  // namespace vok::practicematch
