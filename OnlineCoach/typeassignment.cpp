// A column is a type, or a place without a type, one for each player. The players are placed one by
// one, each by the cheapest chain of moves: it takes a column, a player who holds that column moves
// on to another one, and so on until a column has room. The cheapest chain is a shortest path over
// the columns. A single move may have a negative cost, but a closed ring of moves never has, since
// the players placed so far are always placed best; so the method of Bellman and Ford finds the
// path. After the last player the sum of all costs is the least possible.
#include "typeassignment.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace vok {

namespace {

constexpr std::size_t UNPLACED = std::numeric_limits<std::size_t>::max();

// The greatest utility becomes SCALE, a type's id is below ID_RANGE, and to have no type costs
// more than all ten utilities may differ. Chains of twenty such costs fit.
constexpr double SCALE = 1e12;
constexpr std::int64_t ID_RANGE = 10001;
constexpr std::int64_t NO_TYPE = 230'000'000'000'000'000;
constexpr std::int64_t IMPOSSIBLE_COST = std::numeric_limits<std::int64_t>::max();

}  // namespace

TypeAssignment::TypeAssignment(std::size_t numPlayers, std::size_t numTypes)
    : players_(numPlayers),
      types_(numTypes),
      columns_(numTypes + numPlayers),
      utilities_(numPlayers * numTypes),
      costs_(numPlayers * columns_),
      distance_(columns_),
      mover_(columns_),
      used_(columns_),
      chosen_(numPlayers) {}

void TypeAssignment::setUtility(std::size_t player, std::size_t type, double utility) {
  utilities_[player * types_ + type] = utility;
}

double TypeAssignment::utility(std::size_t player, std::size_t type) const {
  return utilities_[player * types_ + type];
}

void TypeAssignment::solve(const std::vector<int>& capacity) {
  weigh();
  std::fill(used_.begin(), used_.end(), 0);
  std::fill(chosen_.begin(), chosen_.end(), UNPLACED);
  for (std::size_t player = 0; player < players_; ++player) place(player, capacity);
}

int TypeAssignment::typeOf(std::size_t player) const {
  return chosen_[player] < types_ ? static_cast<int>(chosen_[player]) : -1;
}

void TypeAssignment::weigh() {
  double greatest = 0;
  for (const double u : utilities_) {
    if (std::isfinite(u)) greatest = std::max(greatest, std::abs(u));
  }
  if (greatest == 0) greatest = 1;
  for (std::size_t player = 0; player < players_; ++player) {
    for (std::size_t t = 0; t < types_; ++t) {
      const double u = utility(player, t);
      const double loss = std::isfinite(u) ? -u / greatest * SCALE : SCALE;
      cost(player, t) = std::llround(loss) * ID_RANGE + static_cast<Cost>(t);
    }
    for (std::size_t other = 0; other < players_; ++other) {
      cost(player, types_ + other) = other == player ? NO_TYPE : IMPOSSIBLE_COST;
    }
  }
}

/// Fills the column that costs least, by itself or with what has to move for it.
void TypeAssignment::place(std::size_t player, const std::vector<int>& capacity) {
  for (std::size_t c = 0; c < columns_; ++c) {
    distance_[c] = cost(player, c);
    mover_[c] = player;
  }
  for (std::size_t round = 0; round < players_; ++round) {
    bool shorter = false;
    for (std::size_t holder = 0; holder < player; ++holder) shorter |= moveOn(holder);
    if (!shorter) break;
  }

  std::size_t last = types_ + player;  // always free
  for (std::size_t next = last; next-- > 0;) {
    const int room = next < types_ ? capacity[next] : 1;
    if (used_[next] < room && distance_[next] <= distance_[last]) last = next;
  }
  ++used_[last];
  std::size_t c = last;
  while (mover_[c] != player) {
    const std::size_t holder = mover_[c];
    std::swap(chosen_[holder], c);
  }
  chosen_[player] = c;
}

/// Shortens the ways to all columns by the move of a player from its column; true when it did.
bool TypeAssignment::moveOn(std::size_t holder) {
  const std::size_t from = chosen_[holder];
  if (distance_[from] == IMPOSSIBLE_COST) return false;
  const Cost left = distance_[from] - cost(holder, from);
  bool shorter = false;
  for (std::size_t c = 0; c < columns_; ++c) {
    if (c == from || cost(holder, c) == IMPOSSIBLE_COST) continue;
    const Cost way = left + cost(holder, c);
    if (way >= distance_[c]) continue;
    distance_[c] = way;
    mover_[c] = holder;
    shorter = true;
  }
  return shorter;
}

}  // namespace vok
