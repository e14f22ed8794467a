// Which of our players are tired. The server does not tell a coach their stamina, but the exact
// views show how they speed up, and so what they spend.
#pragma once

#include "pitch.h"
#include "worldmodel.h"

namespace vok {

class TiredPlayers {
 public:
  /// `capacity`: the stamina that the server gives back to a player in a half.
  explicit TiredPlayers(double capacity);

  /// Once a cycle, after the world's update.
  void feedbackWorld(const Worldmodel& world);
  /// What a player can still spend in this half, in units of dash power: its stamina, and what will
  /// come back. The noise of its movements leaves an error of some per cent of what it has spent.
  double left(int number) const;
  /// The field player who has least left, when that is not enough to run; -1 when all can.
  int mostTired() const;

 private:
  struct Account {
    double stamina;
    double capacity;
    Vector2d v;  ///< in the view before, metres a cycle
    int type = -1;
    bool seen = false;  ///< in the view before
  };

  void fill(Account& account) const;
  void follow(Account& account, const WPlayer& player) const;

  double capacity_;
  Squad<Account> accounts_;
};

}  // namespace vok
