// The neck and the view. Where to look is the tactical module's choice; the view is narrow near the
// ball, where one in every cycle counts more than what lies beside it.
#include <VOK/constants.h>

#include <cmath>

#include "player.h"

using namespace vok;

namespace {

constexpr double NEAR_BALL = 5;                ///< metres
constexpr int LOST = 5;                        ///< cycles after which the ball is searched for
constexpr double LEAST_TURN = toRadians(0.5);  ///< of the neck

view_width widthFor(const Worldmodel& world) {
  const bool near = world.my.distTo(world.ball.pos) < NEAR_BALL && world.ball.age < LOST;
  return near ? VIEW_WIDTH_NARROW : VIEW_WIDTH_NORMAL;
}

/// By how much the body turns in this cycle.
Angle bodyTurn(const WPlayer& me, const Command& command) {
  WPlayer next = me;
  command.simulate(next);
  return next.bodyDir - me.bodyDir;
}

}  // namespace

void look(const Player& player, const Command& command) {
  const Worldmodel& world = player.world;
  const view_width width = widthFor(world);
  if (width != world.viewWidth) player.comm.sendChangeView(width, VIEW_QUALITY_HIGH, true);
  const TurnHeadWish wish = player.tactics.calcTurnHead();
  const double moment = player.tactics.turnHeadMoment(wish, bodyTurn(world.my, command));
  if (std::abs(moment) > LEAST_TURN) player.comm.sendTurnNeck(moment);
}
