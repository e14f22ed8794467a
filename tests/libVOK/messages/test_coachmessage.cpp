#include "coachmessage.h"

#include <gtest/gtest.h>

namespace vok {
namespace {

AudioMsg written(const CoachMessage& told, bool byCoach = true) {
  AudioMsg message(0, 7, byCoach);
  told.write(message);
  message.createChkSums();
  return message;
}

TEST(CoachMessage, IsReadAsItWasWrittenButOnlyWhole) {
  CoachMessage told;
  told.ourGoalie = 3;
  told.otherGoalie = 11;
  for (int n = 1; n <= 11; ++n) {
    told.ourTeam[n] = {-0.5 * n, 2.5 * n};
    told.otherTeam[n] = {4.5 * n, -3.0 * n};
    told.otherTypes[n] = n - 2;
  }
  told.kicker = 7;
  told.lastDefender = 5;
  told.secondLastDefender = 11;
  AudioMsg message = written(told);
  EXPECT_EQ(CoachMessage::read(message), told);
  for (const unsigned length : {0U, 106U, CoachMessage::PAYLOAD_LENGTH - 1}) {
    message.setWritePos(length);
    message.createChkSums();
    EXPECT_FALSE(CoachMessage::read(message)) << length;
  }
}

TEST(CoachMessage, IsNotReadWhenItIsDamagedOrAPlayers) {
  AudioMsg damaged = written({});
  damaged.setServerTime(8);
  for (const AudioMsg& message : {damaged, written({}, false)})
    EXPECT_FALSE(CoachMessage::read(message)) << message.getEncoding();
}

TEST(CoachMessage, NobodyTravelsAndAGoalieWithoutAShirtNumberIsNone) {
  CoachMessage told;
  told.ourGoalie = 12;
  EXPECT_EQ(CoachMessage::read(written(told)), CoachMessage());
}

}  // namespace
}  // namespace vok
