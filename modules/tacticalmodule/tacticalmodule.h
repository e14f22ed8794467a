// The team's tactical system, the roles of its players, and what observation tells: a coach about
// each opponent's heterogeneous type, a player about who is to go to the ball, who controls it, and
// what the team is doing. Players tell each other of the last in three characters of their
// messages.
//
// Reads the world it was given and owns nothing of it. Shirt numbers index all tables; entry 0 is
// no player. A player's cycle: the world's update, `feedbackWorld`, decisions by the members below,
// `reportOurTacticalAction` for what it does about the ball, `calcTurnHead` for where it looks, and
// `determineMessageType` with `encodeAudio` for what it says. Nothing in it allocates.
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

/// Where a player wants to look.
enum TurnHeadWish {
  TH_STAY = 0,      ///< leaves the neck as it is
  TH_BALL = 1,      ///< where the ball will be in the next cycle
  TH_AROUND = 2,    ///< where it has not looked for long
  TH_RECEIVER = 3,  ///< at the mate to whom it passes
  TH_GOAL = 4       ///< at the other goal and its goalie
};

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

  /// Once a cycle, after the world's update: a coach observes the opponents' types, a player takes
  /// in what its mates said, and determines the responsible players, the control of the ball and
  /// the team's action. Returns true.
  bool feedbackWorld();

  /// Rules out the types that the opponents' motion since the previous call contradicts. Only two
  /// calls of consecutive cycles in play-on are compared. With "tac_typesFromDecay" the decay of
  /// the opponents' speed decides instead.
  void determineOtherPlayerTypes();

  /// The inferred type of an opponent; -1 while unknown and for no shirt number.
  int otherPlayerType(int n) const;

  // For players. `feedbackWorld` runs the first four, in this order.

  /// Takes over what team-mates said since the previous call. True when one told of the team's
  /// action.
  bool feedbackAudio();
  /// Who gets to the ball when and where, the three of our team who are to go to it, and the three
  /// opponents to be watched: those who would threaten our goal soonest with it.
  void determineResponsibility();
  /// The ball is safe when the first responsible player is there by his role's `ourEdge` in cycles
  /// before the first opponent, lost when that one is there by his `otherEdge` before him, and
  /// otherwise in danger. A set play's ball is of the team that takes the kick.
  void determineBallControl();
  /// The team's action: what the player has reported itself, or what was heard, for as long as the
  /// ball confirms it; else what the ball suggests (`TQ_GUESSED`).
  void determineOurTacticalAction();

  /// Tells what our player does in this cycle, or sees a mate do. The mates hear of it
  /// (`MSGTYPE_ACTION`). Numbers are shirt numbers, -1 for none; what is none becomes -1.
  void reportOurTacticalAction(TacticalActionState state, int performer, int receiver);
  /// The same with the ball as it will be when the action is done, such as after the kick of a pass
  /// (`MSGTYPE_SIM_ACTION`): the receiver hears where the ball comes before it sees it.
  void reportOurTacticalAction(TacticalActionState state, int performer, int receiver,
                               const WBall& ball);

  /// Where to look next. The ball is looked at when its place is old for its distance.
  TurnHeadWish calcTurnHead() const;
  /// The moment of the "turn_neck" (radians) that fulfils a wish, as far as the neck allows.
  /// `bodyTurn` is by how much the body turns in the same cycle.
  Angle turnHeadMoment(TurnHeadWish wish, Angle bodyTurn = 0) const;

  /// What our player should say in this cycle; `MSGTYPE_NONE` for nothing. A player hears one mate
  /// a cycle, so apart from actions only the one next to the ball and one other by turns speak.
  MessageType determineMessageType() const;
  /// Writes all characters of a message and the terminator; `text` has room for
  /// `PlayerMessage::LENGTH` + 1. With `MSGTYPE_NONE` the text is empty. Counts as said.
  void encodeAudio(MessageType type, char* text);
  /// Reads the tactical part of a mate's message of `PlayerMessage::LENGTH` characters: the action,
  /// the grade of a pass (`playerPassInfo`), and a simulated ball. False when there is none.
  bool decodeAudio(const char* text, int sender);

  BallControlState ourBallControl = BC_UNKNOWN;
  TacticalAction ourAction;
  TacticalSystem ourSystem{4, 2, 2, 2};
  // By the role of our first responsible player, in cycles: how much earlier than every opponent he
  // has to be at the ball to have it safely, and how much later, to have lost it. What follows down
  // to `reportedTAction`, but for the pointers, is for players.
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
  // Shirt numbers, -1 for none: who gets to the ball soonest, and who threatens our goal most.
  int firstResponsiblePlayer = -1;
  int secondResponsiblePlayer = -1;
  int thirdResponsiblePlayer = -1;
  int firstDangerousOpponent = -1;
  int secondDangerousOpponent = -1;
  int thirdDangerousOpponent = -1;
  /// How well each mate can be passed to; set by who rates a pass and by what is heard of one.
  Squad<PlayerPassInfo> playerPassInfo;
  // Where each player can get the ball, metres in the field frame, and in how many cycles; `NEVER`
  // for one who was never seen.
  Squad<long> ourTeamReachBallTime;
  Squad<long> otherTeamReachBallTime;
  Squad<Vector2d> ourTeamReachBallPos;
  Squad<Vector2d> otherTeamReachBallPos;
  /// Shirt number of the mate who is worth listening to ("attentionto"), -1 for none: who acts on
  /// the ball.
  int attentionTo = -1;
  long cyclesSinceLastMessage = NEVER;  ///< counted up to `NEVER`
  bool communicateAction = false;       ///< the own action is to be said
  bool communicateSimAction = false;    ///< that on the simulated ball; for one cycle
  WBall simulatedBall;          ///< of an action that was told or heard; its age counts since then
  const Worldmodel* world;      ///< not owned
  AdvSkills* skills;            ///< not owned
  TacticalAction audioTAction;  ///< heard from a team-mate in this cycle
  TacticalAction reportedTAction;  ///< told by the player itself in this cycle
  Squad<WPlayer> oldPlayer;        ///< the opponents at the previous call
  long oldTime = -2;               ///< cycle of the previous call
  int oldNumSubs = 0;              ///< the opponents' changes up to the previous call
  TypeBeliefs playerTypeData;      ///< opponents' beliefs by type id
  Squad<int> playerType;           ///< the opponents' types, -1 while unknown
  bool typesFromDecay;             ///< configured
  DecayTypes decayTypes;           ///< the inference that is then used
  long heardUpTo = 0;              ///< of the world's `heardCount`

 private:
  bool placeWithin(int n, long behind, long upTo) const;
  int ourEdge(int n) const;
  int otherEdge(int n) const;
  void fillReachTables();
  void rankResponsible();
  void rankDangerous();
  bool goesOn(const TacticalAction& action) const;
  TacticalAction guessedAction() const;
  int ourKicker() const;
  int otherKicker() const;
  bool isNextToBall() const;
  Vector2d turnHeadTarget(TurnHeadWish wish) const;
  double leastKnownNeck(Angle body) const;
  bool substitutedSinceLastCall(int n) const;
  void forgetType(int n);
  void excludeTypes(int n);
  void decideType(int n);
};

}  // namespace vok
