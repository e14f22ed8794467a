#include "referee.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace vok::practice {

namespace {

constexpr int kickOffWait = 100;
constexpr int afterGoalWait = 50;
constexpr int afterFoulWait = 30;
constexpr int dropBallTime = 100;
constexpr int gameOverWait = 50;
constexpr int shortestSetPlay = 10;
constexpr int longestPatience = 40;
constexpr double kickDistance = 9.15;  // opponents keep it at set plays
constexpr double offsideActiveArea = 2.5;
constexpr double areaX = 36;  // penalty area
constexpr double areaY = 20.16;

struct ModeFacts {
  std::string_view name;
  bool ofSide;       ///< the name ends in the side's letter
  bool clockStands;  ///< for so many cycles, or until time is over
  int wait;
  bool setPlay;
};

// In the order of Mode.
constexpr std::array<ModeFacts, 12> facts = {{{"before_kick_off", false, true, kickOffWait, false},
                                              {"kick_off", true, false, 0, true},
                                              {"play_on", false, false, 0, false},
                                              {"kick_in", true, false, 0, true},
                                              {"corner_kick", true, false, 0, true},
                                              {"goal_kick", true, false, 0, true},
                                              {"free_kick", true, false, 0, true},
                                              {"indirect_free_kick", true, false, 0, true},
                                              {"goal", true, true, afterGoalWait, false},
                                              {"offside", true, true, afterFoulWait, false},
                                              {"foul_charge", true, true, afterFoulWait, false},
                                              {"time_over", false, true, gameOverWait, false}}};

const ModeFacts& factsOf(Mode mode) {
  return facts[static_cast<std::size_t>(mode)];
}

double sign(double number) {
  return number < 0 ? -1 : 1;
}

/// Whether a point lies in the penalty area that `side` defends.
bool inArea(Side side, Vector2d p) {
  return -forward(side) * p.x > areaX && std::abs(p.y) < areaY;
}

/// Opponents of a set play that stand too near are moved out.
void clearAround(World& world, Side opponents) {
  for (Player& p : world.team(opponents)) {
    Vector2d away = p.pos - world.ball.pos;
    if (away.getLength() >= kickDistance) continue;
    if (away.getLength() == 0) away = {-forward(opponents), 0};
    p.pos = world.ball.pos + away.stretch(kickDistance + 0.5);
    p.pos.x = std::clamp(p.pos.x, -halfLength - 2, halfLength + 2);
    p.pos.y = std::clamp(p.pos.y, -halfWidth - 2, halfWidth + 2);
    p.vel = {};
  }
}

Player* nearestToBall(World& world, Side side, bool goalieToo) {
  Player* nearest = nullptr;
  for (Player& p : world.team(side)) {
    if (p.goalie() && !goalieToo) continue;
    if (nearest == nullptr ||
        distance(p.pos, world.ball.pos) < distance(nearest->pos, world.ball.pos)) {
      nearest = &p;
    }
  }
  return nearest;
}

}  // namespace

bool Referee::clockStands() const {
  return factsOf(current).clockStands;
}

bool Referee::setPlay() const {
  return factsOf(current).setPlay;
}

bool Referee::finished() const {
  return current == Mode::TimeOver && cyclesInMode >= gameOverWait;
}

std::string Referee::modeName() const {
  std::string name(factsOf(current).name);
  if (factsOf(current).ofSide) name += std::string("_") + letter(currentSide);
  if (current == Mode::Goal) name += "_" + std::to_string(goals(currentSide));
  return name;
}

bool Referee::mayKick(const Player& p) const {
  if (current == Mode::PlayOn) return &p != lastTaker;
  return setPlay() && &p == taker && kickDue();
}

void Referee::call(const std::string& name, std::vector<std::string>& calls) const {
  calls.push_back("(hear " + std::to_string(now) + " referee " + name + ")");
}

void Referee::change(Mode mode, Side side, World& world, std::vector<std::string>& calls) {
  current = mode;
  currentSide = side;
  cyclesInMode = 0;
  taker = nullptr;
  lastTaker = nullptr;
  offside = {};
  call(modeName(), calls);
  if (setPlay()) startSetPlay(world);
}

void Referee::startSetPlay(World& world) {
  clearAround(world, other(currentSide));
  taker = nearestToBall(world, currentSide, current == Mode::GoalKick);
  patience = world.dice.whole(shortestSetPlay, longestPatience);
}

void Referee::restart(Mode mode, Side side, Vector2d spot, World& world,
                      std::vector<std::string>& calls) {
  world.putBall(spot);
  change(mode, side, world, calls);
}

void Referee::stop(Mode mode, Side offender, Vector2d spot, World& world,
                   std::vector<std::string>& calls) {
  foulSpot = {std::clamp(spot.x, -halfLength, halfLength),
              std::clamp(spot.y, -halfWidth, halfWidth)};
  restart(mode, offender, foulSpot, world, calls);
}

bool Referee::resume(World& world, std::vector<std::string>& calls) {
  ++cyclesInMode;
  if (current == Mode::PlayOn) judgeOffside(world, calls);
  if (setPlay() && cyclesInMode > dropBallTime) {
    call("drop_ball", calls);
    change(Mode::PlayOn, currentSide, world, calls);
    return false;
  }
  if (!clockStands() || current == Mode::TimeOver || cyclesInMode < factsOf(current).wait) {
    return false;
  }
  const Side offender = currentSide;
  switch (current) {
    case Mode::BeforeKickOff:
      firstKickOffDone = true;
      change(Mode::KickOff, currentSide, world, calls);
      return true;
    case Mode::Goal:
      lineUp(world, other(offender));
      change(Mode::KickOff, other(offender), world, calls);
      return false;
    default:
      if (inArea(offender, foulSpot)) {
        restart(Mode::IndirectFreeKick, other(offender),
                {sign(foulSpot.x) * areaX, sign(foulSpot.y) * areaY}, world, calls);
      } else {
        change(Mode::FreeKick, other(offender), world, calls);
      }
      return false;
  }
}

