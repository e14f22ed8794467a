#include "world.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vok::practicematch {

namespace {

constexpr double PLAYER_RAND = 0.1;
constexpr double BALL_RAND = 0.05;
constexpr double MAX_POWER = 100;
constexpr double MAX_MOMENT = 180;
constexpr double BOUNCE = -0.1;  // velocity after a collision

Vector2d limited(Vector2d v, double length) {
  return v.getLength() > length ? v.stretch(length) : v;
}

}  // namespace

double normalDegrees(double degrees) {
  return toDegrees(Angle::mod2pi(toRadians(degrees)));
}

double distance(Vector2d a, Vector2d b) {
  return (a - b).getLength();
}

double direction(Vector2d from, Vector2d to) {
  return toDegrees((to - from).getAngle());
}

World::World(int typeCount, Dice dice) : dice(dice), types(drawTypes(typeCount, this->dice)) {
  for (const Side side : {Side::Left, Side::Right}) {
    for (int number = FIRST_SHIRT; number <= LAST_SHIRT; ++number) {
      Player& p = team(side)[number];
      p.side = side;
      p.number = number;
      p.body = side == Side::Left ? 0 : 180;
    }
  }
}

double World::kickableDistance(const Player& p) const {
  const HeteroType& type = typeOf(p);
  return type.size + BALL_SIZE + type.kickableMargin;
}

bool World::kickable(const Player& p) const {
  return p.tackling == 0 && distance(p.pos, ball.pos) <= kickableDistance(p);
}

void World::setType(Player& p, int type) {
  p.type = type;
  p.stamina = STAMINA_MAX;
  p.effort = typeOf(p).effortMax;
}

void World::dash(Player& p, double power) {
  ++p.dashes;
  power = std::clamp(power, 0.0, std::min(MAX_POWER, p.stamina + typeOf(p).extraStamina));
  p.stamina = std::max(0.0, p.stamina - power);
  p.acc.setRadAng(power * typeOf(p).dashPowerRate * p.effort, toRadians(p.body));
}

void World::turn(Player& p, double degrees) {
  ++p.turns;
  const double slowness = 1 + typeOf(p).inertia * p.vel.getLength();
  const double moment = std::clamp(degrees * slowness, -MAX_MOMENT, MAX_MOMENT);
  p.body =
      normalDegrees(p.body + (1 + dice.between(-PLAYER_RAND, PLAYER_RAND)) * moment / slowness);
}

void World::kick(const Player& p, Vector2d wanted) {
  const double off = std::abs(normalDegrees(direction(p.pos, ball.pos) - p.body)) / 180;
  const double gap = std::max(0.0, distance(p.pos, ball.pos) - typeOf(p).size - BALL_SIZE);
  const double strength = 1 - 0.25 * off - 0.25 * gap / typeOf(p).kickableMargin;
  Vector2d acc = limited(wanted - ball.vel, BALL_ACCEL_MAX * strength);
  const double error = typeOf(p).kickRand * acc.getLength() / BALL_ACCEL_MAX;
  acc += scatter(error);
  ball.acc = limited(ball.acc + acc, BALL_ACCEL_MAX);
}

Vector2d World::scatter(double size) {
  const double x = dice.between(-size, size);
  const double y = dice.between(-size, size);
  return {x, y};
}

void World::putBall(Vector2d spot) {
  ball = {spot, {}, {}};
}

void World::step() {
  move(ball, BALL_SPEED_MAX, BALL_DECAY, BALL_RAND);
  for (Team& players : teams) {
    for (Player& p : players) {
      move(p, typeOf(p).speedMax, typeOf(p).decay, PLAYER_RAND);
      tire(p);
      if (p.tackling > 0) --p.tackling;
      if (p.pointing > 0) --p.pointing;
    }
  }
  separate();
}

void World::move(Mover& body, double speedMax, double decay, double rand) {
  body.vel = limited(body.vel + body.acc, speedMax);
  const double noise = rand * body.vel.getLength();
  body.vel += scatter(noise);
  body.pos += body.vel;
  body.vel *= decay;
  body.acc = {};
}

void World::tire(Player& p) const {
  const HeteroType& type = typeOf(p);
  if (p.stamina < 0.3 * STAMINA_MAX) p.effort = std::max(type.effortMin, p.effort - 0.005);
  if (p.stamina > 0.6 * STAMINA_MAX) p.effort = std::min(type.effortMax, p.effort + 0.01);
  p.stamina = std::min(STAMINA_MAX, p.stamina + type.staminaIncMax);
}

// Bodies that overlap are pushed apart along the line between them and bounce.
void World::separate() {
  std::vector<std::pair<Mover*, double>> bodies = {{&ball, BALL_SIZE}};
  for (Team& players : teams) {
    for (Player& p : players) bodies.emplace_back(&p, typeOf(p).size);
  }
  std::vector<bool> hit(bodies.size());
  for (std::size_t a = 0; a < bodies.size(); ++a) {
    for (std::size_t b = a + 1; b < bodies.size(); ++b) {
      const double room = bodies[a].second + bodies[b].second;
      Vector2d line = bodies[b].first->pos - bodies[a].first->pos;
      const double gap = line.getLength();
      if (gap >= room) continue;
      if (gap == 0) line = {1, 0};
      const Vector2d push = line.stretch((room - gap) / 2);
      bodies[a].first->pos += -push;
      bodies[b].first->pos += push;
      hit[a] = hit[b] = true;
    }
  }
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    if (hit[i]) bodies[i].first->vel *= BOUNCE;
  }
}

}  // namespace vok::practicematch
