#include "asyncinfo.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <climits>
#include <csignal>
#include <set>

#include "Config.h"
#include "constants.h"
#include "support/param_keeper.h"
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

  /// Begins a cycle of a second with a datagram that came `late` ms ago, `length` ms after the one
  /// that began the last cycle. Returns the wait that is armed for a visual message, 0 for none.
  long waitOfNextCycle(long late, long length) {
    SYNCH_MODE = false;
    SIMULATOR_STEP = 1000;
    timing->actionNeeded = false;
    gettimeofday(&timing->startTime, nullptr);
    timing->startTime = {timing->startTime.tv_sec - 100, 700'000};
    timing->setRecvTime();
    timing->recvTime -= late;
    const long began = timing->recvTime - length;
    timing->cycleStartTime = {began / 1000, began % 1000 * 1000};
    SensorData data;
    data.time = timing->getServerTime() + 1;
    timing->adjust(data);
    itimerval armed{};
    getitimer(ITIMER_REAL, &armed);
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, nullptr);
    return armed.it_value.tv_sec * 1000 + (armed.it_value.tv_usec + 999) / 1000;
  }

  bool sense(long time, int kicks, int says = 0) {
    SensorData data;
    data.type = SENSOR_TYPE_SENSE_BODY;
    data.time = time;
    data.kick_count = kicks;
    data.say_count = says;
    return timing->adjust(data);
  }

  ParamKeeper keeper;
  std::unique_ptr<AsyncCommInfo> timing;
};

TEST_F(PlayerTiming, TheWaitEndsWithTheLastViewThatIsStillToCome) {
  SEND_VI_STEP = 70;
  const struct {
    view_width width;
    view_quality quality;
    int before, now;  // views in the last two cycles, the latest 80 and 10 ms after their beginning
    long wait;
    bool settled = true;
  } cases[] = {
      // A view every other cycle: 80 + 5 + 2 * 70 less two times 101, or 10 + 5 + 2 * 70 less one.
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 0, 0, 400},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 1, 0},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 0, 23},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 0, 1, 54},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, 1, 1, 0},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_LOW, 1, 1, 400},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 1, 400, false},
      // Two views a cycle or three in two; 10 + 5 + 70 for the second one.
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 1, 1, 54},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 0, 2, 85},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 2, 1, 85},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 1, 0, 400},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 1, 0, 0},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 0, 1, 0},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 0, 0, 400},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& c = cases[i];
    timing->curVisAngle = timing->chVisAngle = c.width;
    timing->curVisQual = timing->chVisQual = c.quality;
    timing->viewModeTime = c.settled ? 2 : 1;
    timing->seeMsgCntIndex = 0;
    timing->seeMsgCnt = {c.now, 9, 9, c.before};
    timing->seeTime = {10, 0, 0, 80};
    const long wait = waitOfNextCycle(0, 1000);
    EXPECT_LE(wait, c.wait) << i;
    EXPECT_GT(wait, c.wait - 25) << i << ": some of it passed, but not so much";
    EXPECT_EQ(timing->abortWaitForSee, c.wait == 0) << i;
    EXPECT_EQ(timing->seeMsgCntIndex, 1);
  }
  // 10 + 5 + 2 * 43 is 101: a timer of 0 would never end. And the server may name any numbers.
  for (const auto& [viStep, factor] : {std::pair{43, 1}, std::pair{INT_MIN, INT_MIN}}) {
    SEND_VI_STEP = viStep;
    SLOW_DOWN_FACTOR = factor;
    timing->curVisAngle = timing->chVisAngle = VIEW_WIDTH_NORMAL;
    timing->viewModeTime = 2;
    timing->seeMsgCntIndex = 0;
    timing->seeMsgCnt = {1, 9, 9, 0};
    timing->seeTime = {10, 0, 0, 0};
    EXPECT_EQ(waitOfNextCycle(0, 1000), 0);
    EXPECT_TRUE(timing->abortWaitForSee);
  }
  SensorData see;
  see.type = SENSOR_TYPE_SEE;
  timing->adjust(see);
  EXPECT_EQ(timing->seeMsgCnt[1], 1);
  EXPECT_LT(timing->seeTime[1], 1000);
}

TEST_F(PlayerTiming, AnOddCycleLengthIsReportedAndALateStartWaitsForNothing) {
  StderrCapture errors;
  EXPECT_GT(waitOfNextCycle(0, -300), 375);
  EXPECT_TRUE(errors.take().starts_with("1 AsyncInfo: (Alpha No.7) last cycle was to short: -"));
  EXPECT_EQ(waitOfNextCycle(450, 1000), 0);
  EXPECT_TRUE(timing->abortWaitForSee);
  EXPECT_TRUE(errors.take().starts_with(
      "2 AsyncInfo: (Alpha No.7) aborting waitForSee due to non positive timervalue (-"));
  EXPECT_EQ(waitOfNextCycle(0, 2100), 0);
  EXPECT_TRUE(timing->abortWaitForSee);
  EXPECT_TRUE(errors.take().starts_with(
      "3 AsyncInfo: (Alpha No.7) timer not started as last cycle was to long: 21"));
}

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
  for (const CycleCommand command :
       {DASH_COMMAND, TURN_COMMAND, CATCH_COMMAND, TACKLE_COMMAND, MOVE_COMMAND}) {
    timing->sendAction(command, 0, 0);
  }
  SensorData data;
  data.type = SENSOR_TYPE_SENSE_BODY;
  data.time = 3;
  data.kick_count = data.dash_count = data.turn_count = 2;
  timing->adjust(data);
  const std::string line = "3 AsyncInfo (Alpha No.7): ";
  const std::string unsent = " I didn't send!\n";
  EXPECT_EQ(errors.take(),
            line + "Server executed command (kick)" + unsent + line +
                "Server executed command (dash)" + unsent + line +
                "Server executed command (turn)" + unsent + line + "missing 1 catch command(s)!\n" +
                line + "missing 1 tackle command(s)!\n" + line + "missing 1 move command(s)!\n" +
                line + "Server executed more than one command\n");
  timing->getLostAction(lost);
  EXPECT_EQ(lost.command, MOVE_COMMAND) << "the last one sent";
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
