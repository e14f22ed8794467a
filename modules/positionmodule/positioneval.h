// Home positions and areas of the ten field players, from a configured formation.
//
// Once a cycle: `CalMinMaxX` fixes the band of the field that the team occupies lengthwise, then
// `CalPlayerPositions` places the players in it. Metres, field frame; places are found through the
// players' tactical numbers 2..11.
#pragma once

#include <array>

#include "formation.h"
#include "grade.h"
#include "worldmodel.h"

namespace vok {

class GoalShotEval;
class PassEval;

class PositionEval {
 public:
  /// Reads the configuration.
  PositionEval(const GoalShotEval* goalshoteval, const PassEval* passeval);

  void readAgent_conf();

  void CalMinMaxX(const Worldmodel* world);
  void CalPlayerPositions(const Worldmodel* world);

  double GetMinX() const { return minX; }
  double GetMaxX() const { return maxX; }
  double GetOffensive() const { return offensive; }

  /// By shirt number 2..11; the origin for a player without a place.
  Vector2d GetPlayerPosition(const Worldmodel* world, int n) const;

  /// Corners of the player's area; both at the origin for a player without a place.
  void GetPlayerArea(const Worldmodel* world, int n, Vector2d& lo, Vector2d& hi) const;

  /// The border is outside.
  bool IsInPlayerArea(const Worldmodel* world, int n, Vector2d p) const;

  /// Shirt number of the team-mate whom player `n` watches with watch `k` (0..2), or -1. Only the
  /// numbers 3..10 watch.
  int GetPlayerWatchNo(const Worldmodel* world, int n, int k) const;

  /// There is no such evaluation: reported, and undefined.
  Grade ourEval(const Worldmodel* world, int n) const;

  const GoalShotEval* goalshoteval;  ///< not owned
  const PassEval* passeval;          ///< not owned
  long time = -1;                    ///< cycle of the last band
  double oldminX = 0;                ///< lower bound in the cycle before
  double minX = 0;
  double maxX = 0;
  double offensive = 0;      ///< 0..1
  double defensive = 1;      ///< 0..1
  double ballFactorDef = 0;  ///< 0..1, slowly moving weights of `BMod`
  double ballFactorOff = 0;
  int defNo = 0;  ///< 0..2, the selected formations
  int offNo = 0;
  std::array<PlayerPos, 10> RealPositions;  ///< of tactical numbers 2..11; 0..4 are defensive
  std::array<HalfFormation, 3> OffFormations;
  std::array<HalfFormation, 3> DefFormations;

 private:
  void spanBand(double ballX, double offsideLine);
  void followPlayMode(const Worldmodel& world);
  void weighAttack(double ballX);
  void followAttack();
  void CalXPos();
  void CalYPos(Vector2d ball);
  void CalBallForce(Vector2d ball);
  const PlayerPos* placeOf(const Worldmodel& world, int n) const;
  const PlayerPos& configuredPlace(int tacticalNo) const;
};

}  // namespace vok
