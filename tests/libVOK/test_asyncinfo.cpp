#include "asyncinfo.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <climits>
#include <csignal>
#include <memory>
#include <sstream>
#include <tuple>

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

  void call(long time, play_mode mode, int score = 0) {
    SensorData data;
    data.type = SENSOR_TYPE_HEAR;
    data.sender = SENDER_REFEREE;
    data.time = time;
    data.mode = mode;
    data.score = score;
    timing->adjust(data);
  }

  /// Feeds the view of time 8 for "v8" and the call of a kick-in for "k8", "think" and "alarm";
  /// "act" is a cycle that begins, "due" an answer that is to be given, and no more of them.
  void play(const std::string& script) {
    std::istringstream words(script);
    for (std::string word; words >> word;) {
      const std::string got = timing->takeAct() ? "act" : timing->answerDue() ? "due" : "";
      if (got == "due") timing->takeAnswer();
      EXPECT_EQ(got, word == "act" || word == "due" ? word : "") << word << " in " << script;
      SensorData view;
      view.type = SENSOR_TYPE_EXACT;
      if (word[0] == 'v') view.time = std::stol(word.substr(1));
      if (word[0] == 'v') timing->adjust(view);
      if (word[0] == 'k') call(std::stol(word.substr(1)), PLAY_MODE_KICK_IN_US);
      if (word == "think") timing->think();
      if (word == "alarm") raise(SIGALRM);
    }
  }

  std::unique_ptr<AsyncCommInfo> timing;
};

TEST_F(CycleTiming, ACycleBeginsWithALaterTimeOrInAStandstill) {
  const std::tuple<play_mode, long, const char*> matches[] = {
      {PLAY_MODE_PLAY_ON, 7, "v7 v8 act v6 v9 act end"},
      {PLAY_MODE_GOAL_US, 50, "k50 act k50 end"},  // once called the clock runs
      {PLAY_MODE_GOAL_US, 50, "v50 act v50 act end"},
      {PLAY_MODE_BEFORE_KICK_OFF, 0, "k0 end"},
      {PLAY_MODE_PLAY_ON, 1, "alarm v2 act alarm end"}};
  for (const auto& [mode, time, script] : matches) {
    timing->setStates(0, time, mode, SIDE_LEFT, false);
    play(script);
  }
  for (int us = PLAY_MODE_KICK_OFF_US; us < PLAY_MODE_PENALTY_SCORE_THEM; us += 2)
    EXPECT_EQ(isStopped(static_cast<play_mode>(us)), isStopped(static_cast<play_mode>(us + 1)));
}

TEST_F(CycleTiming, InSynchronousModeItNeedsAThinkAndEveryThinkItsAnswer) {
  SYNCH_MODE = true;
  const std::pair<play_mode, const char*> matches[] = {
      {PLAY_MODE_PLAY_ON, "v2 think act think v3 act end"},
      // The first is of a foul, in which the clock stands, the second of a late view.
      {PLAY_MODE_FOUL_CHARGE_US, "v1 think due think v1 due v1 think due end"},
      {PLAY_MODE_PLAY_ON, "think k2 act v2 think v3 act end"}};
  for (const auto& [mode, script] : matches) {
    timing = nullptr;
    timing = std::make_unique<AsyncCommInfo>("Alpha", CLIENT_ONLINECOACH);
    timing->setStates(0, 1, mode, SIDE_LEFT, false);
    play(script);
  }
}

TEST_F(CycleTiming, MissedCyclesAreReportedAndOneCycleBegins) {
  timing->setStates(0, 7, PLAY_MODE_PLAY_ON, SIDE_LEFT, false);
  StderrCapture errors;
  play("v10 act end");
  EXPECT_EQ(errors.take(),
            "10 AsyncInfo (Alpha No.0): completely missed server timesteps from 8 to 9 "
            "(no commands sent)\n");
}

TEST_F(CycleTiming, CallsSetModeScoreAndHalf) {
  timing->setStates(0, 1, PLAY_MODE_PLAY_ON, SIDE_LEFT, false);
  call(2, PLAY_MODE_GOAL_US, 3);
  call(2, PLAY_MODE_GOAL_THEM, 1);
  call(2, PLAY_MODE_HALF_TIME);
  call(2, PLAY_MODE_UNKNOWN);
  EXPECT_EQ(timing->getOurScore(), 3);
  EXPECT_EQ(timing->getOtherScore(), 1);
  EXPECT_TRUE(timing->inSecondHalf());
  EXPECT_EQ(timing->getPlayMode(), PLAY_MODE_HALF_TIME) << "a card changes no mode";
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

  /// A body sense that tells these counts of kicks, of dashes and turns, and of says.
  bool sense(long time, int kicks, int others = 0, int says = 0) {
    SensorData data;
    data.type = SENSOR_TYPE_SENSE_BODY;
    data.time = time;
    data.kick_count = kicks;
    data.dash_count = data.turn_count = others;
    data.say_count = says;
    return timing->adjust(data);
  }

  StderrCapture errors;
  std::unique_ptr<AsyncCommInfo> timing;
};

