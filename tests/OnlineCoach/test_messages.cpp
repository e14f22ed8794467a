// When the coach speaks to its players: short scripted matches in synchronous mode. What it says is
// in the signature.
#include <gtest/gtest.h>

#include "constants.h"
#include "support/coach.h"

namespace vok::test {
namespace {

using Times = std::vector<long>;

class Messages : public CoachTest {
 protected:
  Messages() {
    checkIn();
    EXPECT_EQ(server.receive(), "(eye on)");
  }

  // One cycle in which the referee may call something; what the coach sent in it before "(done)".
  Lines cycle(long time, const std::string& see, const std::string& call = "") {
    if (!call.empty()) hear("(hear " + std::to_string(time) + " referee " + call + ")");
    hear(see);
    hear("(think)");
    Lines sent;
    for (std::string text; (text = server.receive()) != "(done)";) {
      if (text.empty()) return {"no answer"};
      sent.push_back(text);
    }
    return sent;
  }

  // Runs the cycles from `first` to `last` in the mode called in the first one and returns those in
  // which a whole message was sent.
  Times spokenIn(long first, long last, const std::string& call = "") {
    Times spoken;
    for (long time = first; time <= last; ++time) {
      for (const std::string& text : cycle(time, view(time), time == first ? call : "")) {
        EXPECT_TRUE(text.starts_with("(say (freeform \"vok")) << text;
        EXPECT_EQ(text.size(), 145);
        spoken.push_back(time);
      }
    }
    return spoken;
  }
};

// Without a goalie there is no formation, hence no kicker: -1 travels as 18 set bits. Who was not
// seen stands on the bench, number n at (-3n, -37) or, of the others, (3n, -37).
TEST_F(Messages, NameNobodyWithoutAFormation) {
  EXPECT_EQ(cycle(1,
                  "(see_global 1 ((b) 0 0 0 0) ((p \"Alpha\" 2) -10 20 0 0 0 0) "
                  "((p \"Beta\" 11) 30.5 -4 0 0 180 0))",
                  "kick_in_l"),
            Lines{"(say (freeform \""
                  "vokqqXQbaaaaWbbaaaGaGIFoAEGoACEiJ8GoAMEoAAHoAiEoA4HoAQDoAwIoAmDoA0IoAUCoAsJoA"
                  "qCoAWJoAYBoAoKoAuBoASKoA2AoAXKyFaaaaaaaaaaa---aaa\"))"});
}

TEST_F(Messages, AreRepeatedAfterFortyCyclesOfOneSetPlay) {
  EXPECT_EQ(spokenIn(1, 84, "free_kick_l"), (Times{1, 42, 83}));
  EXPECT_EQ(spokenIn(85, 86, "corner_kick_r"), Times{85}) << "a new set play waits for nothing";
  EXPECT_EQ(spokenIn(87, 88, "play_on"), Times());
  EXPECT_EQ(spokenIn(89, 90, "corner_kick_r"), Times{89});
  EXPECT_EQ(spokenIn(91, 92, "free_kick_fault_l"), Times()) << "not a kick yet";
  EXPECT_EQ(errors.take(), "");
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
  EXPECT_EQ(errors.take(), lost + lost);
  coach->numMsgsLeft = 5;
  coach->comm->async->serverTime = 11999;
  EXPECT_EQ(spokenIn(12000, 12000, "kick_in_r"), Times{12000});
  EXPECT_EQ(coach->numMsgsLeft, 5 + 1 - 1);
}

}  // namespace
}  // namespace vok::test