void Referee::touched(World& world, const Player& p, std::vector<std::string>& calls) {
  const bool first = setPlay();
  const bool canBeOffside =
      !first || current == Mode::FreeKick || current == Mode::IndirectFreeKick;
  // A goal kick is taken when the ball has left the area.
  if (first && current != Mode::GoalKick) change(Mode::PlayOn, p.side, world, calls);
  lastTaker = first ? &p : nullptr;
  lastTouch = p.side;
  for (const Player& mate : world.team(p.side)) {
    offside[static_cast<std::size_t>(mate.number)] =
        canBeOffside && &mate != &p && offsidePlace(world, p.side, mate.pos);
  }
}

// Standing offside is punished when the ball comes near.
void Referee::judgeOffside(World& world, std::vector<std::string>& calls) {
  for (const Player& p : world.team(lastTouch)) {
    const bool near = distance(p.pos, world.ball.pos) < offsideActiveArea;
    if (near && offside[static_cast<std::size_t>(p.number)]) {
      return stop(Mode::Offside, p.side, p.pos, world, calls);
    }
  }
}

void Referee::foul(World& world, const Player& offender, std::vector<std::string>& calls) {
  stop(Mode::FoulCharge, offender.side, world.ball.pos, world, calls);
}

void Referee::judge(World& world, std::vector<std::string>& calls) {
  if (clockStands()) return;
  ++now;
  if (halfOver(world, calls)) return;
  judgeBall(world, calls);
}

bool Referee::halfOver(World& world, std::vector<std::string>& calls) {
  if (now >= fullTime) {
    call("time_up", calls);
    change(Mode::TimeOver, currentSide, world, calls);
    return true;
  }
  if (now != fullTime / 2) return false;
  call("half_time", calls);
  lineUp(world, Side::Right);
  change(Mode::BeforeKickOff, Side::Right, world, calls);
  return true;
}

void Referee::judgeBall(World& world, std::vector<std::string>& calls) {
  const Vector2d ball = world.ball.pos;
  if (current == Mode::GoalKick && !inArea(currentSide, ball)) {
    const Player* kicker = lastTaker;
    change(Mode::PlayOn, currentSide, world, calls);
    lastTaker = kicker;
  }
  if (current != Mode::PlayOn) return;
  if (std::abs(ball.x) > halfLength + ballSize) {
    ballBehindGoalLine(world, calls);
  } else if (std::abs(ball.y) > halfWidth + ballSize) {
    restart(Mode::KickIn, other(lastTouch), {ball.x, sign(ball.y) * halfWidth}, world, calls);
  }
}

void Referee::ballBehindGoalLine(World& world, std::vector<std::string>& calls) {
  const Vector2d ball = world.ball.pos;
  const Vector2d before = ball - (1 / ballDecay) * world.ball.vel;
  const double end = sign(ball.x);
  const double share = ball.x == before.x ? 1 : (end * halfLength - before.x) / (ball.x - before.x);
  const double crossing = before.y + std::clamp(share, 0.0, 1.0) * (ball.y - before.y);
  const Side defender = end < 0 ? Side::Left : Side::Right;

  if (std::abs(crossing) < halfGoal) {
    ++score[index(other(defender))];
    restart(Mode::Goal, other(defender), ball, world, calls);
  } else if (lastTouch == defender) {
    restart(Mode::CornerKick, other(defender),
            {end * (halfLength - 1), sign(ball.y) * (halfWidth - 1)}, world, calls);
  } else {
    restart(Mode::GoalKick, defender, {end * (halfLength - 5.5), sign(ball.y) * 9.16}, world,
            calls);
  }
}

void Referee::lineUp(World& world, Side kicker) {
  // For an attack towards +x; the kicking side's last player stands beside the ball.
  static constexpr std::array<std::array<double, 2>, 11> places = {{{-50, 0},
                                                                    {-36, -6},
                                                                    {-36, 6},
                                                                    {-33, -18},
                                                                    {-33, 18},
                                                                    {-18, 0},
                                                                    {-15, -12},
                                                                    {-15, 12},
                                                                    {-2, -16},
                                                                    {-2, 16},
                                                                    {-1, 9.6}}};
  world.putBall({});
  for (const Side side : {Side::Left, Side::Right}) {
    for (Player& p : world.team(side)) {
      const auto& place = places[static_cast<std::size_t>(p.number - 1)];
      p.pos = {forward(side) * place[0], forward(side) * place[1]};
      if (side == kicker && p.number == 11) p.pos = {-forward(side), 0};
      p.vel = p.acc = {};
      p.tackling = 0;
    }
  }
}

bool Referee::offsidePlace(const World& world, Side attacker, Vector2d place) {
  const double way = forward(attacker);
  double last = -halfLength;
  double lastButOne = -halfLength;
  for (const Player& p : world.team(other(attacker))) {
    const double x = way * p.pos.x;
    if (x > last) {
      lastButOne = last;
      last = x;
    } else {
      lastButOne = std::max(lastButOne, x);
    }
  }
  return way * place.x > std::max({0.0, lastButOne, way * world.ball.pos.x});
}

}  // namespace vok::practice
