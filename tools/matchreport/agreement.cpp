#include "agreement.h"

#include <algorithm>

namespace vok::matchreport {
namespace {

using analysis::MatchAnalysis;
using analysis::Touching;

/// Null where there is none. A cycle has one touching at most.
const Touching* touchingIn(const MatchAnalysis& match, int cycle) {
  const auto found =
      std::lower_bound(match.touchings.begin(), match.touchings.end(), cycle,
                       [](const Touching& touching, int c) { return touching.cycle < c; });
  return found == match.touchings.end() || found->cycle != cycle ? nullptr : &*found;
}

}  // namespace

Agreement agreement(const MatchAnalysis& truth, const MatchAnalysis& other) {
  Agreement sum;
  for (const Touching& touching : truth.touchings) {
    if (!touching.inPlay || !touching.isSingle()) continue;
    const Touching* const told = touchingIn(other, touching.cycle);
    const bool sideIsRight =
        told != nullptr && told->players.onlyOf(analysis::sideOf(touching.player()));
    ++sum.touches;
    sum.sideRight += sideIsRight ? 1 : 0;
    sum.playerRight += sideIsRight && told->players.bits == touching.players.bits ? 1 : 0;
  }
  for (const Touching& touching : other.touchings) {
    sum.invented += touching.inPlay && touchingIn(truth, touching.cycle) == nullptr ? 1 : 0;
  }
  return sum;
}

}  // namespace vok::matchreport
