// Where the ten field players are to stand, from ball, offside line and a configured formation.
//
// Lengthwise the team occupies a band from `minX`, the back line, to `maxX`, the front line, which
// keeps behind our offside line. In the band lies the pivot, with 0 to 30 per cent of the band
// behind it, the more the less deep the ball is in our half: a ball behind the pivot means pure
// defence, one in front of the band pure attack. The pivot is at the ball or behind it, the band
// between 26.25 and about 35 m long, and set plays and goals give it lines of their own. A
// formation gives each place a share of the band and a lateral factor, both shifted by how much we
// attack and how deep the ball is; the factor becomes metres through a scale and a shift towards
// the ball's side, given at four anchors along the pitch and interpolated between them. At last a
// ball behind a place pulls it back.
#include "positioneval.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <string>

#include "Config.h"
#include "ensure.h"
#include "pitch.h"

namespace vok {

namespace {

// The band, metres.
constexpr double BAND_LIMIT = 44.25;  // it ends this far from the halfway line
constexpr double OFFSIDE_GAP = 2;     // from the front line to the offside line
constexpr double SHORTEST_BAND = 26.25;
constexpr double LONGEST_BAND = 35;
constexpr double MOST_BEHIND_PIVOT = 30;     // per cent of the band
constexpr double DEEP_ZONE_END = -19.5;      // from here on the ball is not deep in our half
constexpr double SLOW_ADVANCE_FROM = -32.7;  // in front of it the back line goes forward slowly
constexpr double ADVANCE = 0.25;             // metres a cycle
constexpr long OFFSIDE_MAX_AGE = 20;         // cycles

// The lines of set plays and goals, metres.
constexpr double BACK_AT_OUR_GOAL_KICK = -32;
constexpr double BACK_AT_GOAL = -26.5;
constexpr double FRONT_AT_THEIR_GOAL_KICK = 30;
constexpr double FRONT_AT_OUR_CORNER_KICK = 40;

// How fast the ball factors follow attack and defence, per cycle.
constexpr double OFF_RISE = 0.05;
constexpr double OFF_FALL = 1.0 / 30;
constexpr double DEF_RISE = 1.0 / 30;
constexpr double DEF_FALL = 0.1;

// Scale and shift of the lateral factors at the anchors, metres.
using ByAnchor = std::array<double, 4>;
constexpr ByAnchor ANCHOR = {-HALF_LENGTH, -HALF_LENGTH / 3, HALF_LENGTH / 2, HALF_LENGTH};
constexpr ByAnchor SCALE = {10.08, HALF_WIDTH * 2 / 3, HALF_WIDTH * 2 / 3, 12.6};
constexpr ByAnchor NARROW_SCALE = {10.08, 221.0 / 15, 17, 12.6};
constexpr ByAnchor SHIFT_PEAK = {10.08, HALF_WIDTH / 3, 8.5, 6.72};  // with the ball at the anchor
constexpr double SHIFT_RANGE = 87.5;  // a ball farther from an anchor shifts nothing there
constexpr double SIDE_LIMIT = 29;     // largest |y| of a place or an area

// The ball's pull: its factor, and the distances at which it ends, metres.
constexpr double PULL = 5;
constexpr double PULL_RANGE_X = 30;
constexpr double PULL_RANGE_Y = HALF_WIDTH;

constexpr int FIRST_PLACE = 2;  // tactical numbers
constexpr int LAST_PLACE = 11;
constexpr std::size_t PLACES_OF_HALF = std::tuple_size_v<HalfFormation>;

int readFormationNo(const char* key) {
  const int number = Config::getValueAsInt(key);
  if (number >= 0 && number <= 2) return number;
  std::cerr << "WARNING: " << key << " is " << number << ", not 0, 1 or 2; 0 is taken.\n";
  return 0;
}

/// A coordinate that is safe to compute with: a view may hold any number.
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

/// The part of the band that lies behind the pivot, in per cent.
double behindPivot(double ballX) {
  return MOST_BEHIND_PIVOT * (1 - depth(ballX));
}

/// The shift at each anchor: towards the ball's side, the more the nearer the ball is to the anchor
/// and to the side line.
ByAnchor shiftTowards(Vector2d ball) {
  ByAnchor shift{};
  const double lateral = std::min(std::abs(ball.y) / HALF_WIDTH, 1.0);
  for (std::size_t i = 0; i < shift.size(); ++i) {
    const double nearness = std::max(1 - std::abs(ANCHOR[i] - ball.x) / SHIFT_RANGE, 0.0);
    shift[i] = std::copysign(SHIFT_PEAK[i] * nearness * lateral, ball.y);
  }
  return shift;
}

/// Interpolates between the anchors, for an x below the last one; below the first its value holds.
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
  if (n < 2 || n > LAST_SHIRT) return -1;
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
    DefFormations[i] = readHalfFormation(prefix + "_def_");
    OffFormations[i] = readHalfFormation(prefix + "_off_");
  }
}

