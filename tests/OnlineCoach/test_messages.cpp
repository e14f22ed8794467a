// What the coach says to its players and when: short scripted matches in synchronous mode.
#include <gtest/gtest.h>

#include <sstream>

#include "constants.h"
#include "support/coach.h"

namespace vok::test {
namespace {

using Times = std::vector<long>;

// Where the ball is in the server's frame: beside Alpha's 8, and beside its 5.
constexpr const char* BALL_AT8 = "-33.34 5.81";
constexpr const char* BALL_AT5 = "-20.06 -3.02";

// All 22 players: Alpha's n at (-4n, 3n - 18) with goalie 7, Beta's n at (4n - 0.5, 18 - 3n) with
// goalie 1. Beta's 9 may have `run`: half a metre in a cycle, with 1.5 m a cycle to come.
std::string field(long time, const char* ball = BALL_AT8, bool run = false) {
  std::ostringstream text;
  text << "(see_global " << time << " ((g r) 52.5 0) ((g l) -52.5 0) ((b) " << ball << " 0 0)";
  for (int n = 1; n <= 11; ++n) {
    const bool runs = run && n == 9;
    text << " ((p \"Alpha\" " << n << (n == 7 ? " goalie) " : ") ") << -4 * n << ' ' << 3 * n - 18
         << " 0 0 0 0) ((p \"Beta\" " << n << (n == 1 ? " goalie) " : ") ")
         << 4 * n - (runs ? 0 : 0.5) << ' ' << 18 - 3 * n << (runs ? " 1.5" : " 0") << " 0 180 0)";
  }
  return text.str() + ")";
}

class Messages : public CoachTest {
 protected:
  void start(char side = 'l') {
    checkIn(side);
    EXPECT_EQ(server.receive(), "(eye on)");
  }

  // Type 3 is the only one that runs half a metre in a cycle, and the only one with extra stamina.
  void announceTypes() {
    for (int id = 0; id < 7; ++id) {
      type(id) = WPlayerType::fromDefaults();
      type(id).state = id;
      type(id).playerSpeedMax = id == 3 ? 0.9 : 0.3;
      type(id).extraStamina = id == 3 ? 50 : 0;
    }
  }

  // One cycle in which the referee may call something; what the coach sent in it before "(done)".
  Lines cycle(const std::string& see, const std::string& call = "") {
    const std::string time = std::to_string(std::stol(see.substr(12)));
    if (!call.empty()) hear("(hear " + time + " referee " + call + ")");
    hear(see);
    hear("(think)");
    Lines sent;
    for (std::string text; (text = server.receive()) != "(done)";) {
      if (text.empty()) return {"no answer"};
      sent.push_back(text);
    }
    return sent;
  }

