// Where the opponents play, relative to their formation's centre and spread.
//
// Positions normalised in this way show a player's role wherever the whole team stands. The means
// are those of the last 50 to 100 updates. Indexed by shirt number, metres, field frame.
#pragma once

#include <array>

#include "worldmodel.h"

namespace vok {

class Team {
 public:
  /// The world may be null until the first update.
  explicit Team(const Worldmodel* world) : world(world) {}

  /// Centre and spread of the opponents that were seen lately, without their goalie; unchanged
  /// when there are none.
  void CalcTeamCOG();

  /// Takes one cycle's positions in.
  void Update();

  // By opponent. A number outside 0..11 is reported; it and a rarely seen opponent give the origin.
  Vector2d GetPos(int k) const;
  Vector2d GetVar(int k) const;
  Vector2d GetaPos(int k) const;
  Vector2d GetaVar(int k) const;

  Vector2d GetTeamCOG() const { return TeamCOG; }
  Vector2d GetTeamVar() const { return TeamVar; }

  /// The two opponents with the greatest mean x: their rear defenders. 0 where there is none.
  void GetDefensePlayer(int& first, int& second) const;

  template <typename T>
  using PerOpponent = Squad<T>;

  const Worldmodel* world;  ///< not owned
  int formation = 0;        ///< slot of the counts per formation
  long aCount = 0;          ///< updates with a spread
  int afor = 0;             ///< the bank that is read

  // Two banks of samples in normalised units; each is cleared every 100 updates, 50 apart.
  std::array<PerOpponent<long>, 2> aNPos{};
  std::array<PerOpponent<Vector2d>, 2> aSummePos{};
  std::array<PerOpponent<Vector2d>, 2> aSummePosSq{};
  PerOpponent<Vector2d> aPos{};     ///< mean positions, metres
  PerOpponent<Vector2d> aPosVar{};  ///< their spreads

  // Per formation slot. Only the counts are kept; the sums and results stay zero.
  std::array<PerOpponent<long>, 3> NPos{};
  std::array<PerOpponent<Vector2d>, 3> SummePos{};
  std::array<PerOpponent<Vector2d>, 3> SummePosSq{};
  PerOpponent<Vector2d> Pos{};
  PerOpponent<Vector2d> PosVar{};

  Vector2d TeamCOG;
  Vector2d TeamVar;  ///< standard deviation by axis

 private:
  bool counts(int k) const;
  void changeBank();
  void addSample(int k);
  Vector2d valueIfKnown(const PerOpponent<Vector2d>& values, int k, const char* operation) const;
};

}  // namespace vok
