#include "referee.h"

#include <algorithm>
#include <cmath>

#include "playmodes.h"

namespace vok::practicematch {

namespace {

constexpr int KICK_OFF_WAIT = 100;
constexpr int AFTER_GOAL_WAIT = 50;
constexpr int AFTER_FOUL_WAIT = 30;
constexpr int DROP_BALL_TIME = 100;
constexpr int GAME_OVER_WAIT = 50;
constexpr int SHORTEST_SET_PLAY = 10;
constexpr int LONGEST_PATIENCE = 40;
constexpr double OFFSIDE_ACTIVE_AREA = 2.5;

// This is the server's truth about its clock. It differs from isStopped(), the modes in which the
// clock is known to stand to a client: it stands at a foul, too.
struct ModeFacts {
  play_mode heard;  ///< as a client of the mode's side understands the call
  int standstill;   ///< cycles until the clock runs again; 0 when it does not stop
};

// In the order of Mode.
constexpr std::array<ModeFacts, 12> FACTS = {{{PLAY_MODE_BEFORE_KICK_OFF, KICK_OFF_WAIT},
                                              {PLAY_MODE_KICK_OFF_US, 0},
                                              {PLAY_MODE_PLAY_ON, 0},
                                              {PLAY_MODE_KICK_IN_US, 0},
                                              {PLAY_MODE_CORNER_KICK_US, 0},
                                              {PLAY_MODE_GOAL_KICK_US, 0},
                                              {PLAY_MODE_FREE_KICK_US, 0},
                                              {PLAY_MODE_FREE_KICK_US, 0},
                                              {PLAY_MODE_GOAL_US, AFTER_GOAL_WAIT},
                                              {PLAY_MODE_OFFSIDE_US, AFTER_FOUL_WAIT},
                                              {PLAY_MODE_FOUL_CHARGE_US, AFTER_FOUL_WAIT},
                                              {PLAY_MODE_TIME_OVER, GAME_OVER_WAIT}}};

const ModeFacts& factsOf(Mode mode) {
  return FACTS[static_cast<std::size_t>(mode)];
}

double sign(double number) {
  return number < 0 ? -1 : 1;
}

/// Whether a point lies in the penalty area that `side` defends.
bool inArea(Side side, Vector2d p) {
  return -forward(side) * p.x > PENALTY_AREA_X && std::abs(p.y) < PENALTY_AREA_HALF_WIDTH;
}

/// Moves the opponents of a set play away from the ball.
void clearAround(World& world, Side opponents) {
  for (Player& p : world.team(opponents)) {
    Vector2d away = p.pos - world.ball.pos;
    if (away.getLength() >= FREE_KICK_DISTANCE) continue;
    if (away.getLength() == 0) away = {-forward(opponents), 0};
    p.pos = world.ball.pos + away.stretch(FREE_KICK_DISTANCE + 0.5);
    p.pos.x = std::clamp(p.pos.x, -HALF_LENGTH - 2, HALF_LENGTH + 2);
    p.pos.y = std::clamp(p.pos.y, -HALF_WIDTH - 2, HALF_WIDTH + 2);
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
  return factsOf(current_).standstill > 0;
}

bool Referee::setPlay() const {
  return isSetPlay(factsOf(current_).heard);
}

bool Referee::finished() const {
  return current_ == Mode::TimeOver && cyclesInMode_ >= GAME_OVER_WAIT;
}

std::string Referee::modeName() const {
  const playing_side side = currentSide_ == Side::Left ? SIDE_LEFT : SIDE_RIGHT;
  std::string name(playmodeName(factsOf(current_).heard, side));
  if (current_ == Mode::IndirectFreeKick) name.insert(0, "indirect_");
  if (current_ == Mode::Goal) name += "_" + std::to_string(goals(currentSide_));
  return name;
}

bool Referee::mayKick(const Player& p) const {
  if (current_ == Mode::PlayOn) return &p != lastTaker_;
  return setPlay() && &p == taker_ && kickDue();
}

void Referee::call(const std::string& name, std::vector<std::string>& calls) const {
  calls.push_back("(hear " + std::to_string(now_) + " referee " + name + ")");
}

void Referee::change(Mode mode, Side side, World& world, std::vector<std::string>& calls) {
  current_ = mode;
  currentSide_ = side;
  cyclesInMode_ = 0;
  taker_ = nullptr;
  lastTaker_ = nullptr;
  offside_ = {};
  call(modeName(), calls);
  if (setPlay()) startSetPlay(world);
}

void Referee::startSetPlay(World& world) {
  clearAround(world, other(currentSide_));
  taker_ = nearestToBall(world, currentSide_, current_ == Mode::GoalKick);
  patience_ = world.dice.whole(SHORTEST_SET_PLAY, LONGEST_PATIENCE);
}

void Referee::restart(Mode mode, Side side, Vector2d spot, World& world,
                      std::vector<std::string>& calls) {
  world.putBall(spot);
  change(mode, side, world, calls);
}

void Referee::stop(Mode mode, Side fouling, Vector2d spot, World& world,
                   std::vector<std::string>& calls) {
  foulSpot_ = {std::clamp(spot.x, -HALF_LENGTH, HALF_LENGTH),
               std::clamp(spot.y, -HALF_WIDTH, HALF_WIDTH)};
  restart(mode, fouling, foulSpot_, world, calls);
}

bool Referee::resume(World& world, std::vector<std::string>& calls) {
  ++cyclesInMode_;
  if (current_ == Mode::PlayOn) judgeOffside(world, calls);
  if (setPlay() && cyclesInMode_ > DROP_BALL_TIME) {
    call("drop_ball", calls);
    change(Mode::PlayOn, currentSide_, world, calls);
    return false;
  }
  if (!clockStands() || current_ == Mode::TimeOver ||
      cyclesInMode_ < factsOf(current_).standstill) {
    return false;
  }
  const Side fouling = currentSide_;
  switch (current_) {
    case Mode::BeforeKickOff:
      firstKickOffDone_ = true;
      change(Mode::KickOff, currentSide_, world, calls);
      return true;
    case Mode::Goal:
      lineUp(world, other(fouling));
      change(Mode::KickOff, other(fouling), world, calls);
      return false;
    default:
      if (inArea(fouling, foulSpot_)) {
        restart(Mode::IndirectFreeKick, other(fouling),
                {sign(foulSpot_.x) * PENALTY_AREA_X, sign(foulSpot_.y) * PENALTY_AREA_HALF_WIDTH},
                world, calls);
      } else {
        change(Mode::FreeKick, other(fouling), world, calls);
      }
      return false;
  }
}

void Referee::touched(World& world, const Player& p, std::vector<std::string>& calls) {
  const bool first = setPlay();
  const bool canBeOffside =
      !first || current_ == Mode::FreeKick || current_ == Mode::IndirectFreeKick;
  // A goal kick is taken when the ball has left the area.
  if (first && current_ != Mode::GoalKick) change(Mode::PlayOn, p.side, world, calls);
  lastTaker_ = first ? &p : nullptr;
  lastTouch_ = p.side;
  for (const Player& mate : world.team(p.side)) {
    offside_[mate.number] = canBeOffside && &mate != &p && offsidePlace(world, p.side, mate.pos);
  }
}

// A player that stood offside is penalised when the ball comes near.
void Referee::judgeOffside(World& world, std::vector<std::string>& calls) {
  for (const Player& p : world.team(lastTouch_)) {
    const bool near = distance(p.pos, world.ball.pos) < OFFSIDE_ACTIVE_AREA;
    if (near && offside_[p.number]) {
      return stop(Mode::Offside, p.side, p.pos, world, calls);
    }
  }
}

void Referee::foul(World& world, const Player& fouler, std::vector<std::string>& calls) {
  stop(Mode::FoulCharge, fouler.side, world.ball.pos, world, calls);
}

void Referee::judge(World& world, std::vector<std::string>& calls) {
  if (clockStands()) return;
  ++now_;
  if (halfOver(world, calls)) return;
  judgeBall(world, calls);
}

bool Referee::halfOver(World& world, std::vector<std::string>& calls) {
  if (now_ >= fullTime_) {
    call("time_up", calls);
    change(Mode::TimeOver, currentSide_, world, calls);
    return true;
  }
  if (now_ != fullTime_ / 2) return false;
  call("half_time", calls);
  lineUp(world, Side::Right);
  change(Mode::BeforeKickOff, Side::Right, world, calls);
  return true;
}

void Referee::judgeBall(World& world, std::vector<std::string>& calls) {
  const Vector2d ball = world.ball.pos;
  if (current_ == Mode::GoalKick && !inArea(currentSide_, ball)) {
    const Player* kicker = lastTaker_;
    change(Mode::PlayOn, currentSide_, world, calls);
    lastTaker_ = kicker;
  }
  if (current_ != Mode::PlayOn) return;
  if (std::abs(ball.x) > HALF_LENGTH + BALL_SIZE) {
    ballBehindGoalLine(world, calls);
  } else if (std::abs(ball.y) > HALF_WIDTH + BALL_SIZE) {
    restart(Mode::KickIn, other(lastTouch_), {ball.x, sign(ball.y) * HALF_WIDTH}, world, calls);
  }
}

void Referee::ballBehindGoalLine(World& world, std::vector<std::string>& calls) {
  const Vector2d ball = world.ball.pos;
  const Vector2d before = ball - (1 / BALL_DECAY) * world.ball.vel;
  const double end = sign(ball.x);
  const double share =
      ball.x == before.x ? 1 : (end * HALF_LENGTH - before.x) / (ball.x - before.x);
  const double crossing = before.y + std::clamp(share, 0.0, 1.0) * (ball.y - before.y);
  const Side defender = end < 0 ? Side::Left : Side::Right;

  if (std::abs(crossing) < GOAL_HALF_WIDTH) {
    ++score_[index(other(defender))];
    restart(Mode::Goal, other(defender), ball, world, calls);
  } else if (lastTouch_ == defender) {
    restart(Mode::CornerKick, other(defender),
            {end * (HALF_LENGTH - 1), sign(ball.y) * (HALF_WIDTH - 1)}, world, calls);
  } else {
    restart(Mode::GoalKick, defender,
            {end * (HALF_LENGTH - GOAL_AREA_LENGTH), sign(ball.y) * GOAL_AREA_HALF_WIDTH}, world,
            calls);
  }
}

void Referee::lineUp(World& world, Side kicker) {
  // For an attack towards +x; the kicking side's last player stands beside the ball.
  static constexpr Squad<std::array<double, 2>> PLACES = {{{{},
                                                            {-50, 0},
                                                            {-36, -6},
                                                            {-36, 6},
                                                            {-33, -18},
                                                            {-33, 18},
                                                            {-18, 0},
                                                            {-15, -12},
                                                            {-15, 12},
                                                            {-2, -16},
                                                            {-2, 16},
                                                            {-1, 9.6}}}};
  world.putBall({});
  for (const Side side : {Side::Left, Side::Right}) {
    for (Player& p : world.team(side)) {
      const auto& place = PLACES[p.number];
      p.pos = {forward(side) * place[0], forward(side) * place[1]};
      if (side == kicker && p.number == LAST_SHIRT) p.pos = {-forward(side), 0};
      p.vel = p.acc = {};
      p.tackling = 0;
    }
  }
}

bool Referee::offsidePlace(const World& world, Side attacker, Vector2d place) {
  const double way = forward(attacker);
  double last = -HALF_LENGTH;
  double lastButOne = -HALF_LENGTH;
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

}  // namespace vok::practicematch
