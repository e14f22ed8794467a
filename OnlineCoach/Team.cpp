#include "Team.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>

namespace vok {

namespace {

constexpr int OPPONENTS = LAST_SHIRT + 1;  // the slot 0 as well
constexpr int MAX_AGE = 20;                // cycles; players unseen for longer are left out
constexpr double VANISHING = 0.001;        // metres; a spread that must not be divided by
constexpr long BANK_PERIOD = 50;           // updates
constexpr double NO_BOUND = -9999.0;       // metres

Vector2d squares(Vector2d v) {
  return {v.x * v.x, v.y * v.y};
}

/// Component-wise; rounding can make a variance negative.
Vector2d roots(Vector2d v) {
  return {std::sqrt(std::max(0.0, v.x)), std::sqrt(std::max(0.0, v.y))};
}

Vector2d scaled(Vector2d v, Vector2d factors) {
  return {v.x * factors.x, v.y * factors.y};
}

Vector2d mean(Vector2d sum, long n) {
  return sum /= static_cast<double>(n);
}

bool divisible(double spread) {
  return spread >= VANISHING && std::isfinite(spread);
}

}  // namespace

bool Team::counts(int k) const {
  return k != world->otherGoalieNo && world->otherTeam[k].age < MAX_AGE;
}

void Team::CalcTeamCOG() {
  Vector2d sum;
  Vector2d sumOfSquares;
  long n = 0;
  for (int k = 0; k < OPPONENTS; ++k) {
    if (!counts(k)) continue;
    const Vector2d pos = world->otherTeam[k].pos;
    sum += pos;
    sumOfSquares += squares(pos);
    ++n;
  }
  if (n == 0) return;
  TeamCOG = mean(sum, n);
  TeamVar = roots(mean(sumOfSquares, n) - squares(TeamCOG));
}

void Team::Update() {
  CalcTeamCOG();
  if (!divisible(TeamVar.x) || !divisible(TeamVar.y)) return;
  ++aCount;
  if (aCount % BANK_PERIOD == 0) changeBank();
  for (int k = 0; k < OPPONENTS; ++k) {
    if (counts(k)) addSample(k);
  }
}

/// Both banks collect all samples. The bank that was read so far is cleared; the other one, which
/// holds those of the last 50 updates, is read from now on.
void Team::changeBank() {
  const auto bank = static_cast<std::size_t>(afor);
  aNPos[bank].fill(0);
  aSummePos[bank].fill({});
  aSummePosSq[bank].fill({});
  afor = 1 - afor;
}

void Team::addSample(int k) {
  ++NPos[static_cast<std::size_t>(formation)][k];
  const Vector2d fromCentre = world->otherTeam[k].pos - TeamCOG;
  const Vector2d p = {fromCentre.x / TeamVar.x, fromCentre.y / TeamVar.y};
  for (std::size_t bank = 0; bank < aNPos.size(); ++bank) {
    ++aNPos[bank][k];
    aSummePos[bank][k] += p;
    aSummePosSq[bank][k] += squares(p);
  }
  const auto bank = static_cast<std::size_t>(afor);
  const long n = aNPos[bank][k];
  if (n <= 2) return;
  const Vector2d meanPos = mean(aSummePos[bank][k], n);
  const Vector2d variance = mean(aSummePosSq[bank][k], n) - squares(meanPos);
  aPos[k] = scaled(meanPos, TeamVar) + TeamCOG;
  // Scaled by the spread and not by its square, on purpose.
  aPosVar[k] = roots(scaled(variance, TeamVar));
}

Vector2d Team::GetPos(int k) const {
  return valueIfKnown(Pos, k, "GetPos");
}

Vector2d Team::GetVar(int k) const {
  return valueIfKnown(PosVar, k, "GetVar");
}

Vector2d Team::GetaPos(int k) const {
  return valueIfKnown(aPos, k, "GetPos");
}

Vector2d Team::GetaVar(int k) const {
  return valueIfKnown(aPosVar, k, "GetVar");
}

Vector2d Team::valueIfKnown(const PerOpponent<Vector2d>& values, int k,
                            const char* operation) const {
  if (k < 0 || k >= OPPONENTS) {
    std::cerr << "Team::" << operation << " invalid player no : " << k << "\n";
    return {};
  }
  return NPos[static_cast<std::size_t>(formation)][k] > 1 ? values[k] : Vector2d{};
}

void Team::GetDefensePlayer(int& first, int& second) const {
  first = second = 0;
  double firstX = NO_BOUND;
  double secondX = NO_BOUND;
  for (int k = 0; k < OPPONENTS; ++k) {
    if (aNPos[static_cast<std::size_t>(afor)][k] <= 2) continue;
    const double x = aPos[k].x;
    if (x > firstX) {
      second = first;
      secondX = firstX;
      first = k;
      firstX = x;
    } else if (x > secondX) {
      second = k;
      secondX = x;
    }
  }
}

}  // namespace vok
