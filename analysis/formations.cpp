#include "formations.h"

#include <algorithm>

namespace vok::analysis {

void Formations::cycle(const Step& step, playing_side holder) {
  if (holder == SIDE_UNKNOWN) return;
  for (const playing_side side : BOTH_SIDES) {
    const Ball ball = side == holder ? Ball::WITH : Ball::WITHOUT;
    tables_.in(step.period, [&](BySide<ByBall<Table>>& tables) {
      Table& table = tables[side][ball];
      ++table.cycles;
      for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
        const FramePlayer& player = step.now.players[playerOf(side, shirt)];
        if (!player.there()) continue;
        Sum& sum = table.players[static_cast<std::size_t>(shirt - 1)];
        ++sum.cycles;
        sum.pos += ownFrame(player.pos, side);
      }
    });
  }
}

Formation Formations::of(Period period, playing_side side, Ball ball, int goalieShirt) const {
  const Table& table = tables_[period][side][ball];
  Formation formation;
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    const Sum& sum = table.players[static_cast<std::size_t>(shirt - 1)];
    if (shirt == goalieShirt || sum.cycles == 0 || 2 * sum.cycles < table.cycles) continue;
    formation.places.push_back({shirt, {sum.pos.x / sum.cycles, sum.pos.y / sum.cycles}});
  }
  nameLines(formation);
  return formation;
}

namespace {

constexpr std::size_t MOST_IN_A_LINE = 5;

/// Neighbours in x, cut into lines: `sizes` of them from the back.
struct Cut {
  std::vector<std::size_t> sizes;
  double squares = std::numeric_limits<double>::infinity();
};

double mean(const std::vector<double>& x, std::size_t from, std::size_t size) {
  double sum = 0;
  for (std::size_t i = from; i < from + size; ++i) sum += x[i];
  return sum / static_cast<double>(size);
}

double squares(const std::vector<double>& x, std::size_t from, std::size_t size) {
  const double middle = mean(x, from, size);
  double sum = 0;
  for (std::size_t i = from; i < from + size; ++i) sum += (x[i] - middle) * (x[i] - middle);
  return sum;
}

/// Of all cuts of the places behind `from` into `lines` lines the one with the least squares.
void findCut(const std::vector<double>& x, std::size_t from, std::size_t lines, Cut& trial,
             double sum, Cut& best) {
  const std::size_t left = x.size() - from;
  if (lines == 0) {
    if (left == 0 && sum < best.squares) best = {trial.sizes, sum};
    return;
  }
  for (std::size_t size = 1; size <= std::min(left, MOST_IN_A_LINE); ++size) {
    trial.sizes.push_back(size);
    findCut(x, from + size, lines - 1, trial, sum + squares(x, from, size), best);
    trial.sizes.pop_back();
  }
}

Cut bestCut(const std::vector<double>& x, std::size_t lines) {
  Cut trial;
  Cut best;
  findCut(x, 0, lines, trial, 0, best);
  return best;
}

bool hasLinesApart(const std::vector<double>& x, const Cut& cut) {
  constexpr double LEAST_STEP = 4;  // metres between the means of neighbouring lines
  std::size_t from = 0;
  for (std::size_t i = 0; i + 1 < cut.sizes.size(); ++i) {
    const std::size_t next = from + cut.sizes[i];
    if (mean(x, next, cut.sizes[i + 1]) - mean(x, from, cut.sizes[i]) < LEAST_STEP) return false;
    from = next;
  }
  return true;
}

}  // namespace

void nameLines(Formation& formation) {
  constexpr std::size_t LEAST_PLAYERS = 8;
  constexpr double FOUR_IS_BETTER = 3;      // times less squares
  constexpr double LEAST_SEPARATION = 2.0;  // metres
  if (formation.places.size() < LEAST_PLAYERS) return;
  std::vector<double> x;
  for (const Place& place : formation.places) x.push_back(place.pos.x);
  std::sort(x.begin(), x.end());

  const Cut three = bestCut(x, 3);
  const Cut four = bestCut(x, 4);
  const bool takesFour = four.squares < three.squares / FOUR_IS_BETTER && hasLinesApart(x, four);
  const Cut& cut = takesFour ? four : three;

  std::string name;
  double between = std::numeric_limits<double>::infinity();
  double within = 0;
  std::size_t i = 0;
  for (const std::size_t size : cut.sizes) {
    if (i > 0) between = std::min(between, x[i] - x[i - 1]);
    for (const std::size_t end = i + size; ++i < end;) within = std::max(within, x[i] - x[i - 1]);
    name += (name.empty() ? "" : "-") + std::to_string(size);
  }
  formation.separation = between;
  if (between >= LEAST_SEPARATION && between > within) formation.name = name;
}

}  // namespace vok::analysis
