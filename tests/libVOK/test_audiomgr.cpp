#include <gtest/gtest.h>

#include <string>
#include <utility>

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
  AudioMsg msg;
  for (unsigned size = 0; size <= 3; ++size)
    for (unsigned taken = 0; taken <= 3; ++taken) {
      AudioMsgQueue queue(size);
      for (unsigned t = 0; t < taken; ++t) {
        queue.storeMessage(AudioMsg(0, 100, false));
        ASSERT_EQ(queue.getNextMsg(msg), size > 0);
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
  (msg << true) >> flag;
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
  const std::pair<AudioMsg, bool> rows[] = {
      {AudioMsg(damaged.c_str()), false},
      {heard(0, 1, true, "fok"), false},
      {heard(0, 1, false), false},
      {heard(7, 1), false},
      {heard(0, 2), true},
      {heard(5, 3), true},
      {AudioMsg(3, "Other", damaged.c_str()), true}};  // a named sender is not asked for a sum
  AudioMsg msg;
  for (const auto& [received, taken] : rows) {
    EXPECT_EQ(mgr.storeMsg(received), taken) << received.getEncoding();
    EXPECT_EQ(mgr.getNextMsg(msg), taken);
  }
  EXPECT_STREQ(msg.teamName.data(), "Other");
}

TEST(AudioMgr, HeardMsgRecentlyTellsThatNothingWasHeardRecently) {
  AudioMgr mgr(5, true, "vok", 1);
  mgr.storeMsg(heard(0, 100));
  mgr.storeMsg(AudioMsg(3, "Ours", heard(0, 104).getEncoding()));  // does not count
  EXPECT_FALSE(mgr.heardMsgRecently(101));
  EXPECT_TRUE(mgr.heardMsgRecently(102));
}
