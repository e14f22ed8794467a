#include "asyncinfo.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <climits>
#include <csignal>
#include <memory>
#include <sstream>
#include <tuple>
#include <vector>

#include "playmodes.h"
#include "support/server.h"
#include "support/world.h"

namespace vok::test {
namespace {

TEST(CycleTiming, ASecondOneIsReportedAndDoesNotTakeThePlaceOfTheFirst) {
  Config::readFile(SHIPPED_CONFIG);
  StderrCapture errors;
  const AsyncCommInfo first("Alpha", CLIENT_ONLINECOACH);
  { const AsyncCommInfo second("Beta", CLIENT_ONLINECOACH); }
  EXPECT_EQ(errors.take(), "You can create only one AsyncCommInfo!\n");
  EXPECT_EQ(AsyncCommInfo::info, &first);
}

// A player's timing, whose waits end with the timer.
class PlayerTiming : public testing::Test {
 protected:
  PlayerTiming() {
    Config::readFile(SHIPPED_CONFIG);
    timing = std::make_unique<AsyncCommInfo>("Alpha", CLIENT_FIELDPLAYER);
    timing->setStates(7, 0, PLAY_MODE_PLAY_ON, SIDE_LEFT, false);
    SYNCH_MODE = true;  // no timer: the tests say when the wait is over
    std::signal(SIGALRM, SIG_IGN);
  }

