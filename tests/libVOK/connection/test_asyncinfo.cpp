#include "asyncinfo.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <tuple>

#include "playmodes.h"
#include "support/server.h"
#include "support/world.h"

namespace vok::test {
namespace {

// A player's timing, whose waits end with the timer.
class PlayerTiming : public testing::Test {
 protected:
  PlayerTiming() {
    Config::readFile(PLAIN_CONFIG);
    timing = std::make_unique<AsyncCommInfo>("Alpha", CLIENT_FIELDPLAYER);
    timing->setStates(7, 0, PLAY_MODE_PLAY_ON, SIDE_LEFT, false);
    timing->actionNeeded = false;
    timing->startTime -= std::chrono::seconds(100);
    SYNCH_MODE = true;  // no timer: the tests say when the wait is over
    std::signal(SIGALRM, SIG_IGN);
  }

  /// Begins a cycle of a second with a datagram that came `late` ms ago, `length` ms after the one
  /// that began the last cycle, and expects a wait of so many ms for a visual message.
  void expectWait(long expected, long late = 0, long length = 1000) {
    SYNCH_MODE = false;
    SIMULATOR_STEP = 1000;
    timing->setRecvTime();
    const long now = timing->recvTime;
    timing->recvTime -= late;
    timing->cycleStartTime = timing->recvTime - length;
    SensorData data;
    data.time = timing->getServerTime() + 1;
    itimerval armed{{}, {9, 0}};  // the last cycle's, still running
    const itimerval off{};
    setitimer(ITIMER_REAL, &armed, nullptr);
    timing->adjust(data);
    setitimer(ITIMER_REAL, &off, &armed);
    const long wait = armed.it_value.tv_sec * 1000 + (armed.it_value.tv_usec + 999) / 1000;
    timing->setRecvTime();
    const long spent = timing->recvTime - now + 1;
    EXPECT_TRUE(wait <= expected && expected <= wait + spent) << wait << " not " << expected;
    EXPECT_EQ(timing->abortWaitForSee, expected == 0);
  }

  /// Views in this cycle and in the last one, of a mode that was set so many cycles before.
  void see(view_width width, view_quality quality, int before, int now, long setAgo) {
    timing->curVisAngle = timing->chVisAngle = width;
    timing->curVisQual = timing->chVisQual = quality;
    timing->viewModeTime = setAgo;
    timing->seeMsgCntIndex = 0;
    timing->seeMsgCnt = {now, 9, 9, before};
    timing->seeTime = {10, 0, 0, 80};
  }

  /// Whether a text begins a cycle with the body sensed.
  bool take(const std::string& text) { return timing->adjust(parsed(text, CLIENT_FIELDPLAYER)); }

  StderrCapture errors;
  std::unique_ptr<AsyncCommInfo> timing;
};

TEST_F(PlayerTiming, TheWaitEndsWithTheLastViewThatIsStillToCome) {
  SEND_VI_STEP = 70;
  // Views in the last two cycles, the latest 80 and 10 ms after their beginning, and the wait.
  const std::tuple<view_width, view_quality, int, int, long> cases[] = {
      // A view every other cycle: 80 + 5 + 2 * 70 less two times 101, or 10 + 5 + 2 * 70 less one.
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 1, 0},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 1, 0, 23},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, 0, 1, 54},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_LOW, 1, 1, 400},
      // Two views a cycle or three in two; 10 + 5 + 70 for the second one.
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 1, 1, 54},
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, 0, 2, 85},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 1, 0, 0},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, 0, 0, 400}};
  for (const auto& [width, quality, before, now, expected] : cases) {
    for (const int setAgo : {1, 2}) {  // not settled, and settled
      see(width, quality, before, now, setAgo);
      expectWait(setAgo == 1 ? 400 : expected);
    }
  }
  SEND_VI_STEP = 43;
  see(VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 0, 1, 2);
  expectWait(0);  // 10 + 5 + 2 * 43 is 101: a timer of 0 would never end
  take("(see 3 ((b) 1 0))");
  EXPECT_EQ(timing->seeMsgCnt[1], 1);
  EXPECT_LT(timing->seeTime[1], 100'000) << "since the cycle began, not since the start";
}

TEST_F(PlayerTiming, AnOddCycleLengthIsReportedAndALateStartWaitsForNothing) {
  expectWait(400, 0, -300);
  expectWait(0, 450);
  expectWait(0, 0, 2100);
  const Lines reports = lines(errors.take());
  ASSERT_EQ(reports.size(), 3U);
  const std::string head = " AsyncInfo: (Alpha No.7) ";
  EXPECT_TRUE(reports[0].starts_with("1" + head + "last cycle was to short: -"));
  EXPECT_TRUE(reports[1].starts_with("2" + head + "aborting waitForSee due to non positive timer"));
  EXPECT_TRUE(reports[2].starts_with("3" + head + "timer not started as last cycle was to long"));
}

TEST_F(PlayerTiming, ActsOnceItsBodyIsSensedAndTheWaitIsOver) {
  EXPECT_TRUE(take("(sense_body 1 (kick 0))"));
  EXPECT_FALSE(timing->act);
  AsyncCommInfo::alrmHandler(SIGALRM);
  EXPECT_TRUE(timing->takeAct());
  EXPECT_FALSE(take("(sense_body 1 (kick 0))")) << "the second body sense of a cycle";
  take("(see 2 ((b) 1 0))");
  EXPECT_EQ(errors.take(),
            "1 AsyncInfo (Alpha No.7): agent did not send command\n"
            "Warning: ensure false not valid in asyncinfo:709\n");
  AsyncCommInfo::alrmHandler(SIGALRM);
  EXPECT_FALSE(timing->act) << "not sensed yet";
  timing->playMode = PLAY_MODE_GOAL_US;
  for (int i = 0; i < 2; ++i)
    EXPECT_TRUE(take("(sense_body 2 (kick 0))")) << "in a standstill every one begins a cycle";
}

TEST_F(PlayerTiming, CommandsThatTheServerCountsOtherwiseAreReported) {
  const std::string head = " AsyncInfo (Alpha No.7): ";
  timing->sendAction(KICK_COMMAND, 50, 0.5);
  timing->incSayCount();
  take("(sense_body 1 (kick 0))");
  EXPECT_EQ(errors.take(), "1" + head + "missing 1 kick command(s)!\n1" + head +
                               "missing say commands (sent 1, was told 0)\n");
  timing->sendAction(TURN_COMMAND, 1, 0);
  take("(sense_body 2 (kick 1))");  // the kick has come late
  EXPECT_EQ(errors.take(), "2" + head + "missing 1 turn command(s)!\n");
  EXPECT_EQ(timing->processedAction.command, KICK_COMMAND);
  EXPECT_EQ(timing->lostAction.command, TURN_COMMAND) << "the second loss in a row";
  for (const CycleCommand command : {TURN_COMMAND, CATCH_COMMAND, DASH_COMMAND})
    timing->sendAction(command, 0, 0);
  take("(sense_body 3 (kick 2) (dash 2) (turn 2))");
  EXPECT_EQ(errors.take(), "3" + head + "Server executed command (kick) I didn't send!\n3" + head +
                               "Server executed command (dash) I didn't send!\n3" + head +
                               "missing 1 catch command(s)!\n3" + head +
                               "Server executed more than one command\n");
  EXPECT_EQ(timing->lostAction.command, NO_COMMAND) << "the last one sent was not lost";
}

}  // namespace
}  // namespace vok::test
