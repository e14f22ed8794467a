// Every pair of an unnamed and a candidate has a likelihood: the density of the candidate's
// expected place at the place that is seen, both with their errors. A player that may be anywhere
// has the same small density all over the field. An unnamed is a candidate when the candidate's
// share of all that it could be, and the unnamed's share of all places where the candidate could
// be, are both great enough. The clearest pair is taken first; what it takes away makes the others
// clearer.
#include "playerassignment.h"

#include <algorithm>
#include <cmath>

#include "pitch.h"

namespace vok {

namespace {

constexpr std::size_t MOST_UNNAMED = std::tuple_size_v<decltype(SensorData::player)>;
constexpr std::size_t MOST_CANDIDATES = 2UL * LAST_SHIRT;
constexpr double ANYWHERE = 1 / (4 * HALF_LENGTH * HALF_WIDTH);  ///< density, per square metre
constexpr double SURE = 0.9;
/// Density of what none of the hypotheses explains, per square metre.
constexpr double UNEXPECTED = 2e-5;

double density(const Unnamed& seen, const Candidate& known) {
  if (seen.team != TEAM_UNKNOWN && seen.team != known.team) return 0;
  if (known.anywhere) return ANYWHERE;
  const double xx = seen.xx + known.xx;
  const double xy = seen.xy + known.xy;
  const double yy = seen.yy + known.yy;
  const double determinant = xx * yy - xy * xy;
  if (!(determinant > 0)) return 0;
  const Vector2d d = seen.pos - known.pos;
  const double squares = (yy * d.x * d.x - 2 * xy * d.x * d.y + xx * d.y * d.y) / determinant;
  if (squares > 40) return 0;
  return std::exp(-0.5 * squares) / (2 * PI * std::sqrt(determinant));
}

}  // namespace

void assignPlayers(std::span<Unnamed> unnamed, std::span<Candidate> candidates) {
  if (unnamed.size() > MOST_UNNAMED || candidates.size() > MOST_CANDIDATES) return;
  std::array<std::array<double, MOST_CANDIDATES>, MOST_UNNAMED> likely{};
  for (std::size_t i = 0; i < unnamed.size(); ++i) {
    for (std::size_t k = 0; k < candidates.size(); ++k) {
      likely[i][k] = density(unnamed[i], candidates[k]);
    }
  }
  for (;;) {
    // What all candidates that are left make of an unnamed, and all unnamed of a candidate.
    std::array<double, MOST_UNNAMED> ofUnnamed{};
    std::array<double, MOST_CANDIDATES> ofCandidate{};
    for (std::size_t i = 0; i < unnamed.size(); ++i) {
      for (std::size_t k = 0; k < candidates.size(); ++k) {
        if (unnamed[i].who != -1 || candidates[k].taken) continue;
        ofUnnamed[i] += likely[i][k];
        ofCandidate[k] += likely[i][k];
      }
    }
    double best = SURE;
    std::size_t bestSeen = 0;
    std::size_t bestKnown = MOST_CANDIDATES;
    for (std::size_t i = 0; i < unnamed.size(); ++i) {
      for (std::size_t k = 0; k < candidates.size(); ++k) {
        if (unnamed[i].who != -1 || candidates[k].taken) continue;
        const double all = std::max(ofUnnamed[i], ofCandidate[k]) + UNEXPECTED;
        const double share = likely[i][k] / all;
        if (share <= best) continue;
        best = share;
        bestSeen = i;
        bestKnown = k;
      }
    }
    if (bestKnown == MOST_CANDIDATES) return;
    unnamed[bestSeen].who = static_cast<int>(bestKnown);
    candidates[bestKnown].taken = true;
  }
}

}  // namespace vok
