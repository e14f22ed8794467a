// The one picture of the match that all decisions read.
//
// Positions are in metres in the field frame (coordinates.h), velocities in metres per cycle. Our
// goal is at x = -HALF_LENGTH on either side: positions and velocities of a team on the right are
// turned by 180 degrees when they are taken in, while body and face directions of a global view
// stay as the server sends them (those of a player's view are in the field frame, too). Teams are
// indexed by shirt number 1..11. How far an entry can be trusted depends on its age in cycles, so
// readers pass a maximum age. Only the world's own operations change it.
#pragma once

#include <array>
#include <iosfwd>
#include <tuple>
#include <vector>

#include "audiomsg.h"
#include "coachmessage.h"
#include "localisation.h"
#include "pitch.h"
#include "playermessage.h"
#include "seenobjects.h"
#include "sensordata.h"
#include "serverstate.h"
#include "worldobjects.h"

namespace vok {

class Comm;

enum class CollisionState { NONE = 0, CRITICAL = 1, PROCESSED = 2 };

/// One change of a player's type.
struct Substitution {
  int number = 0;  ///< shirt number
  long time = 0;   ///< the world's cycle in which it was announced
};

/// Whom a player of a view was taken for.
struct SeenAs {
  team_number team = TEAM_UNKNOWN;
  int number = -1;  ///< -1 for nobody
};

/// The characters of a team-mate's message.
struct HeardMessage {
  int sender = -1;  ///< shirt number
  std::array<char, PlayerMessage::LENGTH> text{};
};

/// A copy is independent of its original (but for `comm`), so that moves can be tried on it.
class Worldmodel {
 public:
  /// Starts a world in which no player was seen yet. Reads its configuration keys. `connection` may
  /// be null; it is kept for `adjust()` alone and has to live as long as that is called.
  explicit Worldmodel(Comm* connection);

  /// Takes one record, with the state of the server as the client knows it at that time: predicts
  /// up to the cycle of a view or body sense, then takes it over. An older one changes nothing.
  void adjust(const SensorData& data, const ServerState& state);
  /// Takes everything that the connection has queued.
  Worldmodel& adjust();
  /// Takes one global view over, without a prediction. Returns true.
  bool adjustExact(const SensorData& data);

  // What a player makes of a relative view of the world's cycle, in this order; a coach gets none.

  /// Finds the width of the view, which may be greater than the last body sense told.
  void checkViewWidth(const SensorData& view);
  /// Corrects our own place and directions by the landmarks, and notes where we have looked.
  void calcMyPos(const SensorData& view);
  void adjustGoals(const SensorData& view);
  void adjustBall(const SensorData& view);
  /// Takes over the players with a number, then those who can only be one; see `seenAs`.
  void adjustPlayers(const SensorData& view);

  /// Our goalie becomes tactical number 1, the others follow in the order of their shirt numbers.
  void adjustTacticalNumbers(int goalieNo);
  /// Predicts one cycle. Does not count `time` up.
  void simCycle();
  /// Gives our player the announced type that the server has granted. `number` is a shirt number,
  /// `type` an index of `playerType`.
  void setOurType(int number, int type);
  /// From now on a change that names its type without a comma counts as one of our own players,
  /// as current servers send it.
  void takeChangesWithoutComma() { ownChangesWithoutComma = true; }

  // Queries. A player takes part when its age is at most `maxAge`.

  /// Number of the `index`-th closest (from 1) to the target, -1 when there is none.
  int ourTeamClosestTo(const Vector2d& target, int maxAge, int index) const;
  int otherTeamClosestTo(const Vector2d& target, int maxAge, int index) const;
  /// How many stand in the corridor (see `WObject::inCorridor`).
  int ourTeamInCorridor(const Vector2d& source, const Vector2d& target, double d, Angle alpha,
                        int maxAge) const;
  int otherTeamInCorridor(const Vector2d& source, const Vector2d& target, double d, Angle alpha,
                          int maxAge) const;
  /// x of the line beyond which our players are offside, metres. Opponents are assumed to have run
  /// towards our goal since they were seen, two cycles at most.
  double ourOffsideLine(int maxAge) const;
  /// x of the line beyond which the opponents are offside, metres. In a set play it depends on the
  /// mode and the ball; otherwise our players count where they were seen.
  double otherOffsideLine(int maxAge) const;
  /// Half of the view cone, radians; 0 for an unknown width.
  static Angle getViewAngle(view_width width);
  /// Age in cycles of the freshest look that covered a direction.
  int dirAge(Angle alpha) const;
  /// True when more than half of sixteen directions around the body were looked at lately.
  bool lookAroundFinished() const;

  // Say messages.

  /// What a coach's message tells of this world. The types, the kicker and the defenders are not
  /// the world's to know.
  CoachMessage coachMessage() const;
  /// Takes a coach's message over, up to the opponents' types. False, and nothing is changed, when
  /// it is none, carries no picture of the match, ends early or is older than a cycle.
  bool feedbackAudio(AudioMsg& audioMsg);
  /// Writes a player's message, see `PlayerMessage::write`. `comball` is the simulated ball.
  void encodeAudio(MessageType msgType, char* msg, const WBall& comball) const;
  /// Reads the characters of such a message, heard from team-mate `sender` in direction
  /// `senderDir` (radians from our face, `NO_ANGLE` when unknown). What is heard is `FUZZY` and
  /// never replaces what is known as freshly.
  void decodeAudio(const char* msg, int sender, double senderDir);

  void writeToStream(std::ostream& out) const;

