#include "positioneval.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <string>

#include "Config.h"
#include "ensure.h"

namespace vok {

namespace {

constexpr double FIELD_WIDTH = 68;           // metres
constexpr double BAND_LIMIT = 44.25;         // the band ends this far from the halfway line
constexpr double SHORTEST_BAND = 26.25;      // metres
constexpr double LONGEST_BAND = 35;          // metres
constexpr double DEEP_ZONE_END = -19.5;      // from here on the ball is not deep in our half
constexpr double SLOW_ADVANCE_FROM = -32.7;  // in front of it the back line goes forward slowly
constexpr double ADVANCE = 0.25;             // metres a cycle
constexpr double SIDE_LIMIT = 29;            // largest |y| of a place or an area
constexpr long OFFSIDE_MAX_AGE = 20;         // cycles
constexpr int FIRST_PLACE = 2;               // tactical numbers
constexpr int LAST_PLACE = 11;
constexpr std::size_t PLACES_OF_HALF = 5;

// Scale and shift of the lateral factors are given at four x and interpolated between them.
using ByAnchor = std::array<double, 4>;
constexpr ByAnchor ANCHOR = {-52.5, -17.5, 26.25, 52.5};
constexpr ByAnchor SHIFT_PEAK = {10.08, 34.0 / 3, 8.5, 6.72};
constexpr ByAnchor SCALE = {10.08, 68.0 / 3, 68.0 / 3, 12.6};
constexpr ByAnchor NARROW_SCALE = {10.08, 221.0 / 15, 17, 12.6};
constexpr double SHIFT_RANGE = 87.5;

/// An item of a formation: the end of its key, and the member that takes it, a real or an integer.
struct FormationKey {
  const char* name;
  double& (*real)(PlayerPos&);
  int& (*whole)(PlayerPos&);
};

constexpr auto FORMATION_KEYS = std::to_array<FormationKey>({
    {"PosX", [](PlayerPos& p) -> double& { return p.Pos.x; }, nullptr},
    {"PosY", [](PlayerPos& p) -> double& { return p.Pos.y; }, nullptr},
    {"tact", nullptr, [](PlayerPos& p) -> int& { return p.tact; }},
    {"BforceX", [](PlayerPos& p) -> double& { return p.ballforceX; }, nullptr},
    {"BforceY", [](PlayerPos& p) -> double& { return p.ballforceY; }, nullptr},
    {"AreaX", [](PlayerPos& p) -> double& { return p.Area.x; }, nullptr},
    {"AreaY", [](PlayerPos& p) -> double& { return p.Area.y; }, nullptr},
    {"BModX", [](PlayerPos& p) -> double& { return p.BMod.x; }, nullptr},
    {"BModY", [](PlayerPos& p) -> double& { return p.BMod.y; }, nullptr},
    {"FModX", [](PlayerPos& p) -> double& { return p.FMod.x; }, nullptr},
    {"FModY", [](PlayerPos& p) -> double& { return p.FMod.y; }, nullptr},
    {"Watch1", nullptr, [](PlayerPos& p) -> int& { return p.Watches[0]; }},
    {"Watch2", nullptr, [](PlayerPos& p) -> int& { return p.Watches[1]; }},
    {"Watch3", nullptr, [](PlayerPos& p) -> int& { return p.Watches[2]; }},
});

std::array<PlayerPos, PLACES_OF_HALF> readFormation(const std::string& prefix) {
  std::array<PlayerPos, PLACES_OF_HALF> places;
  for (const FormationKey& item : FORMATION_KEYS) {
    const std::string key = prefix + item.name;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const int index = static_cast<int>(i);
      if (item.real != nullptr) {
        item.real(places[i]) = Config::getValueAsDoubleFromList(key.c_str(), index);
      } else {
        item.whole(places[i]) = Config::getValueAsIntFromList(key.c_str(), index);
      }
    }
  }
  // Only this one is scaled here: the per cent of the others wait for the cycle's band.
  for (PlayerPos& place : places) place.Area.y *= FIELD_WIDTH;
  return places;
}

int readFormationNo(const char* key) {
  const int number = Config::getValueAsInt(key);
  if (number >= 0 && number <= 2) return number;
  std::cerr << "WARNING: " << key << " is " << number << ", not 0, 1 or 2; 0 is taken.\n";
  return 0;
}

/// A coordinate that is safe to compute with, whatever the view held.
double bounded(double coordinate) {
  return std::isfinite(coordinate) ? std::clamp(coordinate, -1000.0, 1000.0) : 0;
}

Vector2d ballOf(const Worldmodel& world) {
  return {bounded(world.ball.pos.x), bounded(world.ball.pos.y)};
}

double offsideLineOf(const Worldmodel& world) {
  return bounded(world.ourOffsideLine(OFFSIDE_MAX_AGE));
}

/// How deep the ball is in our half: 1 far behind, falling to 0.
double depth(double ballX) {
  if (ballX < -BAND_LIMIT) return 1;
  if (ballX > DEEP_ZONE_END) return 0;
  return 1 - (ballX + BAND_LIMIT) / (DEEP_ZONE_END + BAND_LIMIT);
}

/// How far forward the band begins, in per cent of its front.
double bandStart(double ballX) {
  return 30 * (1 - depth(ballX));
}

ByAnchor shiftTowards(Vector2d ball) {
  ByAnchor shift{};
  const double lateral = std::min(std::abs(ball.y) / (FIELD_WIDTH / 2), 1.0);
  for (std::size_t i = 0; i < shift.size(); ++i) {
    const double nearness = std::max(1 - std::abs(ANCHOR[i] - ball.x) / SHIFT_RANGE, 0.0);
    shift[i] = std::copysign(SHIFT_PEAK[i] * nearness * lateral, ball.y);
  }
  return shift;
}

/// Interpolates at an x in front of the last anchor; behind the first one its value holds.
double valueAt(double x, const ByAnchor& values) {
  if (x < ANCHOR.front()) return values.front();
  std::size_t left = 0;
  while (left + 2 < ANCHOR.size() && x >= ANCHOR[left + 1]) ++left;
  const double share = (x - ANCHOR[left]) / (ANCHOR[left + 1] - ANCHOR[left]);
  return values[left] + share * (values[left + 1] - values[left]);
}

/// The pull of a ball at distance `d` on one axis; it ends at `range`.
double pull(double force, double d, double range) {
  return std::abs(d) < range ? force - std::abs(force / range * d) : 0;
}

double withinSides(double y) {
  return std::clamp(y, -SIDE_LIMIT, SIDE_LIMIT);
}

/// The player's tactical number where it has a place, else -1.
int placeNumber(const Worldmodel& world, int n) {
  if (n < 2 || n > 11) return -1;
  const int number = world.ourTeam[n].tacticalNo;
  return number >= FIRST_PLACE && number <= LAST_PLACE ? number : -1;
}

}  // namespace

