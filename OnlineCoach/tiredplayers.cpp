#include "tiredplayers.h"

#include <algorithm>

#include "constants.h"

namespace vok {

namespace {

/// Part of `STAMINA_MAX`: near the mark below which the effort of a dash falls for good.
constexpr double TIRED = 0.4;

/// The power of the dash that explains a player's speed. Speeds are seen after the cycle's decay;
/// who becomes slower than that has run into somebody.
double powerOfDash(const WPlayer& player, const Vector2d& before) {
  if (player.decay <= 0 || player.dashPowerRate <= 0 || player.effortMax <= 0) return 0;
  const Vector2d gained = player.v * (1 / player.decay) - before;
  const double along = gained * polar(1, player.bodyDir);
  return std::clamp(along / (player.dashPowerRate * player.effortMax), 0.0, MAXPOWER);
}

}  // namespace

TiredPlayers::TiredPlayers(double capacity) : capacity_(capacity) {
  for (Account& account : accounts_) fill(account);
}

void TiredPlayers::fill(Account& account) const {
  account.stamina = STAMINA_MAX;
  account.capacity = capacity_;
}

void TiredPlayers::feedbackWorld(const Worldmodel& world) {
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const WPlayer& player = world.ourTeam[n];
    Account& account = accounts_[n];
    // A half begins with all stamina, and so does a player who comes in for another one.
    const bool fresh = world.playMode == PLAY_MODE_BEFORE_KICK_OFF || player.type != account.type;
    if (fresh) fill(account);
    const bool seen = player.age == 0;
    if (seen && account.seen && !fresh) follow(account, player);
    account.seen = seen;
    account.type = player.type;
    account.v = player.v;
  }
}

void TiredPlayers::follow(Account& account, const WPlayer& player) const {
  account.stamina = std::max(0.0, account.stamina - powerOfDash(player, account.v));
  const double back =
      std::min({player.staminaIncMax, STAMINA_MAX - account.stamina, account.capacity});
  account.stamina += back;
  account.capacity -= back;
}

double TiredPlayers::left(int number) const {
  return accounts_[number].stamina + accounts_[number].capacity;
}

int TiredPlayers::mostTired() const {
  int tired = -1;
  double least = TIRED * STAMINA_MAX;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (!accounts_[n].seen || left(n) >= least) continue;
    least = left(n);
    tired = n;
  }
  return tired;
}

}  // namespace vok
