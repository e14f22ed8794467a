#include "rules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>
#include <string_view>

#include "pitch.h"

namespace vok::confcheck {

namespace {

/// What fits all keys that begin with `begin` and have `part` behind it.
struct Rule {
  std::string_view begin;
  std::string_view part;
  bool (*fits)(double number);
  const char* wanted;
};

constexpr auto RULES = std::to_array<Rule>({
    {"async_waitForSeeTime", "",
     [](double n) { return n >= 0 && n <= 90 && std::fmod(n, 10) == 0; }, "0, 10, ... or 90"},
    {"world_maxPlayers", "", [](double n) { return n >= 0 && n <= LAST_SHIRT; }, "0 to 11"},
    {"our", "", [](double n) { return n >= 0 && n <= 10; }, "0 to 10"},
    {"Form", "_tact", [](double n) { return n == 0 || n == 1 || n == 2 || n == 4; },
     "0, 1, 2 or 4"},
    {"Form", "_Watch", [](double n) { return n == -1 || (n >= FIRST_SHIRT && n <= LAST_SHIRT); },
     "a tactical number or -1"},
    {"player", "_weight", [](double n) { return n >= 0; }, "0 or more"},
    {"skill_staminaCapacity", "", [](double n) { return n >= 0; }, "0 or more"},
    {"types_byAbility", "", [](double n) { return n == 0 || n == 1 || n == 2; }, "0, 1 or 2"},
    {"ability_", "", [](double n) { return n >= 0 && n <= 10; }, "0 to 10"},
});

/// The values that the server's types can have, for each wish of a player. When a wish is more than
/// `range` away from them, every type counts against the player. Decay, margin and rate are
/// differences from the default type.
struct Wish {
  std::string_view part;
  double least;
  double most;
  double range;
};

constexpr auto WISHES = std::to_array<Wish>({
    {"_decay_inertia_delta", -0.1, 0.1, 0.2},
    {"_kickmargin_rand_delta", -0.1, 0.1, 0.2},
    {"_dpr_stamina_inc_max_delta", -0.0012, 0.0008, 0.002},
    {"_extra_stamina_effort_delta", 50, 100, 100},
});

bool concerns(std::string_view begin, std::string_view part, const std::string& name) {
  return name.starts_with(begin) && name.find(part, begin.size()) != name.npos;
}

std::string problemOfWish(const Wish& wish, double number) {
  const double distance = std::max(wish.least - number, number - wish.most);
  if (distance <= wish.range) return "";
  std::ostringstream text;
  text << ", more than " << wish.range << " from what any type can have, " << wish.least << " to "
       << wish.most;
  return text.str();
}

}  // namespace

std::string problemOf(const Key& key, double number, const Keys& keys) {
  for (const Rule& rule : RULES) {
    if (!concerns(rule.begin, rule.part, key.name)) continue;
    return rule.fits(number) ? "" : std::string(", not ") + rule.wanted;
  }
  if (key.optional && number != 0 && number != 1) return ", not 0 or 1";
  for (const Wish& wish : WISHES) {
    if (concerns("player", wish.part, key.name)) return problemOfWish(wish, number);
  }
  if (key.name.starts_with("StartFormation")) {
    const std::string head = "Form" + std::to_string(static_cast<long>(number)) + "_";
    const bool exists = std::any_of(keys.begin(), keys.end(), [&head](const Key& other) {
      return other.name.starts_with(head);
    });
    if (!exists) return ", but there is no such formation: 0 is taken";
  }
  return "";
}

}  // namespace vok::confcheck
