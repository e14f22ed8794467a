// The best way to give types to players when each type may be given a limited number of times.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vok {

/// The type that every player has at first. The goalie keeps it.
inline constexpr int DEFAULT_TYPE = 0;

/// Solves one assignment after another in the memory taken at construction. Players and types count
/// from 0.
class TypeAssignment {
 public:
  /// At most ten players and a thousand types.
  TypeAssignment(std::size_t numPlayers, std::size_t numTypes);

  /// How well a type suits a player; of equal sums that with the lower types wins. Differences
  /// below a millionth of a millionth of the greatest utility are none.
  void setUtility(std::size_t player, std::size_t type, double utility);
  double utility(std::size_t player, std::size_t type) const;

  /// Gives as many players as possible a type, in the way of the greatest sum. `capacity` has the
  /// number of players for each type.
  void solve(const std::vector<int>& capacity);

  /// The solution: a player's type, -1 for none.
  int typeOf(std::size_t player) const;

 private:
  // Signed 64-bit integers, so that sums are exact and equal ones are equal.
  using Cost = std::int64_t;

  Cost& cost(std::size_t player, std::size_t column) { return costs_[player * columns_ + column]; }
  void weigh();
  void place(std::size_t player, const std::vector<int>& capacity);
  bool moveOn(std::size_t holder);

  std::size_t players_;
  std::size_t types_;
  std::size_t columns_;              ///< the types, and for each player the one for no type
  std::vector<double> utilities_;    ///< by player and type
  std::vector<Cost> costs_;          ///< by player and column
  std::vector<Cost> distance_;       ///< by column: of the cheapest chain of moves that fills it
  std::vector<std::size_t> mover_;   ///< by column: the player that comes last in that chain
  std::vector<int> used_;            ///< by column
  std::vector<std::size_t> chosen_;  ///< by player: its column
};

}  // namespace vok