  /// Begins a cycle of a second with a datagram that came `late` ms ago, `length` ms after the one
  /// that began the last cycle. Returns the wait that is armed for a visual message, 0 for none,
  /// of which `spent` ms have passed at most.
  long waitOfNextCycle(long late, long length) {
    SYNCH_MODE = false;
    SIMULATOR_STEP = 1000;
    timing->actionNeeded = false;
    gettimeofday(&timing->startTime, nullptr);
    timing->startTime = {timing->startTime.tv_sec - 100, 700'000};
    timing->setRecvTime();
    const long now = timing->recvTime;
    timing->recvTime -= late;
    const long began = timing->recvTime - length;
    timing->cycleStartTime = {began / 1000, began % 1000 * 1000};
    SensorData data;
    data.time = timing->getServerTime() + 1;
    timing->adjust(data);
    itimerval armed{};
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, &armed);
    timing->setRecvTime();
    spent = timing->recvTime - now + 1;
    return armed.it_value.tv_sec * 1000 + (armed.it_value.tv_usec + 999) / 1000;
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

  /// A body sense that tells these counts of kicks, of dashes and turns, and of says.
  bool sense(long time, int kicks, int others = 0, int says = 0) {
    const std::string other = " " + std::to_string(others) + ")";
    return timing->adjust(parsed("(sense_body " + std::to_string(time) + " (kick " +
                                     std::to_string(kicks) + ") (dash" + other + " (turn" + other +
                                     " (say " + std::to_string(says) + "))",
                                 CLIENT_FIELDPLAYER));
  }

  StderrCapture errors;
  std::unique_ptr<AsyncCommInfo> timing;
  long spent = 0;
};

TEST_F(PlayerTiming, TheWaitEndsWithTheLastViewThatIsStillToCome) {
  SEND_VI_STEP = 70;
  // Views in the last two cycles, the latest 80 and 10 ms after their beginning, and the wait.
  struct Seen {
    int before, now;
    long wait;
  };
  const std::tuple<view_width, view_quality, std::vector<Seen>> modes[] = {
      // A view every other cycle: 80 + 5 + 2 * 70 less two times 101, or 10 + 5 + 2 * 70 less one.
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, {{0, 0, 400}, {1, 1, 0}, {1, 0, 23}, {0, 1, 54}}},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW, {{1, 1, 0}}},
      {VIEW_WIDTH_NORMAL, VIEW_QUALITY_LOW, {{1, 1, 400}}},
      // Two views a cycle or three in two; 10 + 5 + 70 for the second one.
      {VIEW_WIDTH_NARROW, VIEW_QUALITY_HIGH, {{1, 1, 54}, {0, 2, 85}, {2, 1, 85}, {1, 0, 400}}},
      {VIEW_WIDTH_WIDE, VIEW_QUALITY_HIGH, {{1, 0, 0}, {0, 1, 0}, {0, 0, 400}}}};
  for (const auto& [width, quality, cases] : modes) {
    for (const auto& [before, now, expected] : cases) {
      for (const int setAgo : {1, 2}) {  // not settled, and settled
        see(width, quality, before, now, setAgo);
        const long wait = waitOfNextCycle(0, 1000), full = setAgo == 1 ? 400 : expected;
        EXPECT_TRUE(wait <= full && full <= wait + spent) << wait << " not " << full;
        EXPECT_EQ(timing->abortWaitForSee, full == 0) << width << quality << before << now;
        EXPECT_EQ(timing->viewModeTime, setAgo + 1);
      }
    }
  }
  // 10 + 5 + 2 * 43 is 101: a timer of 0 would never end. And the server may name any numbers.
  for (const auto& [viStep, factor] : {std::pair{43, 1}, std::pair{INT_MIN, INT_MIN}}) {
    SEND_VI_STEP = viStep;
    SLOW_DOWN_FACTOR = factor;
    see(VIEW_WIDTH_NORMAL, VIEW_QUALITY_HIGH, 0, 1, 2);
    EXPECT_TRUE(waitOfNextCycle(0, 1000) == 0 && timing->abortWaitForSee);
  }
  timing->adjust(parsed("(see 3 ((b) 1 0))", CLIENT_FIELDPLAYER));
  EXPECT_EQ(timing->seeMsgCnt[1], 1);
  EXPECT_LT(timing->seeTime[1], 100'000) << "since the cycle began, not since the start";
}

TEST_F(PlayerTiming, AnOddCycleLengthIsReportedAndALateStartWaitsForNothing) {
  const long wait = waitOfNextCycle(0, -300);
  EXPECT_TRUE(wait <= 400 && 400 <= wait + spent) << wait;
  for (const auto& [late, length] : {std::pair(450, 1000), {0, 2100}})
    EXPECT_TRUE(waitOfNextCycle(late, length) == 0 && timing->abortWaitForSee);
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
  timing->twistNeck();
  EXPECT_TRUE(sense(1, 0));
  EXPECT_FALSE(timing->act || timing->isNeckTwisted());
  AsyncCommInfo::alrmHandler(SIGALRM);
  EXPECT_TRUE(timing->takeAct());
  EXPECT_FALSE(sense(1, 0)) << "the second body sense of a cycle";
  timing->adjust(parsed("(see 2 ((b) 1 0))", CLIENT_FIELDPLAYER));
  EXPECT_EQ(errors.take(),
            "1 AsyncInfo (Alpha No.7): agent did not send command\n"
            "Warning: ensure false not valid in asyncinfo:709\n");
  AsyncCommInfo::alrmHandler(SIGALRM);
  EXPECT_FALSE(timing->act) << "not sensed yet";
  timing->playMode = PLAY_MODE_GOAL_US;
  EXPECT_TRUE(sense(2, 0) && sense(2, 0)) << "in a standstill every one begins a cycle";
  timing->adjust(parsed("(sense_body 3 (view_mode low wide))", CLIENT_FIELDPLAYER));
  sense(3, 0);  // names no view mode
  EXPECT_EQ(std::pair(timing->curVisAngle, timing->curVisQual),
            std::pair(VIEW_WIDTH_WIDE, VIEW_QUALITY_LOW));
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
  EXPECT_EQ(timing->lostAction.command, KICK_COMMAND);
  EXPECT_EQ(timing->lostAction.param1, 50);
  timing->sendAction(TURN_COMMAND, 1, 0);
  sense(2, 1);
  reported(2, {"missing 1 turn command(s)!"});  // the kick has come late
  EXPECT_EQ(timing->processedAction.command, KICK_COMMAND);
  EXPECT_EQ(timing->lostAction.command, TURN_COMMAND) << "the second loss in a row";
  for (const CycleCommand command :
       {TURN_COMMAND, CATCH_COMMAND, TACKLE_COMMAND, MOVE_COMMAND, DASH_COMMAND})
    timing->sendAction(command, 0, 0);
  sense(3, 2, 2);
  reported(3, {"Server executed command (kick) I didn't send!",
               "Server executed command (dash) I didn't send!", "missing 1 catch command(s)!",
               "missing 1 tackle command(s)!", "missing 1 move command(s)!",
               "Server executed more than one command"});
  EXPECT_EQ(timing->lostAction.command, NO_COMMAND) << "the last one sent was not lost";
}

}  // namespace
}  // namespace vok::test
