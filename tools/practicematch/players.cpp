#include "players.h"

#include <algorithm>
#include <cmath>

namespace vok::practicematch {

namespace {

constexpr double CRUISING = 0.85;  // metres a cycle that a runner makes, roughly
constexpr double FULL_POWER = 100;
constexpr double PRESS_POWER = 75;  // less than a dribbler's, so that attacks reach the goals
constexpr double EASY_POWER = 55;   // costs hardly more stamina than a cycle restores
constexpr double TACKLE_REACH = 1.6;

/// Where the ball will be after so many cycles if no player touches it.
Vector2d ballAfter(const World& world, int cycles) {
  const double way = (1 - std::pow(BALL_DECAY, cycles)) / (1 - BALL_DECAY);
  return world.ball.pos + way * world.ball.vel;
}

struct Meeting {
  Vector2d place;
  int cycles;
};

/// Where and when a player can meet the ball.
Meeting meetBall(const World& world, const Player& p) {
  constexpr int HORIZON = 40;
  for (int cycles = 0; cycles < HORIZON; ++cycles) {
    const Vector2d place = ballAfter(world, cycles);
    if (distance(p.pos, place) - 0.7 <= CRUISING * cycles) return {place, cycles};
  }
  const Vector2d place = ballAfter(world, HORIZON);
  return {place, HORIZON + static_cast<int>(distance(p.pos, place) / CRUISING)};
}

double nearestOpponent(const World& world, Side side, Vector2d place) {
  double nearest = 1000;
  for (const Player& p : world.team(other(side))) {
    nearest = std::min(nearest, distance(p.pos, place));
  }
  return nearest;
}

/// How far the opponents are from the ball's way. Near its end they count more.
double laneRoom(const World& world, Side side, Vector2d from, Vector2d to) {
  double room = 1000;
  for (const double share : {0.2, 0.4, 0.6, 0.8, 1.0}) {
    const Vector2d place = from + share * (to - from);
    room = std::min(room, nearestOpponent(world, side, place) / (0.4 + 0.6 * share));
  }
  return room;
}

/// The ball's first speed for a pass that still rolls when it arrives.
double passSpeed(double way) {
  return std::min(BALL_SPEED_MAX, 1 + (1 - BALL_DECAY) * way);
}

Vector2d velocity(double speed, double degrees) {
  Vector2d v;
  v.setRadAng(speed, toRadians(degrees));
  return v;
}

}  // namespace

void Players::act(World& world, Referee& referee, std::vector<std::string>& calls) {
  // The sides take turns, so that neither is always the last to touch a ball that both kick.
  const Side first = referee.time() % 2 == 0 ? Side::Left : Side::Right;
  for (const Side side : {first, other(first)}) {
    Player* runner = chaser(world, referee, side);
    for (Player& p : world.team(side)) {
      moveHead(world, p);
      if (p.tackling > 0) continue;
      if (referee.mayKick(p) && world.kickable(p)) {
        actWithBall(world, p, referee, calls);
      } else if (&p != runner) {
        runTo(world, p, formationPlace(world, referee, p), EASY_POWER);
      } else if (!tackles(world, p, referee, calls)) {
        const Vector2d place = meetBall(world, p).place;
        // Stop short of a resting ball, so that the body does not push it.
        const bool there = referee.setPlay() && distance(p.pos, place) < 0.8;
        const bool presses = side != control_ && !referee.setPlay();
        runTo(world, p, there ? p.pos : place, presses ? PRESS_POWER : FULL_POWER);
      }
    }
  }
}

void Players::lookAround(World& world) {
  for (Team& team : world.teams) {
    for (Player& p : team) {
      if (dice_.chance(0.02)) world.turn(p, dice_.between(-180, 180));
    }
  }
}

Player* Players::chaser(World& world, const Referee& referee, Side side) const {
  if (referee.clockStands() || (referee.setPlay() && side != referee.side())) return nullptr;
  Player* best = nullptr;
  int bestCycles = 0;
  for (Player& p : world.team(side)) {
    if (referee.setPlay() ? &p != referee.kickTaker() : &p == referee.excluded()) continue;
    const Meeting meeting = meetBall(world, p);
    const bool outside = forward(side) * meeting.place.x > -HALF_LENGTH + 16;
    if (p.goalie() && outside && !referee.setPlay()) continue;
    if (best == nullptr || meeting.cycles < bestCycles) {
      best = &p;
      bestCycles = meeting.cycles;
    }
  }
  return best;
}

Vector2d Players::formationPlace(const World& world, const Referee& referee, const Player& p) {
  // Home for an attack towards +x, and how far a line follows the ball.
  struct Home {
    double x, y, follow, deepest, highest;
  };
  static constexpr Squad<Home> HOMES = {{{{},
                                          {-50, 0, 0.03, -51, -46},
                                          {-30, -6, 0.55, -45, 5},
                                          {-30, 6, 0.55, -45, 5},
                                          {-28, -21, 0.6, -44, 15},
                                          {-28, 21, 0.6, -44, 15},
                                          {-13, 0, 0.65, -38, 25},
                                          {-8, -15, 0.7, -34, 32},
                                          {-8, 15, 0.7, -34, 32},
                                          {6, -22, 0.75, -18, 48},
                                          {6, 22, 0.75, -18, 48},
                                          {8, 0, 0.75, -15, 48}}}};
  const Home& home = HOMES[p.number];
  const double way = forward(p.side);
  const Vector2d ball = way * world.ball.pos;
  Vector2d place(home.x + home.follow * ball.x + (p.side == control_ && !p.goalie() ? 8 : 0),
                 p.goalie() ? 0.12 * ball.y : home.y + 0.3 * ball.y);
  place.x = std::clamp(place.x, home.deepest, home.highest);
  place.y = std::clamp(place.y, -HALF_WIDTH + 1, HALF_WIDTH - 1);

  // Forwards wait at the offside line, and now and then one of them is careless.
  const bool waits = p.number >= 9 && p.side == control_;
  if (waits) place.x = std::min(place.x + 15, home.highest);
  while (place.x > 0 && Referee::offsidePlace(world, p.side, way * place)) place.x -= 1;
  const bool careless = (referee.time() / 50 + p.number) % 2 == 0;
  if (waits && careless) place.x += 8;
  if (referee.mode() == Mode::KickOff) place.x = std::min(place.x, -1.0);

  place *= way;
  const Vector2d away = place - world.ball.pos;
  if (referee.setPlay() && p.side != referee.side() && away.getLength() < 10) {
    place = world.ball.pos + Vector2d(away).stretch(10);
  }
  return place;
}

void Players::face(World& world, Player& p, Vector2d point, double tolerance) const {
  const double off = normalDegrees(direction(p.pos, point) - p.body);
  if (std::abs(off) > tolerance) world.turn(p, off);
}

void Players::runTo(World& world, Player& p, Vector2d target, double maxPower) const {
  const Vector2d way = target - p.pos - p.vel;
  if (way.getLength() < 0.5) return face(world, p, world.ball.pos, 25);
  const double off = normalDegrees(toDegrees(way.getAngle()) - p.body);
  if (std::abs(off) > 15) return world.turn(p, off);
  const double power = way.getLength() / (world.typeOf(p).dashPowerRate * p.effort);
  world.dash(p, std::min(power, maxPower));
}

void Players::moveHead(const World& world, Player& p) {
  p.neck = std::clamp(normalDegrees(direction(p.pos, world.ball.pos) - p.body), -90.0, 90.0);
  if (p.pointing == 0 && dice_.chance(0.005)) p.pointing = dice_.whole(5, 20);
  p.pointAngle = direction(p.pos, world.ball.pos);
}

bool Players::tackles(World& world, Player& p, Referee& referee, std::vector<std::string>& calls) {
  const double reach = distance(p.pos, world.ball.pos);
  if (referee.mode() != Mode::PlayOn || control_ == p.side || p.goalie()) return false;
  if (reach > TACKLE_REACH || !dice_.chance(0.1)) return false;
  p.tackling = 10;
  ++p.tackles;
  p.tackleWorks = false;
  if (dice_.chance(0.4)) {
    referee.foul(world, p, calls);
  } else if (dice_.chance(0.75)) {
    world.kick(p, velocity(2, p.body));
    p.tackleWorks = true;
    control_ = p.side;
    referee.touched(world, p, calls);
  }
  return true;
}

void Players::actWithBall(World& world, Player& p, Referee& referee,
                          std::vector<std::string>& calls) {
  world.kick(p, chooseKick(world, p, referee.setPlay()));
  ++p.kicks;
  control_ = p.side;
  referee.touched(world, p, calls);
}

Vector2d Players::chooseKick(const World& world, const Player& p, bool setPlay) {
  const double way = forward(p.side);
  const Vector2d ball = world.ball.pos;
  const Vector2d goal(way * HALF_LENGTH, dice_.between(-8, 8));
  const bool ownArea = way * ball.x < -PENALTY_AREA_X && std::abs(ball.y) < 20;

  // A goalie under pressure from a shot can only turn it past the post.
  if (p.goalie() && !setPlay && world.ball.vel.getLength() > 1 && dice_.chance(0.75)) {
    return velocity(2, direction(ball, {-way * (HALF_LENGTH + 3), ball.y < 0 ? -16.0 : 16.0}));
  }
  if (distance(ball, goal) < 31 && !setPlay) return velocity(BALL_SPEED_MAX, direction(ball, goal));

  const double room = nearestOpponent(world, p.side, ball);
  const Player* mate = bestMate(world, p, setPlay);
  if (mate != nullptr && (setPlay || room < 4 || dice_.chance(0.35))) {
    const Vector2d target = mate->pos + Vector2d(way * (mate->number >= 9 ? 7 : 2), 0);
    const double error = room < 2 ? dice_.between(-40, 40) : dice_.between(-5, 5);
    return velocity(1.15 * passSpeed(distance(ball, target)), direction(ball, target) + error);
  }
  const double wide = ball.y < 0 ? -1 : 1;
  if (ownArea && room < 6 && !setPlay &&
      dice_.chance(0.6)) {  // anywhere, if need be behind the own line
    return velocity(2, direction(ball, {ball.x - way * 5, wide * 30}));
  }
  if ((ownArea && room < 6) || setPlay) {  // far away
    return velocity(BALL_SPEED_MAX, direction(ball, {ball.x + way * 30, wide * 30}));
  }
  // Dribble with short kicks, along the side line on the wing and from there to the middle.
  const double aim = way * ball.x < 38 ? 1.4 : 0.3;
  return velocity(0.8, direction(ball, {goal.x, ball.y * aim}) + dice_.between(-15, 15));
}

const Player* Players::bestMate(const World& world, const Player& p, bool setPlay) {
  const Player* best = nullptr;
  double bestScore = setPlay ? -1000 : -5;
  for (const Player& mate : world.team(p.side)) {
    const double way = distance(p.pos, mate.pos);
    if (&mate == &p || mate.goalie() || way < 5 || way > 35) continue;
    if (Referee::offsidePlace(world, p.side, mate.pos) && dice_.chance(0.1)) continue;
    const double progress = forward(p.side) * (mate.pos.x - p.pos.x);
    const double room = std::min(8.0, laneRoom(world, p.side, p.pos, mate.pos));
    const double score = 1.2 * progress + 1.5 * room + dice_.between(0, 8);
    if (score > bestScore) {
      best = &mate;
      bestScore = score;
    }
  }
  return best;
}

}  // namespace vok::practicematch