  WPlayer my;  ///< the client itself; a coach's is a dummy with number 0 on the centre spot
  Squad<WPlayer> ourTeam;
  Squad<WPlayer> otherTeam;
  int ourGoalieNo = -1;
  int otherGoalieNo = -1;
  int maxPlayersOurTeam;
  int maxPlayersOtherTeam;
  WBall ball;
  WObject ourGoal;
  WObject otherGoal;
  CollisionState collState = CollisionState::NONE;
  long time = 0;           ///< the cycle that the model describes
  long visualAge = NEVER;  ///< cycles since the last view
  long cyclesSinceCatch = NEVER;
  long cyclesSincePointTo = NEVER;
  playing_side ourSide = SIDE_LEFT;
  playing_side penaltySide = SIDE_UNKNOWN;
  play_mode playMode = PLAY_MODE_UNKNOWN;
  int ourScore = 0;
  int otherScore = 0;
  WAction action;                       ///< the last own command; the next prediction uses it up
  std::vector<WPlayerType> playerType;  ///< by id
  std::vector<Substitution> ourSubs;    ///< rings of `subs_max` + 11 changes
  std::vector<Substitution> otherSubs;
  int numOurSubs = 0;  ///< counts since the beginning
  int numOtherSubs = 0;
  Squad<int> ourTypeChanges;  ///< announced changes of each player
  /// Announced changes of each opponent. Unlike this count, the ring above also holds our own
  /// players' changes that came without a comma.
  Squad<int> otherTypeChanges;
  bool ownChangesWithoutComma = false;  ///< see `takeChangesWithoutComma`
  // Command counters as the server reported them.
  long kickCount = 0;
  long dashCount = 0;
  long turnCount = 0;
  long sayCount = 0;
  long turnNeckCount = 0;
  long catchCount = 0;
  long moveCount = 0;
  long changeViewCount = 0;
  long tackleCount = 0;
  long pointToCount = 0;
  long attentionToCount = 0;
  view_width viewWidth = VIEW_WIDTH_NORMAL;
  view_quality viewQuality = VIEW_QUALITY_HIGH;
  // The last ten looks: direction, half-width and age in cycles; `vCounter` is the next slot.
  std::array<Angle, 10> vDir;
  std::array<Angle, 10> vAngle;
  std::array<long, 10> vAge;
  long vCounter = 0;
  // Rings of the directions (field frame) from which voices were heard, with their ages in cycles;
  // the counter is the next slot.
  std::array<Angle, 10> aOppDir;
  std::array<long, 10> aOppAge;
  long aOppCounter = 0;
  std::array<Angle, 10> aOurDir;
  std::array<long, 10> aOurAge;
  long aOurCounter = 0;
  /// Ring of what team-mates said, with what the messages leave to others; the world itself has
  /// taken over its part. The count runs from the beginning and gives the next slot.
  std::array<HeardMessage, 4> heard;
  long heardCount = 0;
  Vector2d oldBallRelpos;  ///< ball relative to `my` before the last prediction
  WPlayer oldMy;
  bool waitForSenseBody = false;  ///< a view came before the body sense of its cycle
  /// Whom the players of the last view were taken for, in the order of the view.
  std::array<SeenAs, std::tuple_size_v<decltype(SensorData::player)>> seenAs{};
  Localisation place;       ///< how well `my` is known
  Squad<Motion> ourMotion;  ///< how well the others are known
  Squad<Motion> otherMotion;
  Motion ballMotion;
  double neck = 0;  ///< radians from body to face, as exactly as it is known
  Comm* comm;       ///< not owned, null for a world without a connection

 private:
  void knowMyself(const Comm& connection);
  void takeView(const SensorData& data, const ServerState& state);
  void takeBody(const SensorData& data, const ServerState& state);
  void takeSight(const SensorData& view, const ServerState& state);
  void turnNeck(const NeckTurn& turned);
  void senseNeck(const SensorData& data, const ServerState& state);
  void senseTurn(const SensorData& data);
  void senseMotion(const SensorData& data, long cycles);
  void senseWay(bool slow);
  void driftSights();
  void driftPlayer(WPlayer& player, Motion& motion) const;
  Observer observer() const;
  void seePlayer(const SensorPlayer& seen, team_number team, int number);
  void namePlayers(const SensorData& view);
  bool shouldBeSeen(const WObject& object, const Motion& motion) const;
  void forgetMissing();
  /// What a text has sent beyond all bounds is not known any more.
  void forgetImpossible();
  void takeServerState(const ServerState& state);
  void predictTo(long viewTime);
  void takePlayerType(const PlayerType& announced);
  void changePlayer(const SensorData& data);
  void hear(const SensorData& data);
  void keepMessage(const SensorData& data);
  void adjustOurPlayer(const ExactPlayer& seen);
  void adjustOtherPlayer(const ExactPlayer& seen);
  void takePlayer(WPlayer& player, const ExactPlayer& seen) const;
  void setOtherGoalie(int number);
  Vector2d toOurFrame(double x, double y) const;
  void placeSpeaker(WPlayer& speaker, double centreDist, double direction) const;
  void applyAction();
  void dash();
  void catchBall();
  void move();
  void moveAll();
  void collideWithBall();
  void simStamina();
  void ageAll();
};

/// Appends the coach's world block: goalies, ball and 22 positions. A player's message stays as
/// it is.
AudioMsg& operator<<(AudioMsg& aum, const Worldmodel& world);

std::ostream& operator<<(std::ostream& out, const Worldmodel& world);

}  // namespace vok
