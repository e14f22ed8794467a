#include "matchfilm.h"

#include <algorithm>
#include <cmath>

namespace vok::matchreport {

using namespace analysis;

void MatchFilm::frame(const Frame& frame, std::string_view playMode, const Match& soFar) {
  constexpr std::string_view PLAY = "play_on";
  frames_.frame(frame, playMode, soFar.analysis.lastScore(), soFar.analysis.rules());
  const bool isNew = ball_.empty() || ball_.back().cycle != frame.cycle;
  ball_.push_back({frame.cycle, frame.ball});
  if (playMode == PLAY && isNew && !soFar.analysis.shootOut.begun()) countCycle(frame, soFar);
}

void MatchFilm::countCycle(const Frame& frame, const Match& soFar) {
  const int start = frame.cycle - frame.cycle % SLICE;
  if (slices_.empty() || slices_.back().cycle != start) {
    endSlice();
    slices_.emplace_back().cycle = start;
  }
  goalies_ = soFar.analysis.goalies();
  const playing_side holder = soFar.analysis.possession.holder();
  if (holder != SIDE_UNKNOWN) ++slices_.back().possession[holder];
  // Whoever has the ball, the left side's shapes go to those with the ball and the right side's to
  // those without it, so that each side has one mean.
  shapes_.cycle({frame, nullptr, true, true, Period::FIRST_HALF}, SIDE_LEFT);
  countStamina(frame, soFar);
  for (int i = 0; i < PLAYERS; ++i) {
    if (!frame.players[i].there()) continue;
    ++places_[i].cycles;
    places_[i].pos += frame.players[i].pos;
  }
}

/// Without the goalies, who run little.
void MatchFilm::countStamina(const Frame& frame, const Match& soFar) {
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& player = frame.players[i];
    const playing_side side = sideOf(i);
    if (!player.there() || isAbsent(player.stamina) || i == goalies_[side]) continue;
    const double share = player.stamina / soFar.analysis.rules().staminaMax;
    if (!std::isfinite(share)) continue;
    stamina_[side].add(share);
    double& least = slices_.back().leastStamina[side];
    least = std::fmin(least, share);
  }
}

void MatchFilm::endSlice() {
  if (slices_.empty()) return;
  TimeSlice& slice = slices_.back();
  for (const playing_side side : BOTH_SIDES) {
    const Ball ball = side == SIDE_LEFT ? Ball::WITH : Ball::WITHOUT;
    slice.shape[side] = shapes_.of(Period::WHOLE, side, ball, shirtOf(goalies_[side]));
    slice.stamina[side] = stamina_[side].value();
    stamina_[side] = {};
  }
  shapes_ = {};
}

Vector2d MatchFilm::meanPlace(int player) const {
  const Sum& sum = places_[player];
  if (sum.cycles == 0) return {ABSENT, ABSENT};
  return {sum.pos.x / sum.cycles, sum.pos.y / sum.cycles};
}

std::vector<Vector2d> MatchFilm::ballWay(int cycle) const {
  constexpr int LONGEST = 40;      // cycles
  constexpr double TURNED = 0.26;  // radians
  const auto first =
      std::lower_bound(ball_.begin(), ball_.end(), cycle,
                       [](const BallFrame& frame, int wanted) { return frame.cycle < wanted; });
  std::vector<Vector2d> way;
  if (first == ball_.begin() || first == ball_.end()) return way;
  way.push_back((first - 1)->pos);
  for (auto at = first; at != ball_.end() && at->cycle < cycle + LONGEST; ++at) {
    const Vector2d step = at->pos - way.back();
    if (way.size() > 1) {
      const Vector2d before = way.back() - way[way.size() - 2];
      const double turned =
          std::abs(std::atan2(crossProduct(before, step), before.x * step.x + before.y * step.y));
      const double longer = std::hypot(step.x, step.y) - std::hypot(before.x, before.y);
      if (turned > TURNED || longer > 1) break;
    }
    way.push_back(at->pos);
    if (std::abs(at->pos.x) > HALF_LENGTH) break;
  }
  return way;
}

}  // namespace vok::matchreport