TEST_F(PlayerTiming, TheWaitEndsWithTheLastViewThatIsStillToCome) {
  SEND_VI_STEP = 70;
  // Views in the last two cycles, the latest 80 and 10 ms after their beginning, and the wait.
  const std::tuple<view_width, view_quality, int, int, long> cases[] = {
      // A view every other cycle: 80 + 5 + 2 * 70 less two times 101, or 10 + 5 + 2 * 70 less one.
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 0, 0, 400},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 1, 0},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 0, 23},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 0, 1, 54},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, 1, 1, 0},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_LOW, 1, 1, 400},
      // Two views a cycle or three in two; 10 + 5 + 70 for the second one.
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 1, 1, 54},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 0, 2, 85},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 2, 1, 85},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 1, 0, 400},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 1, 0, 0},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 0, 1, 0},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 0, 0, 400},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 1, 400},  // the last: not settled yet
  };
  for (const auto& c : cases) {
    const auto& [width, quality, before, now, expected] = c;
    const long i = &c - cases;
    timing->curVisAngle = timing->chVisAngle = width;
    timing->curVisQual = timing->chVisQual = quality;
    timing->viewModeTime = &c == &cases[13] ? 1 : 2;
    timing->seeMsgCntIndex = 0;
    timing->seeMsgCnt = {now, 9, 9, before};
    timing->seeTime = {10, 0, 0, 80};
    const long wait = waitOfNextCycle(0, 1000);
    EXPECT_LE(wait, expected) << i;
    EXPECT_GT(wait, expected - 25) << i << ": some of it passed, but not so much";
    EXPECT_EQ(timing->abortWaitForSee, expected == 0) << i;
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
  EXPECT_GT(waitOfNextCycle(0, -300), 375);
  EXPECT_EQ(waitOfNextCycle(450, 1000), 0);
  EXPECT_TRUE(timing->abortWaitForSee);
  EXPECT_EQ(waitOfNextCycle(0, 2100), 0);
  EXPECT_TRUE(timing->abortWaitForSee);
  const Lines reports = lines(errors.take());
  const char* const beginnings[] = {
      "1 AsyncInfo: (Alpha No.7) last cycle was to short: -",
      "2 AsyncInfo: (Alpha No.7) aborting waitForSee due to non positive timervalue (-",
      "3 AsyncInfo: (Alpha No.7) timer not started as last cycle was to long: 21"};
  ASSERT_EQ(reports.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_TRUE(reports[i].starts_with(beginnings[i])) << reports[i];
}

TEST_F(PlayerTiming, ActsOnceItsBodyIsSensedAndTheWaitIsOver) {
  timing->actionNeeded = false;
  EXPECT_TRUE(sense(1, 0));
  EXPECT_FALSE(timing->act);
  AsyncCommInfo::alrmHandler(SIGALRM);
  EXPECT_TRUE(timing->takeAct());
  EXPECT_FALSE(sense(1, 0)) << "the second body sense of a cycle";
}

TEST_F(PlayerTiming, CommandsThatTheServerCountsOtherwiseAreReported) {
  const auto reported = [this](long time, const Lines& what) {
    std::string text;
    for (const std::string& line : what)
      text += std::to_string(time) + " AsyncInfo (Alpha No.7): " + line + "\n";
    EXPECT_EQ(errors.take(), text);
  };
  timing->sendAction(KICK_COMMAND, 50, 0.5);
  timing->incSayCount();
  sense(1, 0);
  reported(1, {"missing 1 kick command(s)!", "missing say commands (sent 1, was told 0)"});
  CycleAction lost;
  timing->getLostAction(lost);
  EXPECT_EQ(lost.command, KICK_COMMAND);
  EXPECT_EQ(lost.param1, 50);
  timing->actionNeeded = false;
  sense(2, 1);
  reported(2, {"Server executed command (kick) I didn't send!"});
  for (const CycleCommand command :
       {DASH_COMMAND, TURN_COMMAND, CATCH_COMMAND, TACKLE_COMMAND, MOVE_COMMAND})
    timing->sendAction(command, 0, 0);
  sense(3, 2, 2);
  reported(3, {"Server executed command (kick) I didn't send!",
               "Server executed command (dash) I didn't send!",
               "Server executed command (turn) I didn't send!", "missing 1 catch command(s)!",
               "missing 1 tackle command(s)!", "missing 1 move command(s)!",
               "Server executed more than one command"});
  timing->getLostAction(lost);
  EXPECT_EQ(lost.command, MOVE_COMMAND) << "the last one sent";
}

TEST_F(PlayerTiming, ACycleWithoutACommandIsReported) {
  sense(1, 0);
  EXPECT_EQ(errors.take(),
            "0 AsyncInfo (Alpha No.7): agent did not send command\n"
            "Warning: ensure false not valid in asyncinfo:709\n");
}

}  // namespace
}  // namespace vok::test
