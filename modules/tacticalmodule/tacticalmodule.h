// The team's tactical system, the roles of its players, and what observation tells about each
// opponent's heterogeneous type.
//
// Reads the world it was given and owns nothing of it. Shirt numbers index all tables; entry 0 is
// no player.
#pragma once

#include "decaytypes.h"
#include "grade.h"
#include "playertypedata.h"
#include "worldmodel.h"

namespace vok {

/// The skills of a player; a coach has none.
class AdvSkills;

enum TacticalActionState {
  TA_CONTROL = 0,
  TA_PASS = 1,
  TA_GOALSHOT = 2,
  TA_REACT = 3,
  TA_UNKNOWN = 4
};

enum TacticalActionQuality {
  TQ_REPORTED = 0,
  TQ_AUDIAL_REPORTED = 1,
  TQ_AUDIAL = 2,
  TQ_GUESSED = 3,
  TQ_UNKNOWN = 4
};

enum BallControlState { BC_SAFE = 0, BC_DANGER = 1, BC_LOST = 2, BC_UNKNOWN = 3 };

/// Head counts of the field players by role; tactical numbers run through the roles in this order,
/// from 2 on.
struct TacticalSystem {
  int numDefenders;
  int numDefMidfield;
  int numOffMidfield;
  int numMidfield;  ///< both midfields
  int numOffenders;

  /// Ten field players are expected; other counts are reported and stored.
  TacticalSystem(int _numDef, int _numDefMid, int _numOffMid, int _numOff);
};

struct TacticalAction {
  TacticalActionState state = TA_UNKNOWN;
  TacticalActionQuality quality = TQ_UNKNOWN;
  long age = NEVER;    ///< cycles
  int performer = -1;  ///< shirt number
  int receiver = -1;   ///< shirt number
};

struct PlayerPassInfo {
  Grade grade = BAD;
  int xIndex = 0;
  int yIndex = 0;
  long age = NEVER;  ///< cycles
};

class TacticalModule {
 public:
  /// Reads the configuration. Either pointer may be null; without a world only the constructor may
  /// be called.
  TacticalModule(const Worldmodel* world, AdvSkills* skills);

  // Roles by shirt number. A number outside 1..11 is reported; it and a player without a place in
  // the formation have no role, and neither has the goalie.
  bool ourTeamDefender(int n) const;
  bool ourTeamDefMidfield(int n) const;
  bool ourTeamOffMidfield(int n) const;
  bool ourTeamMidfield(int n) const;
  bool ourTeamOffender(int n) const;

  /// Once a cycle, after the world's update. Returns true.
  bool feedbackWorld();

  /// Rules out the types that the opponents' motion since the previous call contradicts. Only two
  /// calls of consecutive cycles in play-on are compared. With "tac_typesFromDecay" the decay of
  /// the opponents' speed decides instead.
  void determineOtherPlayerTypes();

  /// The inferred type of an opponent; -1 while unknown and for no shirt number.
  int otherPlayerType(int n) const;

  BallControlState ourBallControl = BC_UNKNOWN;
  TacticalAction ourAction;
  TacticalSystem ourSystem{4, 2, 2, 2};
  // How far from its place a player feels responsible, by role, metres. Read and kept for players,
  // as all that follows down to `reportedTAction` but for the pointers.
  int ourEdgeDefender;
  int ourEdgeDefMidfield;
  int ourEdgeOffMidfield;
  int ourEdgeOffender;
  int ourEdgeGoalie;
  int otherEdgeDefender;
  int otherEdgeDefMidfield;
  int otherEdgeOffMidfield;
  int otherEdgeOffender;
  int otherEdgeGoalie;
  // Shirt numbers, -1 for none: who is to go to the ball, and who threatens our goal most.
  int firstResponsiblePlayer = -1;
  int secondResponsiblePlayer = -1;
  int thirdResponsiblePlayer = -1;
  int firstDangerousOpponent = -1;
  int secondDangerousOpponent = -1;
  int thirdDangerousOpponent = -1;
  Squad<PlayerPassInfo> playerPassInfo;  ///< our team's
  // Where each player can get the ball, metres in the field frame, and in how many cycles.
  Squad<long> ourTeamReachBallTime;
  Squad<long> otherTeamReachBallTime;
  Squad<Vector2d> ourTeamReachBallPos;
  Squad<Vector2d> otherTeamReachBallPos;
  int attentionTo = -1;                 ///< shirt number of a team-mate, -1 for none
  long cyclesSinceLastMessage = NEVER;  ///< counted up to `NEVER`
  bool communicateAction = false;       ///< the own action is to be said
  bool communicateSimAction = false;    ///< that on the simulated ball; for one cycle
  WBall simulatedBall;
  const Worldmodel* world;         ///< not owned
  AdvSkills* skills;               ///< not owned
  TacticalAction audioTAction;     ///< heard from a team-mate in this cycle
  TacticalAction reportedTAction;  ///< told by the player itself in this cycle
  Squad<WPlayer> oldPlayer;        ///< the opponents at the previous call
  long oldTime = -2;               ///< cycle of the previous call
  int oldNumSubs = 0;              ///< the opponents' changes up to the previous call
  TypeBeliefs playerTypeData;      ///< opponents' beliefs by type id
  Squad<int> playerType;           ///< the opponents' types, -1 while unknown
  bool typesFromDecay;             ///< configured
  DecayTypes decayTypes;           ///< the inference that is then used

 private:
  bool placeWithin(int n, long behind, long upTo) const;
  bool substitutedSinceLastCall(int n) const;
  void forgetType(int n);
  void excludeTypes(int n);
  void decideType(int n);
};

}  // namespace vok
