// What is written is read again, within the steps in which it travels.
#include "playermessage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace vok {
namespace {

PlayerMessage sent(const PlayerMessage& told) {
  std::array<char, PlayerMessage::LENGTH> text;
  text.fill('.');
  told.write(text.data());
  return PlayerMessage::read(text.data()).value_or(PlayerMessage());
}

TEST(PlayerMessage, BallIsReadWithinTheStepsOfItsScales) {
  for (int degrees = -178; degrees < 179; ++degrees) {
    PlayerMessage told;
    told.type = MSGTYPE_BALL;
    told.pos = {degrees * 0.29, degrees * -0.18};
    told.velocity.setRadAng(0.5 + (degrees + 178) % 20 * 0.1, toRadians(degrees));
    told.age = (degrees + 178) % 4;
    told.seen = degrees % 3 == 0;
    told.centreDistance = (degrees + 178) * 0.25;
    const PlayerMessage read = sent(told);
    EXPECT_EQ(std::tuple(read.type, read.age, read.seen),
              std::tuple(told.type, told.age, told.seen));
    EXPECT_LT(std::abs(read.pos.x - told.pos.x), 0.126) << degrees;
    EXPECT_LT(std::abs(read.pos.y - told.pos.y), 0.126) << degrees;
    EXPECT_LT(std::abs(read.velocity.getLength() - told.velocity.getLength()), 0.051) << degrees;
    EXPECT_LE(std::abs(read.centreDistance - std::min(told.centreDistance, 64.0)),
              PlayerMessage::DISTANCE_ERROR + 1e-9);
    const Angle turned = Angle(read.velocity.getAngle()) - told.velocity.getAngle();
    EXPECT_LT(std::abs(toDegrees(turned)), 1.01) << degrees;
  }
}

}  // namespace
}  // namespace vok
