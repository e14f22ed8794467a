// Our players' types within the server's limits: what is asked for, in which order, and what came
// of it.
//
// Each type may be on the field `pt_max` times, the default type and the goalie included. The
// requests go out together, in an order in which none needs a type that is still taken; the
// answers come back in the same order.
#pragma once

#include <array>
#include <vector>

#include "Comm.h"
#include "typeassignment.h"
#include "worldmodel.h"

namespace vok {

class TypeLimits {
 public:
  /// For the connection's world; the types are those known at the check-in.
  TypeLimits(Worldmodel& world, Comm& connection);

  /// How well a type suits a field player 2..11; for each of them before `choose`.
  void setUtility(int number, int type, double utility);
  /// Decides on the types and asks for them. Before the match every field player gets its part of
  /// the best assignment, later the best changes are made, as many as there are substitutions.
  void choose(int substitutions);
  /// Takes the answers that have come, and reports when all are there. Any time.
  void takeAnswers();
  /// Asks for what is left to ask. Outside play-on.
  void ask();

  /// The type that a player of ours really has, as far as the server told.
  int typeOf(int number) const;

 private:
  using Types = std::array<int, 12>;  ///< by shirt number

  struct Request {
    int number = 0;
    int type = 0;
  };

  /// Requests, first in first out. There are never as many as it holds: ten players, one detour
  /// each.
  class Queue {
   public:
    bool empty() const { return count_ == 0; }
    int size() const { return static_cast<int>(count_); }
    const Request& front() const { return requests_[first_]; }
    void push(Request request);
    void pop();
    bool holds(Request request) const;
    void clear() { count_ = 0; }

   private:
    std::array<Request, 64> requests_;
    std::size_t first_ = 0;
    std::size_t count_ = 0;
  };

  bool isBeforeMatch() const;
  void readCapacities();
  void chooseAll();
  void chooseChanges(int substitutions);
  void plan();
  bool waits(int number, const Types& state) const;
  bool isInTheWay(int number, const Types& state) const;
  bool planFree(Types& state);
  bool planDetour(int number, Types& state);
  void request(int number, int type);
  void given(const Answer& answer);
  void endUnanswered();
  void refused(AnswerKind reason);
  void askForNextBest(int number);
  int bestLeft(int number) const;
  bool hasRoom(int type, int except) const;
  bool isAnnounced(int type) const;
  double utility(int number, int type) const;
  void report();

  Worldmodel& world_;
  Comm& comm_;
  int types_;
  TypeAssignment assignment_;
  std::vector<int> capacity_;  ///< by type: players on the field
  /// What each player is to have when all requests are answered, -1 when there is none for it.
  Types target_;
  std::array<bool, 12> absent_{};  ///< the server did not know the player yet
  std::array<int, 12> retries_{};
  Queue todo_;     ///< not sent yet
  Queue pending_;  ///< sent and not answered
  int asked_ = 0;
  int granted_ = 0;
  int denied_ = 0;
  int lost_ = 0;  ///< answers that never came
  bool chosen_ = false;
  bool reported_ = false;
};

}  // namespace vok
