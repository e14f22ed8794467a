#include "asyncinfo.h"

#include <gtest/gtest.h>

#include <csignal>
#include <set>

#include "Config.h"
#include "constants.h"
#include "support/server.h"

namespace vok::test {
namespace {

class CycleTiming : public testing::Test {
 protected:
  CycleTiming() {
    Config::readFile(shippedConfig);
    timing = std::make_unique<AsyncCommInfo>("Alpha", CLIENT_ONLINECOACH);
  }
  ~CycleTiming() override { SYNCH_MODE = false; }

  void start(play_mode mode, long time) { timing->setStates(0, time, mode, SIDE_LEFT, false); }

  void feedView(long time) {
    SensorData data;
    data.type = SENSOR_TYPE_EXACT;
    data.time = time;
    timing->adjust(data);
  }

  void feedCall(long time, play_mode mode, int score = 0) {
    SensorData data;
    data.type = SENSOR_TYPE_HEAR;
    data.sender = SENDER_REFEREE;
    data.time = time;
    data.mode = mode;
    data.score = score;
    timing->adjust(data);
  }

  std::unique_ptr<AsyncCommInfo> timing;
};

TEST_F(CycleTiming, ACycleBeginsWithTheFirstMessageOfALaterTime) {
  start(PLAY_MODE_PLAY_ON, 7);
  feedView(7);
  EXPECT_FALSE(timing->takeAct()) << "a repeated time";
  feedView(8);
  EXPECT_TRUE(timing->takeAct());
  EXPECT_FALSE(timing->takeAct()) << "it is taken once";
  feedView(6);
  EXPECT_FALSE(timing->takeAct()) << "an older time";
  EXPECT_EQ(timing->getServerTime(), 8);
}

TEST_F(CycleTiming, MissedCyclesAreReportedAndOneCycleBegins) {
  start(PLAY_MODE_PLAY_ON, 7);
  StderrCapture errors;
  feedView(10);
  EXPECT_EQ(errors.take(),
            "10 AsyncInfo (Alpha No.0): completely missed server timesteps from 8 to 9 "
            "(no commands sent)\n");
  EXPECT_TRUE(timing->takeAct());
  EXPECT_FALSE(timing->takeAct());
}

TEST_F(CycleTiming, EveryViewOpensACycleInTheModesWithAStandingClock) {
  const std::set<int> stopped = {
      PLAY_MODE_BEFORE_KICK_OFF,    PLAY_MODE_TIME_OVER,         PLAY_MODE_PAUSE,
      PLAY_MODE_PENALTY_KICK_US,    PLAY_MODE_PENALTY_KICK_THEM, PLAY_MODE_GOAL_US,
      PLAY_MODE_GOAL_THEM,          PLAY_MODE_OFFSIDE_US,        PLAY_MODE_OFFSIDE_THEM,
      PLAY_MODE_BACKPASS_US,        PLAY_MODE_BACKPASS_THEM,     PLAY_MODE_FREEKICK_FAULT_US,
      PLAY_MODE_FREEKICK_FAULT_THEM};
  for (int mode = PLAY_MODE_UNKNOWN; mode <= PLAY_MODE_PENALTY_SCORE_THEM; ++mode) {
    start(static_cast<play_mode>(mode), 9);
    feedView(9);
    EXPECT_EQ(timing->takeAct(), stopped.contains(mode)) << mode;
  }
}

TEST_F(CycleTiming, ACallEndsAStandstillButNotAtTimeZero) {
  start(PLAY_MODE_GOAL_US, 50);
  feedCall(50, PLAY_MODE_KICK_OFF_THEM);
  EXPECT_TRUE(timing->takeAct());
  feedCall(50, PLAY_MODE_PLAY_ON);
  EXPECT_FALSE(timing->takeAct()) << "the clock ran already";
  start(PLAY_MODE_BEFORE_KICK_OFF, 0);
  feedCall(0, PLAY_MODE_KICK_OFF_US);
  EXPECT_FALSE(timing->takeAct());
}

TEST_F(CycleTiming, CallsSetModeScoreAndHalf) {
  start(PLAY_MODE_PLAY_ON, 1);
  feedCall(2, PLAY_MODE_GOAL_US, 3);
  feedCall(2, PLAY_MODE_GOAL_THEM, 1);
  feedCall(2, PLAY_MODE_HALF_TIME);
  feedCall(2, PLAY_MODE_UNKNOWN);
  EXPECT_EQ(timing->getOurScore(), 3);
  EXPECT_EQ(timing->getOtherScore(), 1);
  EXPECT_TRUE(timing->inSecondHalf());
  EXPECT_EQ(timing->getPlayMode(), PLAY_MODE_HALF_TIME) << "a card changes no mode";
}

TEST_F(CycleTiming, InSynchronousModeACycleNeedsBothANewTimeAndThink) {
  SYNCH_MODE = true;
  start(PLAY_MODE_PLAY_ON, 1);
  feedView(2);
  EXPECT_FALSE(timing->takeAct());
  timing->think();
  EXPECT_FALSE(timing->answerDue());
  EXPECT_TRUE(timing->takeAct());
  timing->think();
  EXPECT_FALSE(timing->takeAct());
  EXPECT_FALSE(timing->answerDue()) << "the view is still to come";
  feedView(3);
  EXPECT_TRUE(timing->takeAct());
}

TEST_F(CycleTiming, AThinkWithAViewThatOpenedNoCycleIsToBeAnswered) {
  SYNCH_MODE = true;
  start(PLAY_MODE_FOUL_CHARGE_US, 5);
  for (const bool viewFirst : {true, false}) {
    if (viewFirst) feedView(5);
    EXPECT_FALSE(timing->answerDue());
    timing->think();
    if (!viewFirst) feedView(5);
    EXPECT_TRUE(timing->answerDue());
    EXPECT_FALSE(timing->takeAct());
    timing->takeAnswer();
    timing->think();
    EXPECT_FALSE(timing->answerDue()) << "a think alone waits for the next view";
    feedView(5);
    timing->takeAnswer();
  }
}

TEST_F(CycleTiming, TheLateViewOfAnAnsweredCycleIsNoCauseForAnotherAnswer) {
  SYNCH_MODE = true;
  start(PLAY_MODE_PLAY_ON, 2);
  timing->think();
  feedCall(3, PLAY_MODE_KICK_IN_US);
  EXPECT_TRUE(timing->takeAct());
  feedView(3);
  timing->think();
  EXPECT_FALSE(timing->answerDue());
  feedView(4);
  EXPECT_TRUE(timing->takeAct());
}

TEST_F(CycleTiming, AnAlarmChangesNothingForACoach) {
  start(PLAY_MODE_PLAY_ON, 1);
  raise(SIGALRM);
  EXPECT_FALSE(timing->act);
  feedView(2);
  raise(SIGALRM);
  EXPECT_TRUE(timing->takeAct());
}

TEST_F(CycleTiming, ASecondOneIsReportedAndDoesNotTakeThePlaceOfTheFirst) {
  StderrCapture errors;
  {
    AsyncCommInfo second("Beta", CLIENT_ONLINECOACH);
    EXPECT_EQ(errors.take(), "You can create only one AsyncCommInfo!\n");
    EXPECT_EQ(AsyncCommInfo::info, timing.get());
  }
  EXPECT_EQ(AsyncCommInfo::info, timing.get());
}

// A player's timing, whose waits end with the timer.
class PlayerTiming : public testing::Test {
 protected:
  PlayerTiming() {
    Config::readFile(shippedConfig);
    timing = std::make_unique<AsyncCommInfo>("Alpha", CLIENT_FIELDPLAYER);
    timing->setStates(7, 0, PLAY_MODE_PLAY_ON, SIDE_LEFT, false);
    SYNCH_MODE = true;  // no timer: the test decides
  }
  ~PlayerTiming() override { SYNCH_MODE = false; }

