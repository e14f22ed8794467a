#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "audiomgr.h"

using namespace vok;

namespace {

/// A message of player 4 on the left, as it is heard.
AudioMsg heard(unsigned destination, unsigned time, bool left = true, const char* prefix = "vok") {
  AudioMsg msg(destination, time, false);
  msg << true;
  AudioMgr(4, left, prefix, 1).SpeakTo(msg);
  return AudioMsg(msg.getEncoding());
}

}  // namespace

TEST(AudioMsgQueue, KeepsTheNewestInOrderThroughAllTurnsOfTheRing) {
  for (unsigned size = 1; size <= 3; ++size)
    for (unsigned taken = 0; taken <= 3; ++taken) {
      AudioMsgQueue queue(size);
      AudioMsg msg;
      for (unsigned t = 0; t < taken; ++t) {
        queue.storeMessage(AudioMsg(0, 100 + t, false));
        ASSERT_TRUE(queue.getNextMsg(msg));
        ASSERT_EQ(msg.getServerTime(), 100 + t);
      }
      for (unsigned t = 1; t <= 4; ++t) queue.storeMessage(AudioMsg(0, t, false));
      for (unsigned t = 5 - size; t <= 4; ++t) {
        ASSERT_TRUE(queue.getNextMsg(msg));
        ASSERT_EQ(msg.getServerTime(), t) << size;
      }
      ASSERT_FALSE(queue.getNextMsg(msg));
    }
}

TEST(AudioMgr, StampsAMessageSoThatItsTeamTakesIt) {
  AudioMsg msg(0, 100, true);
  bool flag = false;
  msg << true;
  msg >> flag;
  AudioMgr coach(5, false, "voker", 1);
  coach.setStates(0, true);
  coach.SpeakTo(msg);
  EXPECT_STREQ(msg.getEncoding(), "vokqq0bKbaaabab");
  EXPECT_TRUE(AudioMgr(9, true, "vok", 1).storeMsg(AudioMsg(msg.getEncoding())));
}

TEST(AudioMgr, DropsWhatIsDamagedForeignOrForSomebodyElse) {
  AudioMgr mgr(5, true, "vok", 4);
  std::string damaged = heard(0, 1).getEncoding();
  damaged.back() = 'c';
  EXPECT_FALSE(mgr.storeMsg(AudioMsg(damaged.c_str())));
  EXPECT_FALSE(mgr.storeMsg(heard(0, 1, true, "fok")));
  EXPECT_FALSE(mgr.storeMsg(heard(0, 1, false)));
  EXPECT_FALSE(mgr.storeMsg(heard(7, 1)));
  AudioMsg msg;
  EXPECT_FALSE(mgr.getNextMsg(msg));
  EXPECT_TRUE(mgr.storeMsg(heard(0, 1)));
  EXPECT_TRUE(mgr.storeMsg(heard(5, 2)));
  EXPECT_TRUE(mgr.storeMsg(AudioMsg(3, "Other", damaged.c_str())));  // its sender is named
  for (const unsigned time : {1U, 2U, 1U}) {
    ASSERT_TRUE(mgr.getNextMsg(msg));
    EXPECT_EQ(msg.getServerTime(), time);
  }
  EXPECT_STREQ(msg.teamName.data(), "Other");
}

TEST(AudioMgr, HeardMsgRecentlyTellsThatNothingWasHeardRecently) {
  AudioMgr mgr(5, true, "vok", 1);
  mgr.storeMsg(heard(0, 100));
  mgr.storeMsg(AudioMsg(3, "Ours", heard(0, 104).getEncoding()));  // does not count
  EXPECT_FALSE(mgr.heardMsgRecently(101));
  EXPECT_TRUE(mgr.heardMsgRecently(102));
  EXPECT_TRUE(mgr.heardMsgRecently(0));
}

TEST(AudioMgr, AQueueWithoutPlacesIsReportedAndTakesNothing) {
  testing::internal::CaptureStderr();
  AudioMgr mgr(5, true, "vok", 0);
  const std::string line = testing::internal::GetCapturedStderr();
  EXPECT_EQ(line.find("Warning: ensure queueSize > 0 not valid in audiomgr:"), 0U);
  AudioMsg msg;
  EXPECT_FALSE(mgr.storeMsg(heard(0, 1)));
  EXPECT_FALSE(mgr.storeMsg(AudioMsg(3, "Ours", "x")));
  EXPECT_FALSE(mgr.getNextMsg(msg));
}