PositionEval::PositionEval(const GoalShotEval* goalshoteval, const PassEval* passeval)
    : goalshoteval(goalshoteval), passeval(passeval) {
  readAgent_conf();
  defNo = readFormationNo("StartFormationDef");
  offNo = readFormationNo("StartFormationOff");
}

void PositionEval::readAgent_conf() {
  for (std::size_t i = 0; i < DefFormations.size(); ++i) {
    const std::string prefix = "Form" + std::to_string(i);
    DefFormations[i] = readFormation(prefix + "_def_");
    OffFormations[i] = readFormation(prefix + "_off_");
  }
}

void PositionEval::CalMinMaxX(const Worldmodel* world) {
  if (time < world->time) oldminX = minX;

  const double ballX = ballOf(*world).x;
  const double start = bandStart(ballX);
  const double rest = 100 - start;  // at least 70
  maxX = offsideLineOf(*world) - 2;
  minX = std::min(maxX * start / 100, ballX);
  if (maxX - minX < rest * SHORTEST_BAND / 100) minX = maxX - rest * SHORTEST_BAND / 100;
  if (maxX - minX > rest * LONGEST_BAND / 100 && ballX < (minX + maxX) / 2) {
    maxX = minX + rest * LONGEST_BAND / 100;
  }
  minX = std::clamp(maxX - 100 / rest * (maxX - minX), -BAND_LIMIT, 0.0);
  maxX = std::min(maxX, BAND_LIMIT);

  // The back line goes forward step by step, and back at once.
  if (minX > SLOW_ADVANCE_FROM) minX = std::min(minX, oldminX + ADVANCE);
  overrideBand(*world);

  const double turn = minX + (maxX - minX) * start / 100;
  if (ballX < turn) {
    defensive = 1;
  } else if (ballX >= maxX) {  // and not above: a band without length must not divide by it
    defensive = 0;
  } else {
    defensive = 1 - (ballX - turn) / (maxX - turn);
  }
  offensive = 1 - defensive;
  time = world->time;
}

/// Standard situations whose band does not follow from the ball and the offside line.
void PositionEval::overrideBand(const Worldmodel& world) {
  play_mode mode = world.playMode;
  if (mode == PLAY_MODE_FREE_KICK_US && world.ball.inOurPenaltyArea(0)) {
    mode = PLAY_MODE_GOAL_KICK_US;
  }
  if (mode == PLAY_MODE_FREE_KICK_THEM && world.ball.inOtherPenaltyArea(0)) {
    mode = PLAY_MODE_GOAL_KICK_THEM;
  }
  switch (mode) {
    case PLAY_MODE_GOAL_KICK_US:
      minX = oldminX = -32;
      maxX = std::max(maxX, minX + SHORTEST_BAND);
      break;
    case PLAY_MODE_GOAL_KICK_THEM:
      maxX = 30;
      if (maxX - minX < SHORTEST_BAND) minX = oldminX = maxX - SHORTEST_BAND;
      break;
    case PLAY_MODE_CORNER_KICK_US:
      maxX = 40;
      break;
    case PLAY_MODE_GOAL_US:
    case PLAY_MODE_GOAL_THEM:
      minX = oldminX = -26.5;
      break;
    default:
      break;
  }
}

