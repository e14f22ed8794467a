#include "calls.h"

#include <algorithm>

namespace vok::analysis {
namespace {

struct Name {
  std::string_view name;
  CallKind kind;
  bool ofSide = true;  ///< "_l" or "_r" follows
};

constexpr auto NAMES = std::to_array<Name>({
    {"before_kick_off", CallKind::BEFORE_KICK_OFF, false},
    {"play_on", CallKind::PLAY_ON, false},
    {"time_over", CallKind::TIME_OVER, false},
    {"kick_off", CallKind::KICK_OFF},
    {"kick_in", CallKind::KICK_IN},
    {"free_kick", CallKind::FREE_KICK},
    {"indirect_free_kick", CallKind::INDIRECT_FREE_KICK},
    {"corner_kick", CallKind::CORNER_KICK},
    {"goal_kick", CallKind::GOAL_KICK},
    {"drop_ball", CallKind::DROP_BALL, false},
    {"goal", CallKind::GOAL},
    {"offside", CallKind::OFFSIDE},
    {"foul_charge", CallKind::FOUL_CHARGE},
    {"foul_push", CallKind::FOUL_PUSH},
    {"foul_multiple_attack", CallKind::FOUL_MULTIPLE_ATTACK},
    {"foul_ballout", CallKind::FOUL_BALLOUT},
    {"free_kick_fault", CallKind::FREE_KICK_FAULT},
    {"back_pass", CallKind::BACK_PASS},
    {"catch_fault", CallKind::CATCH_FAULT},
    {"illegal_defense", CallKind::ILLEGAL_DEFENSE},
    {"penalty_setup", CallKind::PENALTY_SETUP},
    {"penalty_ready", CallKind::PENALTY_READY},
    {"penalty_taken", CallKind::PENALTY_TAKEN},
    {"penalty_score", CallKind::PENALTY_SCORE},
    {"penalty_miss", CallKind::PENALTY_MISS},
});

playing_side sideAtEnd(std::string_view name) {
  if (name.ends_with("_l")) return SIDE_LEFT;
  return name.ends_with("_r") ? SIDE_RIGHT : SIDE_UNKNOWN;
}

}  // namespace

Call Call::named(std::string_view name, int cycle) {
  Call call;
  call.cycle = cycle;
  call.length_ = static_cast<unsigned char>(std::min(name.size(), call.name_.size()));
  std::copy_n(name.begin(), call.length_, call.name_.begin());

  const playing_side side = sideAtEnd(name);
  const std::string_view base = side == SIDE_UNKNOWN ? name : name.substr(0, name.size() - 2);
  for (const Name& known : NAMES) {
    if (known.name != base || known.ofSide != (side != SIDE_UNKNOWN)) continue;
    call.kind = known.kind;
    call.side = side;
  }
  return call;
}

bool Call::isSetPlay() const {
  return kind >= CallKind::KICK_OFF && kind <= CallKind::GOAL_KICK;
}

bool Call::isFault() const {
  return kind >= CallKind::FOUL_CHARGE && kind <= CallKind::ILLEGAL_DEFENSE;
}

std::string_view kindName(CallKind kind) {
  const auto* const row =
      std::find_if(NAMES.begin(), NAMES.end(), [kind](const Name& n) { return n.kind == kind; });
  return row == NAMES.end() ? std::string_view() : row->name;
}

}  // namespace vok::analysis
