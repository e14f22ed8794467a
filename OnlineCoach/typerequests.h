// Our players' types within the server's limits: what is asked for, in which order, and what came
// of it.
//
// Each type may be on the field `pt_max` times, the default type and the goalie included. The
// server answers the requests one by one in their order, and a refusal does not say what it
// refuses: the requests that are out wait in a queue whose first one every answer is for. Before
// the match changes are free, so all field players are given the best assignment, in an order in
// which no request needs a type that another player still has; of players who want each other's
// types one makes room by a detour over a free type. In the match a change costs a substitution:
// those that gain most are asked for, and after a refusal, or when a missing player has come, the
// next interruption chooses again among all that are not out. What the server announced, not what
// was asked for, is what a player has.
#pragma once

#include <iosfwd>
#include <vector>

#include "Comm.h"
#include "pitch.h"
#include "ring.h"
#include "typeassignment.h"
#include "worldmodel.h"

namespace vok {

class TypeRequests {
 public:
  /// For the types known at the check-in. World and connection are not owned and must live longer.
  /// From now on the world takes a change that names the type without a comma for one of ours.
  TypeRequests(Worldmodel& world, Comm& connection);

  /// How well a type suits a field player 2..11; greater is better, the unit is the caller's. For
  /// each player and type before `choose`.
  void setUtility(int number, int type, double utility);
  /// Decides on the types and asks for them. `substitutions` are those that the match allows.
  void choose(int substitutions);
  /// Asks for the best other type that is free for a player, in an interruption of the match, when
  /// a substitution is left: whoever comes in has all its stamina.
  void replace(int number);
  /// Takes the answers that have come, and reports on standard error when all are there. Any time.
  void takeAnswers();
  /// Asks for what is left to ask, in an interruption: the server refuses changes in play-on.
  void ask();

  /// The type that a player of ours really has, as far as the server told.
  int typeOf(int number) const;
  /// Writes how many changes were asked for and what came of them, without a line end.
  void writeCounts(std::ostream& out) const;

 private:
  struct Request {
    int number = 0;
    int type = 0;
    bool inMatch = false;  ///< and so a substitution

    bool isFor(int player, int wanted) const { return number == player && type == wanted; }
  };

  using Types = Squad<int>;
  /// Ten players and a detour each are at most on their way.
  using Queue = Ring<Request, 64>;

  bool isBeforeMatch() const;
  void planAll();
  void plan();
  bool planFree(Types& state);
  bool planDetour(int number, Types& state);
  bool isFree(int type, const Types& state) const;
  bool waits(int number, const Types& state) const;
  bool isInTheWay(int number, const Types& state) const;
  void chooseChanges();
  int substitutionsOut() const;
  void send(const Request& request);
  void request(int number, int type);
  void requestNextBest(int number);
  int bestType(int number, int except) const;
  bool isOut(int number, int type) const;
  void given(const Answer& answer);
  void endUnanswered();
  void countGranted(bool inMatch);
  void refused(AnswerKind reason);
  bool hasRoom(int type, int except) const;
  bool isAnnounced(int type) const;
  double utility(int number, int type) const;
  double gain(int number, int type) const;
  bool isDone() const;
  void report();

  Worldmodel& world_;
  Comm& comm_;
  int types_;
  TypeAssignment assignment_;
  std::vector<int> capacity_;  ///< by type: players on the field
  /// What each player is to have when all requests are answered, -1 when there is none for it.
  Types target_;
  Squad<bool> absent_;  ///< the server did not know the player yet
  Squad<int> retries_;  ///< requests that were made again as they were
  Queue todo_;          ///< not sent yet
  Queue out_;           ///< sent and not answered
  /// How many of the world's changes of each player were announced before its first request that is
  /// out, or were confirmed by an answer since.
  Squad<int> confirmed_;
  int substitutions_ = 0;  ///< that are left, those that are out not yet counted
  int asked_ = 0;
  int granted_ = 0;
  int denied_ = 0;
  int lost_ = 0;               ///< answers that never came
  bool choosesAgain_ = false;  ///< at the next interruption
  bool chosen_ = false;
  bool reported_ = false;
};

}  // namespace vok