void PositionEval::CalPlayerPositions(const Worldmodel* world) {
  // The factors rise and fall at different rates on purpose.
  const bool attack = offensive >= 0.5;
  ballFactorOff = std::clamp(ballFactorOff + (attack ? 0.05 : -1.0 / 30), 0.0, 1.0);
  ballFactorDef = std::clamp(ballFactorDef + (attack ? 1.0 / 30 : -0.1), 0.0, 1.0);

  const Vector2d ball = ballOf(*world);
  const double deep = depth(ball.x);
  const auto& def = DefFormations[static_cast<std::size_t>(defNo)];
  const auto& off = OffFormations[static_cast<std::size_t>(offNo)];
  for (std::size_t k = 0; k < PLACES_OF_HALF; ++k) {
    RealPositions[k] = def[k];
    RealPositions[k].Pos += ballFactorDef * def[k].BMod + deep * def[k].FMod;
    RealPositions[PLACES_OF_HALF + k] = off[k];
    RealPositions[PLACES_OF_HALF + k].Pos += ballFactorOff * off[k].BMod + deep * off[k].FMod;
  }
  CalXPos();
  CalYPos(ball);
  CalBallForce(ball);
}

void PositionEval::CalXPos() {
  const double length = maxX - minX;
  for (PlayerPos& place : RealPositions) {
    place.Pos.x = minX + length * place.Pos.x / 100;
    place.Area.x = length * place.Area.x / 100;
  }
}

void PositionEval::CalYPos(Vector2d ball) {
  const ByAnchor shift = shiftTowards(ball);
  for (PlayerPos& place : RealPositions) {
    Vector2d& pos = place.Pos;
    if (pos.x < ANCHOR.back()) {
      const bool narrow = place.tact == 1 || place.tact == 2;
      pos.y = valueAt(pos.x, narrow ? NARROW_SCALE : SCALE) * pos.y + valueAt(pos.x, shift);
    }
    pos.y = withinSides(pos.y);
  }
}

/// A ball behind a place pulls it back.
void PositionEval::CalBallForce(Vector2d ball) {
  for (PlayerPos& place : RealPositions) {
    const Vector2d d = ball - place.Pos;
    if (d.x >= 0) continue;
    place.Pos.x -=
        5 * pull(place.ballforceX, d.x, 30) * pull(place.ballforceY, d.y, FIELD_WIDTH / 2);
  }
}

Vector2d PositionEval::GetPlayerPosition(const Worldmodel* world, int n) const {
  const PlayerPos* place = placeOf(*world, n);
  return place != nullptr ? place->Pos : Vector2d{};
}

void PositionEval::GetPlayerArea(const Worldmodel* world, int n, Vector2d& lo, Vector2d& hi) const {
  lo = hi = Vector2d{};
  const PlayerPos* place = placeOf(*world, n);
  if (place == nullptr) return;
  lo = place->Pos - place->Area;
  hi = place->Pos + place->Area;
  if (place->tact == 4) hi.x = offsideLineOf(*world);
  lo.y = withinSides(lo.y);
  hi.y = withinSides(hi.y);
}

bool PositionEval::IsInPlayerArea(const Worldmodel* world, int n, Vector2d p) const {
  Vector2d lo;
  Vector2d hi;
  GetPlayerArea(world, n, lo, hi);
  return lo.x < p.x && p.x < hi.x && lo.y < p.y && p.y < hi.y;
}

int PositionEval::GetPlayerWatchNo(const Worldmodel* world, int n, int k) const {
  if (n < 3 || n > 10 || k < 0 || k > 2) return -1;
  const int number = placeNumber(*world, n);
  if (number == -1) return -1;
  const auto place = static_cast<std::size_t>(number - FIRST_PLACE);
  const PlayerPos& own =
      place < PLACES_OF_HALF
          ? DefFormations[static_cast<std::size_t>(defNo)][place]
          : OffFormations[static_cast<std::size_t>(offNo)][place - PLACES_OF_HALF];
  const int watched = own.Watches[static_cast<std::size_t>(k)];
  if (watched == -1) return -1;
  for (int shirt = 1; shirt <= 11; ++shirt) {
    if (world->ourTeam[shirt].tacticalNo == watched) return shirt;
  }
  return -1;
}

Grade PositionEval::ourEval(const Worldmodel* /*world*/, int /*n*/) const {
  ensureFailed("Grade().is_defined()", "PositionEval", __LINE__);
  return {};
}

const PlayerPos* PositionEval::placeOf(const Worldmodel& world, int n) const {
  const int number = placeNumber(world, n);
  return number == -1 ? nullptr : &RealPositions[static_cast<std::size_t>(number - FIRST_PLACE)];
}

}  // namespace vok
