// One player after the other is placed by the cheapest chain of moves: it takes a column, whose
// holder moves on to another, until one has room. Chains are found as shortest paths over the
// columns; a move may gain, but since the placed players are always placed best, no ring of moves
// does, and the plain method of Bellman and Ford is right.
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
    : players(numPlayers),
      types(numTypes),
      columns(numTypes + numPlayers),
      utilities(numPlayers * numTypes),
      costs(numPlayers * columns),
      distance(columns),
      mover(columns),
      used(columns),
      chosen(numPlayers) {}

void TypeAssignment::setUtility(std::size_t player, std::size_t type, double utility) {
  utilities[player * types + type] = utility;
}

double TypeAssignment::utility(std::size_t player, std::size_t type) const {
  return utilities[player * types + type];
}

void TypeAssignment::solve(const std::vector<int>& capacity) {
  weigh();
  std::fill(used.begin(), used.end(), 0);
  std::fill(chosen.begin(), chosen.end(), UNPLACED);
  for (std::size_t player = 0; player < players; ++player) place(player, capacity);
}

int TypeAssignment::typeOf(std::size_t player) const {
  return chosen[player] < types ? static_cast<int>(chosen[player]) : -1;
}

void TypeAssignment::weigh() {
  double greatest = 0;
  for (const double u : utilities) {
    if (std::isfinite(u)) greatest = std::max(greatest, std::abs(u));
  }
  if (greatest == 0) greatest = 1;
  for (std::size_t player = 0; player < players; ++player) {
    for (std::size_t t = 0; t < types; ++t) {
      const double u = utility(player, t);
      const double loss = std::isfinite(u) ? -u / greatest * SCALE : SCALE;
      cost(player, t) = std::llround(loss) * ID_RANGE + static_cast<Cost>(t);
    }
    for (std::size_t other = 0; other < players; ++other) {
      cost(player, types + other) = other == player ? NO_TYPE : IMPOSSIBLE_COST;
    }
  }
}

/// Fills the column that costs least, by itself or with what has to move for it.
void TypeAssignment::place(std::size_t player, const std::vector<int>& capacity) {
  for (std::size_t c = 0; c < columns; ++c) {
    distance[c] = cost(player, c);
    mover[c] = player;
  }
  for (std::size_t round = 0; round < players; ++round) {
    bool shorter = false;
    for (std::size_t holder = 0; holder < player; ++holder) shorter |= moveOn(holder);
    if (!shorter) break;
  }

  std::size_t last = types + player;  // always free
  for (std::size_t next = last; next-- > 0;) {
    const int room = next < types ? capacity[next] : 1;
    if (used[next] < room && distance[next] <= distance[last]) last = next;
  }
  ++used[last];
  std::size_t c = last;
  while (mover[c] != player) {
    const std::size_t holder = mover[c];
    std::swap(chosen[holder], c);
  }
  chosen[player] = c;
}

/// Shortens the ways to all columns by the move of a player from its column; true when it did.
bool TypeAssignment::moveOn(std::size_t holder) {
  const std::size_t from = chosen[holder];
  if (distance[from] == IMPOSSIBLE_COST) return false;
  const Cost left = distance[from] - cost(holder, from);
  bool shorter = false;
  for (std::size_t c = 0; c < columns; ++c) {
    if (c == from || cost(holder, c) == IMPOSSIBLE_COST) continue;
    const Cost way = left + cost(holder, c);
    if (way >= distance[c]) continue;
    distance[c] = way;
    mover[c] = holder;
    shorter = true;
  }
  return shorter;
}

}  // namespace vok