  // Runs the cycles from `first` to `last` in the situation called in the first one and returns the
  // cycles in which a whole message was sent.
  Times spokenIn(long first, long last, const std::string& call = "") {
    Times spoken;
    for (long time = first; time <= last; ++time) {
      for (const std::string& text : cycle(field(time), time == first ? call : "")) {
        EXPECT_TRUE(text.starts_with("(say (freeform \"vok")) << text;
        EXPECT_EQ(text.size(), 145);
        spoken.push_back(time);
      }
    }
    return spoken;
  }
};

std::string say(const std::string& message) {
  return "(say (freeform \"" + message + "\"))";
}

// The first of these, by characters:
//   vok            prefix
//   q q            number 0 on the left side (16); to all (0), by a coach (16)
//   SU             sum of the codes of all other characters: 2988 = 44 + 46 * 64
//   baa aa Wb      cycle 1; read position 0; 112 characters follow (48 + 1 * 64)
//   b i c          a world follows; goalies 7 and 1, each + 1
//   YA 6G          ball: -33.34 is floor(1714.6) = 50 + 26 * 64, 5.81 is floor(2106.1)
//   yF QD JG wI    our 1 at (-4, -15): 2008 = 24 + 31 * 64, 1898; their 1 at (3.5, 15): 2083, 2198
//   ...            and so on to our and their 11
//   aaaaaaaaaaa    no type of the opponents is known
//   iaa aaa        8 is to kick; no opponent is named
// On the right all positions have changed sign, and -floor(x) is not floor(-x).
//
// The second one comes after three cycles of play. Beta's 9 has run to (36, -9) and shown its type,
// 3 + 1 = e. The formation is counted past the goalie 7, so 5 is the first of the midfielders. The
// foremost opponents are 11 and 10 on the one side (10 + 12 * 11 = 14 + 2 * 64: oca), 2 and 3
// behind their goalie on the other (3 + 12 * 2 = 27: Baa).
constexpr struct {
  char side;
  const char *kickOff, *freeKick;
} EXPECTED_MESSAGES[] = {
    {'l',
     "vokqqSUbaaaaWbbicYA6GyFQDJGwIWEiElH4HiEMEZHAHGDeFBI8G4CIFdJEGqCaGRJaGOBEG"
     "tKIFaB8G7KeFyAAHJLMEW"
     "z4HlMiEizwIZMQDaaaaaaaaaaaiaaaaa",
     "vokqq0UgaaaaWbbic3CHFyFQDJGwIWEiElH4HiEMEZHAHGDeFBI8G4CIFdJEGqCaGRJaGOBEG"
     "tKIFaB8G7KeFyAAHOLMEW"
     "z4HlMiEizwIZMQDaaaaaaaaeaafaaoca"},
    {'r',
     "vokaq7TbaaaaWbbicnLfFOGwIDFQDqH4H1EiE4HAHnEMEGI8GLDeFiJEG9CIFWJaGvCaGyKIF"
     "TBEGaLeFfB8GOLMEDAAHq"
     "MiE1z4H4MQDnzwIaaaaaaaaaaaiaaaaa",
     "vokaqQUgaaaaWbbiciJEGOGwIDFQDqH4H1EiE4HAHnEMEGI8GLDeFiJEG9CIFWJaGvCaGyKIF"
     "TBEGaLeFfB8GOLMEyAAHq"
     "MiE1z4H4MQDnzwIaaaaaaaaeaafaaBaa"}};

TEST_F(Messages, HaveEveryCharacterInPlace) {
  for (const auto& [side, kickOff, freeKick] : EXPECTED_MESSAGES) {
    start(side);
    EXPECT_EQ(cycle(field(0)), Lines()) << "not a situation yet";
    announceTypes();
    hear("(hear 0 referee kick_off_l)");
    EXPECT_EQ(cycle(field(1)), (Lines{say(kickOff), "(change_player_type 10 3)",
                                      "(change_player_type 11 3)", "(change_player_type 2 3)"}))
        << "the message goes before the types";
    EXPECT_EQ(spokenIn(2, 2), Times());
    EXPECT_EQ(spokenIn(3, 4, "play_on"), Times());
    EXPECT_EQ(cycle(field(5, BALL_AT5, true)), Lines());
    EXPECT_EQ(cycle(field(6, BALL_AT5, true), "free_kick_r"), Lines{say(freeKick)});
    EXPECT_EQ(errors.take(), "");
    coach.reset();
    EXPECT_EQ(server.receive(), "(bye)");
  }
}

// Without a goalie there is no formation, hence no kicker: -1 travels as 18 set bits. Who was not
// seen stands on the bench, number n at (-3n, -37) or, of the others, (3n, -37).
TEST_F(Messages, NameNobodyWithoutAFormation) {
  start();
  EXPECT_EQ(
      cycle("(see_global 1 ((b) 0 0 0 0) ((p \"Alpha\" 2) -10 20 0 0 0 0) "
            "((p \"Beta\" 11) 30.5 -4 0 0 180 0))",
            "kick_in_l"),
      Lines{say("vokqqXQbaaaaWbbaaaGaGIFoAEGoACEiJ8GoAMEoAAHoAiEoA4HoAQDoAwIoAmDoA0IoAUCoAsJoA"
                "qCoAWJoAYBoAoKoAuBoASKoA2AoAXKyFaaaaaaaaaaa---aaa")});
}

TEST_F(Messages, AreRepeatedAfterFortyCyclesOfOneSituation) {
  start();
  EXPECT_EQ(spokenIn(1, 84, "free_kick_l"), (Times{1, 42, 83}));
  EXPECT_EQ(spokenIn(85, 86, "corner_kick_r"), Times{85}) << "a new situation waits for nothing";
  EXPECT_EQ(spokenIn(87, 88, "play_on"), Times());
  EXPECT_EQ(spokenIn(89, 90, "corner_kick_r"), Times{89});
  EXPECT_EQ(spokenIn(91, 92, "free_kick_fault_l"), Times()) << "not a kick yet";
  EXPECT_EQ(errors.take(), "");
}

// In 126 places 109 of 112 characters can be written; the message is not stamped, its sum was made
// empty.
TEST_F(Messages, ThatDoNotFitIn127CharactersAreReportedInEveryCycle) {
  start();
  SAY_COACH_MSG_SIZE = 126;
  EXPECT_EQ(spokenIn(1, 2, "free_kick_l"), Times());
  const std::string head = "Coach : Fatal error: buffer overflow:(AudioMsg-invalid  (0r -> 0)(t= ";
  const std::string tail = ")(coachmsg)(Size= 123 unread= 109 FAIL ))\n";
  EXPECT_EQ(errors.take(), head + "1" + tail + head + "2" + tail);
  EXPECT_EQ(coach->numMsgsLeft, 128);
  SAY_COACH_MSG_SIZE = 127;
  EXPECT_EQ(spokenIn(3, 4, "free_kick_l"), Times{3});
  EXPECT_EQ(errors.take(), "");
}

TEST_F(Messages, EndWithTheBudgetUntilItIsRefilled) {
  const std::string lost = "Coach: Cannot scream: Lost voice earlier!\n";
  start();
  coach->numMsgsLeft = SAY_COACH_CNT_MAX = 1;
  EXPECT_EQ(spokenIn(1, 2, "free_kick_l"), Times{1});
  EXPECT_EQ(spokenIn(3, 4, "kick_in_r"), Times());
  EXPECT_EQ(errors.take(), lost) << "the repetition counts from the last message";
  EXPECT_EQ(spokenIn(5, 5, "play_on"), Times());
  EXPECT_EQ(spokenIn(6, 7, "kick_in_l"), Times());
  EXPECT_EQ(errors.take(), lost + lost) << "play has made the last message forgotten";
  coach->comm->async->serverTime = 5998;  // a match later, two halves of 3000 cycles
  EXPECT_EQ(spokenIn(5999, 5999, "free_kick_l"), Times());
  EXPECT_EQ(errors.take(), lost);
  EXPECT_EQ(spokenIn(6000, 6001, "kick_in_r"), Times{6000});
  EXPECT_EQ(spokenIn(6002, 6002, "kick_in_l"), Times());
  EXPECT_EQ(errors.take(), lost);
  coach->numMsgsLeft = 5;
  coach->comm->async->serverTime = 11999;
  EXPECT_EQ(spokenIn(12000, 12000, "kick_in_r"), Times{12000});
  EXPECT_EQ(coach->numMsgsLeft, 5 + 1 - 1);
}

}  // namespace
}  // namespace vok::test