void PositionEval::CalMinMaxX(const Worldmodel* world) {
  if (time < world->time) oldminX = minX;
  const double ballX = ballOf(*world).x;
  spanBand(ballX, offsideLineOf(*world));
  followPlayMode(*world);
  weighAttack(ballX);
  time = world->time;
}

void PositionEval::spanBand(double ballX, double offsideLine) {
  const double behind = behindPivot(ballX);
  const double inFront = 100 - behind;  // at least 70
  maxX = offsideLine - OFFSIDE_GAP;
  double pivot = std::min(maxX * behind / 100, ballX);
  // The lengths are those of the part in front of the pivot.
  const double shortest = inFront * SHORTEST_BAND / 100;
  const double longest = inFront * LONGEST_BAND / 100;
  if (maxX - pivot < shortest) pivot = maxX - shortest;
  if (maxX - pivot > longest && ballX < (pivot + maxX) / 2) maxX = pivot + longest;
  minX = std::clamp(maxX - 100 / inFront * (maxX - pivot), -BAND_LIMIT, 0.0);
  maxX = std::min(maxX, BAND_LIMIT);

  // The back line goes forward step by step, and back at once.
  if (minX > SLOW_ADVANCE_FROM) minX = std::min(minX, oldminX + ADVANCE);
}

/// Set plays and goals whose band does not follow from the ball and the offside line.
void PositionEval::followPlayMode(const Worldmodel& world) {
  play_mode mode = world.playMode;
  if (mode == PLAY_MODE_FREE_KICK_US && world.ball.inOurPenaltyArea(0)) {
    mode = PLAY_MODE_GOAL_KICK_US;
  }
  if (mode == PLAY_MODE_FREE_KICK_THEM && world.ball.inOtherPenaltyArea(0)) {
    mode = PLAY_MODE_GOAL_KICK_THEM;
  }
  switch (mode) {
    case PLAY_MODE_GOAL_KICK_US:
      minX = oldminX = BACK_AT_OUR_GOAL_KICK;
      maxX = std::max(maxX, minX + SHORTEST_BAND);
      break;
    case PLAY_MODE_GOAL_KICK_THEM:
      maxX = FRONT_AT_THEIR_GOAL_KICK;
      break;
    case PLAY_MODE_CORNER_KICK_US:
      maxX = FRONT_AT_OUR_CORNER_KICK;
      break;
    case PLAY_MODE_GOAL_US:
    case PLAY_MODE_GOAL_THEM:
      minX = oldminX = BACK_AT_GOAL;
      break;
    default:
      break;
  }
}

/// From pure defence with the ball behind the pivot to pure attack with the ball at the front line.
void PositionEval::weighAttack(double ballX) {
  const double pivot = minX + (maxX - minX) * behindPivot(ballX) / 100;
  if (ballX < pivot) {
    defensive = 1;
  } else if (ballX >= maxX) {  // and not above: a band without length must not divide by it
    defensive = 0;
  } else {
    defensive = 1 - (ballX - pivot) / (maxX - pivot);
  }
  offensive = 1 - defensive;
}

void PositionEval::CalPlayerPositions(const Worldmodel* world) {
  followAttack();
  const Vector2d ball = ballOf(*world);
  const double deep = depth(ball.x);
  const HalfFormation& def = DefFormations[static_cast<std::size_t>(defNo)];
  const HalfFormation& off = OffFormations[static_cast<std::size_t>(offNo)];
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

/// The factors rise and fall at different rates on purpose.
void PositionEval::followAttack() {
  const bool attack = offensive >= 0.5;
  ballFactorOff = std::clamp(ballFactorOff + (attack ? OFF_RISE : -OFF_FALL), 0.0, 1.0);
  ballFactorDef = std::clamp(ballFactorDef + (attack ? DEF_RISE : -DEF_FALL), 0.0, 1.0);
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
    place.Pos.x -= PULL * pull(place.ballforceX, d.x, PULL_RANGE_X) *
                   pull(place.ballforceY, d.y, PULL_RANGE_Y);
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
  const int watched = configuredPlace(number).Watches[static_cast<std::size_t>(k)];
  if (watched == -1) return -1;
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
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

const PlayerPos& PositionEval::configuredPlace(int tacticalNo) const {
  const auto place = static_cast<std::size_t>(tacticalNo - FIRST_PLACE);
  if (place < PLACES_OF_HALF) return DefFormations[static_cast<std::size_t>(defNo)][place];
  return OffFormations[static_cast<std::size_t>(offNo)][place - PLACES_OF_HALF];
}

}  // namespace vok
