#include "coachmessage.h"

#include <gtest/gtest.h>

namespace vok {
namespace {

CoachMessage example() {
  CoachMessage told;
  told.ourGoalie = 3;
  told.otherGoalie = 11;
  told.ball = {-12.5, 34};
  for (int n = 1; n <= 11; ++n) {
    told.ourTeam[n] = {-0.5 * n, 2.5 * n};
    told.otherTeam[n] = {4.5 * n, -3.0 * n};
    told.otherTypes[n] = n - 2;
  }
  told.kicker = 7;
  told.lastDefender = 5;
  told.secondLastDefender = 2;
  return told;
}

AudioMsg written(const CoachMessage& told) {
  AudioMsg message(0, 7, true);
  told.write(message);
  message.createChkSums();
  return message;
}

TEST(CoachMessage, IsReadAsItWasWrittenButOnlyWhole) {
  AudioMsg message = written(example());
  ASSERT_EQ(message.getWritePos(), CoachMessage::PAYLOAD_LENGTH);
  const auto heard = CoachMessage::read(AudioMsg(message.getEncoding()));
  ASSERT_TRUE(heard);
  EXPECT_EQ(*heard, example());
  for (unsigned length = 0; length < CoachMessage::PAYLOAD_LENGTH; ++length) {
    message.setWritePos(length);
    message.createChkSums();
    EXPECT_FALSE(CoachMessage::read(message)) << length;
  }
}

TEST(CoachMessage, IsNotReadWhenItIsDamagedOrAPlayersOrWithoutAPicture) {
  AudioMsg damaged = written(example());
  damaged.setServerTime(8);
  AudioMsg players(0, 7, false);
  example().write(players);
  players.createChkSums();
  AudioMsg without(0, 7, true);
  without << false;
  for (int i = 1; i < 112; ++i) without << NodaChar(1);
  without.createChkSums();
  for (const AudioMsg& message : {damaged, players, without})
    EXPECT_FALSE(CoachMessage::read(message)) << message.getEncoding();
}

TEST(CoachMessage, NobodyTravelsAndAGoalieWithoutAShirtNumberIsNone) {
  CoachMessage told;
  told.ourGoalie = 12;
  EXPECT_EQ(CoachMessage::read(written(told)), CoachMessage());
}

}  // namespace
}  // namespace vok
