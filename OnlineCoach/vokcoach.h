// The team's coach: what it computes every cycle, what it says, and the types it gives.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "Team.h"
#include "goalshoteval.h"
#include "onlinecoach.h"
#include "passeval.h"
#include "positioneval.h"
#include "tacticalmodule.h"
#include "teamgraphic.h"
#include "tiredplayers.h"
#include "typerequests.h"
#include "typevalues.h"

namespace vok {

/// A player's wishes for its type: deltas from the default type (of extra stamina: the value
/// itself), each with its weight. Only the first name of each pair enters the utility.
struct DesiredType {
  double decay_inertia_delta = 0;
  double decay_inertia_weight = 0;
  double kickmargin_rand_delta = 0;
  double kickmargin_rand_weight = 0;
  double dpr_stamina_inc_max_delta = 0;
  double dpr_stamina_inc_max_weight = 0;
  double extra_stamina_effort_delta = 0;
  double extra_stamina_effort_weight = 0;
};

/// What decides on the types: the values of "types_byAbility". Others mean wishes.
enum TypeMeasure { BY_WISHES = 0, BY_SPEEDS = 1, BY_ROLE = 2 };

class VokCoach : public Onlinecoach {
 public:
  VokCoach(const char* team, const char* host, int port, const char* agentConfFile,
           const char* traceConfFile, bool zeltraMode);
  /// Plays through a link that exists already (see `Onlinecoach`).
  VokCoach(const char* team, Link& link, const char* agentConfFile);

  /// Messages to the players and, once, the choice of their types.
  void act() override;
  /// With "say_inPlay" a message in the few cycles of running play that the server leaves for it.
  void actInPlay() override;
  /// Inference, positions, statistics, and whether a message is due.
  void analyze() override;
  ~VokCoach() override;

  /// What the players are to be told now.
  CoachMessage newsForPlayers() const;
  /// Number of our midfielder nearest to the ball, who is to take the kick; -1 for none.
  int calcPlayerForKickUs() const;

  /// Prepares the substitution state from the server's player parameters.
  void initSubs();
  /// Makes the type requests when "types_withinLimits" is set. Only with a world.
  void initTypeRequests();
  /// Reads the picture that "team_graphic" names. One that cannot be read is reported.
  void initTeamGraphic();
  /// Reads the wishes of players 2..11, and whether abilities decide in their place.
  void readAgentConf();
  /// True when types 1 to 6 all exist and are announced.
  bool knowsHeteroTypes() const;
  /// Gives every field player the type of the greatest utility, offenders first; with
  /// "types_withinLimits" the best types for all of them that the server's limits allow.
  void chooseHeterogenousPlayers();
  void choosePlayerType(int playerNumber);
  /// How well a type suits a player's wishes, or with "types_byAbility" what its players can do;
  /// greater is better.
  double calcUtility(int playerNumber, int type) const;
  /// Asks the server for the change; its answer is not awaited.
  void doSub(int playerNumber, int type);

  /// Reports the choice of types to the monitor.
  void printStats() const;
  /// Writes a line about the match when "summary" is set and the check-in succeeded.
  void writeSummary() const;

  bool sayMessageNow = false;                  ///< a message is due
  bool saysMessages = true;                    ///< unless "say_messages" keeps the coach silent
  bool saysInPlay = false;                     ///< in running play as well
  play_mode lastPlayMode = PLAY_MODE_UNKNOWN;  ///< at the last `analyze`
  long playModeSince = 0;                      ///< world time
  int numMsgsLeft;                             ///< messages until the next refill
  long lastNewMessageTime = 0;                 ///< world time of the last refill
  long lastAumsgTime = -43;                    ///< world time; -42 outside set plays
  long lastInPlayTime = -100;                  ///< world time of the last message in running play
  std::unique_ptr<TacticalModule> tactical;
  std::unique_ptr<PassEval> passEval;
  std::unique_ptr<GoalShotEval> goalShotEval;
  std::unique_ptr<PositionEval> positionEval;
  std::unique_ptr<Team> otherTeam;
  std::unique_ptr<TypeRequests> typeRequests;  ///< null unless "types_withinLimits"
  std::unique_ptr<TiredPlayers> tiredPlayers;  ///< null unless "types_replaceTired"
  std::unique_ptr<TeamGraphic> teamGraphic;    ///< null unless "team_graphic" names a picture
  Squad<DesiredType> desiredType;
  unsigned numSubs = 0;   ///< substitutions that the match allows, not counted down
  bool initDone = false;  ///< the choice of types has been made
  int typesBy = BY_WISHES;
  std::vector<std::array<double, NUM_ROLES>> typeValue;  ///< by type and role, with `BY_ROLE`
  int numPlTypes = 0;                                    ///< as the server announced
  std::vector<int> numPlType;  ///< by type: how many more players may get it
  /// By shirt number: the types asked for; with `typeRequests` those that the players have.
  Squad<int> plType;

 private:
  using FieldPlayers = std::array<int, LAST_SHIRT - FIRST_FIELD_PLAYER + 1>;

  void createModules();
  void refillBudget();
  void sayMessage();
  void chooseTypesOnce();
  void valueTypes(const TypeValues& values);
  void chooseWithinLimits();
  void replaceTired();
  /// The shirt numbers in the order in which the players choose: offenders first, who so get the
  /// scarce types.
  FieldPlayers choosingOrder() const;
  void followTypes();
};

}  // namespace vok