  bool sense(long time, int kicks, int says = 0) {
    SensorData data;
    data.type = SENSOR_TYPE_SENSE_BODY;
    data.time = time;
    data.kick_count = kicks;
    data.say_count = says;
    return timing->adjust(data);
  }

  std::unique_ptr<AsyncCommInfo> timing;
};

TEST_F(PlayerTiming, ActsOnceItsBodyIsSensedAndTheWaitIsOver) {
  timing->actionNeeded = false;
  EXPECT_TRUE(sense(1, 0));
  EXPECT_FALSE(timing->act);
  AsyncCommInfo::alrmHandler(SIGALRM);
  EXPECT_TRUE(timing->takeAct());
  EXPECT_FALSE(sense(1, 0)) << "the second body sense of a cycle";
}

TEST_F(PlayerTiming, CommandsLostOnTheWayAreReported) {
  StderrCapture errors;
  timing->sendAction(KICK_COMMAND, 50, 0.5);
  timing->incSayCount();
  sense(1, 0);
  EXPECT_EQ(errors.take(),
            "1 AsyncInfo (Alpha No.7): missing 1 kick command(s)!\n"
            "1 AsyncInfo (Alpha No.7): missing say commands (sent 1, was told 0)\n");
  CycleAction lost;
  timing->getLostAction(lost);
  EXPECT_EQ(lost.command, KICK_COMMAND);
  EXPECT_EQ(lost.param1, 50);
  timing->actionNeeded = false;
  sense(2, 1);
  EXPECT_EQ(errors.take(),
            "2 AsyncInfo (Alpha No.7): Server executed command (kick) I didn't send!\n");
}

TEST_F(PlayerTiming, ACycleWithoutACommandIsReported) {
  StderrCapture errors;
  sense(1, 0);
  EXPECT_EQ(errors.take(),
            "0 AsyncInfo (Alpha No.7): agent did not send command\n"
            "Warning: ensure false not valid in asyncinfo:709\n");
}

}  // namespace
}  // namespace vok::test
