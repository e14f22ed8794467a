// A lone goalie on a real server tries its skills, for tests/real-match: a trainer puts it and the
// ball to their places. Everything that is predicted goes to standard output, with the cycle.
//
//     skillmatch PORT exact    without noise: the states that follow from the start of a trial
//     skillmatch PORT seen     with noise: what the skills announce, by what the goalie sees
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include "Config.h"
#include "advskills.h"
#include "constants.h"
#include "cycleloop.h"

namespace vok {
namespace {

std::mt19937 source(1);

double between(double low, double high) {
  return std::uniform_real_distribution(low, high)(source);
}

class Trials {
 public:
  explicit Trials(int port)
      : trainer_("127.0.0.1", port + 1, 8192),
        comm_("Alpha", CLIENT_GOALIE, "127.0.0.1", port, 0, false, 7, 8, SIDE_LEFT) {
    if (comm_.connect() != COMM_OK) std::exit(1);
    order("(init (version 9))");
    world_.emplace(&comm_);
    skills_.emplace(*world_);
    awaitCycle();
    order("(change_mode play_on)");
    while (world_->time < 3) end({});
  }

  void exact(int trial) {
    Worldmodel expected = *world_;
    begin(trial % 2 == 0 ? 0.8 : between(5, 20), 0.5, expected);
    for (int cycle = 0; cycle < 20; ++cycle) {
      *world_ = expected;
      const Command command = exactCommand(trial % 4);
      expected.action = command.action();
      expected.simCycle();
      ++expected.time;
      end(command);
      tell("state", expected) << expected.ball.pos.x << " " << expected.ball.pos.y << " "
                              << expected.my.pos.x << " " << expected.my.pos.y << " "
                              << toDegrees(expected.my.bodyDir) << " " << expected.my.stamina
                              << "\n";
    }
  }

  void seen(int trial) {
    Worldmodel unused = *world_;
    begin(between(5, 20), between(0, 2.2), unused);
    for (int i = 0; i < 4; ++i) end({});
    if (world_->ball.age > 1 || !skills_->interception().found()) return;
    tell("reach", *world_) << skills_->interception().cycles << "\n";
    for (int i = 0; i < 60 && !kickable(); ++i) end(skills_->intercept());
    if (trial % 2 == 0) dribble();
    KickPlan plan{2, 0, {}};
    for (int i = 0; i < 5 && plan.kicks > 1; ++i) {
      plan = skills_->kickTo(target_, BALL_SPEED_MAX);
      if (plan.kicks == 1) {
        tell("kick", *world_) << plan.speed << " " << target_.x << " " << target_.y << "\n";
      }
      end(plan.command);
    }
  }

 private:
  static std::ostream& tell(const char* what, const Worldmodel& world) {
    return std::cout << std::setprecision(10) << what << " " << world.time << " ";
  }

  bool kickable() const { return world_->my.ballKickable(world_->ball); }

  void order(const std::string& text) {
    trainer_.send(text.c_str(), true);
    for (std::string answer;
         !answer.starts_with(text.starts_with("(init") ? "(init ok" : "(ok ");) {
      answer = trainer_.recv(2000, nullptr);
    }
  }

  void orderMove(const char* what, const WMovedObject& object, double direction) {
    std::ostringstream text;
    text << std::setprecision(12) << "(move (" << what << ") " << object.pos.x << " "
         << object.pos.y << " " << toDegrees(direction) << " " << object.v.x << " " << object.v.y
         << ")";
    order(text.str());
  }

  /// Puts both to a new place, the goalie at rest and fresh, and tells the world where they are.
  void begin(double ballDistance, double ballSpeed, Worldmodel& world) {
    const double direction = between(-PI, PI);
    const Vector2d place(between(-35, 35), between(-20, 20));
    const int number = world.my.number;
    world.my = WPlayer(place, {});
    world.my.number = number;
    world.my.bodyDir = direction + between(-1.2, 1.2);
    world.ball = WBall(place + polar(ballDistance, direction), polar(ballSpeed, between(-PI, PI)));
    orderMove("player Alpha 1", world.my, world.my.bodyDir);
    orderMove("ball", world.ball, 0);
    order("(recover)");
    target_ = {between(-45, 45), between(-30, 30)};
  }

  void awaitCycle() {
    do {
      comm_.drainSocket();
      if (!comm_.isServerAlive()) throw UDPSocketError("the server is lost", -1);
    } while (!takeCycle(comm_, *world_));
  }

  /// Ends the cycle and waits for the next one. The eyes follow the ball.
  void end(const Command& command) {
    send(comm_, command);
    const Angle neck = world_->my.bodyAngleTo(world_->ball.pos);
    if (std::fabs(neck) < PI / 2) comm_.sendTurnNeck(neck - world_->my.headAngle);
    comm_.async->actionNeeded = false;
    endCycle(comm_);
    awaitCycle();
  }

  Command exactCommand(int kind) {
    if (kind == 0 && between(0, 1) < 0.4) return Command::turn(between(-PI, PI));
    if (kind == 0) return Command::dash(between(0, MAXPOWER));
    if (!kickable()) return skills_->intercept();
    if (kind == 1) return skills_->stopBall();
    if (kind == 2) return skills_->kickTo(target_, BALL_SPEED_MAX).command;
    return skills_->dribble((target_ - world_->my.pos).getAngle()).command;
  }

  void dribble() {
    for (int i = 0; i < 18 && world_->ball.age < 3; ++i) {
      const Angle direction = (target_ - world_->my.pos).getAngle();
      const Dribble next = kickable() ? skills_->dribble(direction) : Dribble{};
      if (next.command.kind == KICK_COMMAND && i < 12)
        tell("dribble", *world_) << next.dashes << "\n";
      end(kickable() ? next.command : skills_->intercept());
    }
  }

  UDPSocket trainer_;
  Comm comm_;
  std::optional<Worldmodel> world_;
  std::optional<AdvSkills> skills_;
  Vector2d target_;
};

}  // namespace
}  // namespace vok

int main(int, char** argv) try {
  for (const char* key :
       {"async_waitForSeeTime", "world_maxPlayersOurTeam", "world_maxPlayersOtherTeam"}) {
    vok::setEntry(key, "0");
  }
  vok::Trials trials(std::atoi(argv[1]));
  const bool exact = std::string_view(argv[2]) == "exact";
  for (int trial = 0; trial < 60; ++trial) exact ? trials.exact(trial) : trials.seen(trial);
} catch (const vok::UDPSocketError& error) {
  std::cerr << error.msg() << "\n";
  return 1;
}
