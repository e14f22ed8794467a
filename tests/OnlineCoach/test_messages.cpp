// When the coach speaks to its players: short scripted matches in synchronous mode. What it says is
// in the signature.
#include <gtest/gtest.h>

#include "Config.h"
#include "constants.h"
#include "support/coach.h"

namespace vok::test {
namespace {

using Times = std::vector<long>;

class Messages : public CoachTest {
 protected:
  Messages() { checkIn(); }

  // Runs the cycles from `first` to `last` in the mode called in the first one and returns those in
  // which a message was sent.
  Times spokenIn(long first, long last, const std::string& call) {
    Times spoken;
    hear("(hear " + std::to_string(first) + " referee " + call + ")");
    for (long time = first; time <= last; ++time) {
      hear(view(time));
      hear("(think)");
      if (count(server.sent(), "(say (freeform ") == 1) spoken.push_back(time);
    }
    return spoken;
  }
};

TEST_F(Messages, AreRepeatedAfterFortyCyclesOfOneSetPlay) {
  EXPECT_EQ(coach->calcPlayerForKickUs(), -1) << "without a goalie there is no formation";
  EXPECT_EQ(spokenIn(1, 84, "free_kick_l"), (Times{1, 42, 83}));
  EXPECT_EQ(spokenIn(85, 86, "corner_kick_r"), Times{85}) << "a new set play waits for nothing";
  EXPECT_EQ(spokenIn(87, 88, "free_kick_fault_l"), Times()) << "not a kick yet";
  EXPECT_EQ(spokenIn(89, 90, "corner_kick_r"), Times{89});
}

TEST_F(Messages, AreNotSaidByASilentCoach) {
  coach.reset();
  server.sent();
  setEntry("say_messages", "0");
  checkIn();
  EXPECT_EQ(spokenIn(1, 84, "free_kick_l"), Times());
  EXPECT_EQ(coach->numMsgsLeft, 128);
}

TEST_F(Messages, AreSaidInRunningPlayWhenTheServerAllowsItAndTheKeyAsks) {
  for (const auto& [key, spoken] : {std::pair("0", Times()), {"1", Times{1004, 1604}}}) {
    coach.reset();
    server.sent();
    setEntry("say_inPlay", key);
    checkIn();
    EXPECT_EQ(spokenIn(1, 1, "kick_off_r"), Times{1});
    EXPECT_EQ(spokenIn(402, 2203, "play_on"), spoken) << key << ", 600 and 1200 cycles later";
  }
}

// In 126 places 109 of 112 characters can be written; the message is not stamped, its sum was made
// empty.
TEST_F(Messages, ThatDoNotFitIn127CharactersAreReportedInEveryCycle) {
  SAY_COACH_MSG_SIZE = 126;
  EXPECT_EQ(spokenIn(1, 2, "free_kick_l"), Times());
  const std::string head = "Coach : Fatal error: buffer overflow:(AudioMsg-invalid  (0r -> 0)(t= ";
  const std::string tail = ")(coachmsg)(Size= 123 unread= 109 FAIL ))\n";
  EXPECT_EQ(errors.take(), head + "1" + tail + head + "2" + tail);
  EXPECT_EQ(coach->numMsgsLeft, 128);
  SAY_COACH_MSG_SIZE = 127;
  EXPECT_EQ(spokenIn(3, 4, "free_kick_l"), Times{3});
}

TEST_F(Messages, EndWithTheBudgetUntilItIsRefilled) {
  const std::string lost = "Coach: Cannot scream: Lost voice earlier!\n";
  coach->numMsgsLeft = SAY_COACH_CNT_MAX = 1;
  EXPECT_EQ(spokenIn(1, 2, "free_kick_l"), Times{1});
  EXPECT_EQ(spokenIn(3, 4, "kick_in_r"), Times());
  EXPECT_EQ(errors.take(), lost) << "the repetition counts from the last message";
  EXPECT_EQ(spokenIn(5, 5, "play_on"), Times());
  EXPECT_EQ(spokenIn(6, 7, "kick_in_l"), Times());
  EXPECT_EQ(errors.take(), lost + lost) << "play has made the last message forgotten";
  coach->comm->async->serverTime = 5998;  // a match later, two halves of 3000 cycles
  EXPECT_EQ(spokenIn(5999, 5999, "free_kick_l"), Times());
  EXPECT_EQ(spokenIn(6000, 6001, "kick_in_r"), Times{6000});
  EXPECT_EQ(spokenIn(6002, 6002, "kick_in_l"), Times());
  coach->numMsgsLeft = 5;
  coach->comm->async->serverTime = 11999;
  EXPECT_EQ(spokenIn(12000, 12000, "kick_in_r"), Times{12000});
  EXPECT_EQ(coach->numMsgsLeft, 5 + 1 - 1);
}

}  // namespace
}  // namespace vok::test
