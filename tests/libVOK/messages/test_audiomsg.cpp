#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "audiomgr.h"
#include "audiomsg.h"
#include "constants.h"

using namespace vok;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

std::string digits(unsigned n) {
  return {msgEncodeChars[n % 64], msgEncodeChars[n / 64 % 64]};
}

/// A received text with this payload and a header that fits it.
std::string received(const std::string& payload) {
  return "aaaaaaaaaaaa" + digits(static_cast<unsigned>(payload.size())) + payload;
}

template <typename Value>
Value read(const std::string& payload, Value into) {
  AudioMsg msg(received(payload).c_str());
  msg >> into;
  EXPECT_TRUE(msg.getState()) << payload;
  return into;
}

template <typename Value>
std::string written(const Value& value) {
  AudioMsg msg;
  msg << value;
  EXPECT_TRUE(msg.getState());
  return msg.getEncoding() + AudioMsg::HEADER_LENGTH;
}

/// A message of player 4 on the left, as it is heard.
AudioMsg heard(unsigned destination, unsigned time, bool left = true, const char* prefix = "vok") {
  AudioMsg msg(destination, time, false);
  msg << true;
  AudioMgr(4, left, prefix, 1).SpeakTo(msg);
  return AudioMsg(msg.getEncoding());
}

}  // namespace

TEST(SayCode, CharactersHaveTheirIndexAndForeignBytesAreZero) {
  std::string values;
  for (const char c : std::string("azAZ09+-. !\xe4")) values += std::to_string(decodeChar(c)) + " ";
  EXPECT_EQ(values, "0 25 26 51 52 61 62 63 64 73 0 0 ");
}

TEST(SayCode, PositionsTravelOnTheirGridWithAgeAndState) {
  EXPECT_EQ(written(Val5B(0, 0, 0, VISUAL)), "aqaWa");
  EXPECT_EQ(written(Val5B(-102.4, 102.3, 62, FUZZY)), "aG-F+");
  for (unsigned n = 0; n < 2048; ++n) {
    const double x = (n - 1024.0) / 10;
    const auto state = static_cast<WObjectState>(n % 3);
    const Val5B got = read(written(Val5B({x + 0.05, -x - 0.05}, n % 63, state)), Val5B());
    ASSERT_EQ(Vector2d(got), Vector2d(x, (1023.0 - n) / 10)) << n;
    ASSERT_EQ(std::tuple(got.getAge(), got.getState()), std::tuple(n % 63, state));
  }
  EXPECT_EQ(read("aWaWa", Val5B()).getState(), FUZZY);
  for (const Val5B& invalid :
       {Val5B(102.4, 0, 0, VISUAL), Val5B(0, -102.5, 0, VISUAL), Val5B(NOT_A_NUMBER, 0, 0, VISUAL),
        Val5B(3e9, -1e300, 0, VISUAL), Val5B(0, 0, 64, VISUAL), Val5B(0, 0, 0, WObjectState(3))})
    EXPECT_FALSE(read(written(invalid), Val5B(0, 0, 0, VISUAL)).isValid());
}

TEST(SayCode, RealsAreFlooredToTenthsAndRefusedBeyondTheirRange) {
  for (unsigned n = 0; n < 4096; ++n) {
    ASSERT_EQ(read(digits(n), 0.0), (n - 2048.0) / 10);
    ASSERT_EQ(written((n - 2047.5) / 10), digits(n));
  }
  for (const double d : {204.8, -204.81, 1e300, -HUGE_VAL, NOT_A_NUMBER}) {
    AudioMsg msg;
    msg << d << true;  // a failure does not stop later values
    EXPECT_FALSE(msg.getState()) << d;
    EXPECT_STREQ(msg.getEncoding(), "aaaaaaaaaaaabab");
  }
}

TEST(SayCode, AnglesAreReadByTheSumOfTheirDigits) {
  EXPECT_EQ(written(Angle(0)) + written(Angle(-PI / 2)) + written(Angle(1)), "aGaqlQ");
  for (unsigned low = 0; low < 64; ++low)
    for (unsigned high = 0; high < 64; ++high) {
      const double turn = std::remainder((low + high) * PI / 32 - PI, 2 * PI);
      const double got = read(digits(low + 64 * high), Angle());
      ASSERT_NEAR(std::remainder(got - turn, 2 * PI), 0, 1e-12) << low << " " << high;
    }
}

TEST(SayCode, SmallValuesTravel) {
  EXPECT_EQ(read("bab", Int3B()).getValue(), 4097U);
  EXPECT_EQ(written(Int3B(4097U)) + written(Int3B(262144U)), "babaaa") << "eighteen bits travel";
  EXPECT_EQ(written(true) + written(false), "ba");
  EXPECT_TRUE(read("c", false));
  EXPECT_EQ(written('\xc8'), "id");
  for (int c = 0; c < 256; ++c)
    ASSERT_EQ(read(written(static_cast<char>(c)), 'x'), static_cast<char>(c));
  EXPECT_EQ(written(NodaChar(63)) + written(NodaChar(64)), "-a");
  std::array types{9, -1, 0, 17, 62, 63, -1, 1, 2, 3, 4, 2147483647};
  EXPECT_EQ(written(types.data()), "abs-aacdefa");
}

TEST(AudioMsg, HeaderFieldsStandAtTheirPlaces) {
  EXPECT_STREQ(AudioMsg().getEncoding(), "aaaaaaaaaaaaaa");
  AudioMsg msg(0, 100, true);
  EXPECT_STREQ(msg.getEncoding(), "aaaaq1aKbaaaaa");
  msg.setPrefix("voker");
  msg.setSourceAndSideIsLeft(7, true);
  msg.setDestination(11);
  EXPECT_STREQ(msg.getEncoding(), "vokxB1aKbaaaaa");
  std::ostringstream out;
  out << msg;
  EXPECT_EQ(out.str(), "(AudioMsg-invalid  (7l -> 11)(t= 100)(coachmsg)(Size= 14 unread= 0 OK ))");
  EXPECT_FALSE(msg.verifyPrefix("voK"));
  EXPECT_FALSE(AudioMsg().isCoachMsg());
}

TEST(AudioMsg, ChecksumShowsEveryChangeOfOneCharacter) {
  AudioMsg msg(3, 4321, true);
  msg << true << 12.3 << NodaChar(17);
  msg.createChkSums();
  const std::string good = msg.getEncoding();
  for (std::size_t at = 0; at < good.size(); ++at) {
    std::string bad = good;
    for (const char c : msgEncodeChars.substr(0, CODE_CHARS)) {
      bad[at] = c;
      ASSERT_EQ(AudioMsg(bad.c_str()).isChkSumsValid(), bad == good) << bad;
    }
  }
}

TEST(AudioMsg, WritesFitBelowTheCapacityAndFailUnchangedBeyondIt) {
  const std::pair<int, unsigned> rooms[] = {{-5, 0}, {15, 0}, {16, 1}, {128, 113}, {9999, 497}};
  for (const auto& [size, room] : rooms) {
    SAY_COACH_MSG_SIZE = size;
    AudioMsg msg(0, 0, true);
    for (unsigned pos = 0; pos <= room; ++pos) {
      AudioMsg longer = msg;
      longer << Val5B(1, 1, 0, VISUAL);
      ASSERT_EQ(longer.getState(), pos + 5 <= room) << size << " " << pos;
      ASSERT_TRUE(longer.getState() || !std::strcmp(longer.getEncoding(), msg.getEncoding()));
      msg << true;
      ASSERT_EQ(msg.getState(), pos < room) << size;
    }
    EXPECT_EQ(std::strlen(msg.getEncoding()), 14 + room);
    EXPECT_FALSE(msg.setWritePos(0xFFFFFFF5U) || msg.setReadPos(room + 1));
  }
  const AudioMsg coach(0, 0, true);
  EXPECT_EQ(AudioMsg(coach.getEncoding()).getWriteLeft(), 512U) << "9999, cut";
  SAY_MSG_SIZE = 100;
  EXPECT_EQ(AudioMsg(4, "Ours", coach.getEncoding()).getWriteLeft(), 100U);
}

TEST(AudioMsg, RollingBackKeepsTheCharactersAndNeverGoesBehindWhatIsReadNorAhead) {
  AudioMsg msg;
  msg << true;
  msg.markWrite();
  msg << Int3B(1U);
  msg.rollbackWrite();
  EXPECT_STREQ(msg.getEncoding() + 14, "bbaa") << "until they are overwritten";
  msg << false;
  EXPECT_STREQ(msg.getEncoding() + 14, "ba");
  msg.setReadPos(2);
  msg.markRead();
  msg.rollbackWrite();
  EXPECT_FALSE(msg.getState());
  msg.clearState();
  msg.setReadPos(0);
  msg.rollbackRead();
  EXPECT_FALSE(msg.getState());
  msg.markWrite();
  msg.setWritePos(1);
  msg.rollbackWrite();  // the mark is beyond the end: everything goes
  EXPECT_EQ(msg.getWritePos(), 0U);
}

TEST(AudioMsgQueue, KeepsTheNewestInOrderThroughAllTurnsOfTheRing) {
  AudioMsg msg;
  for (unsigned size = 0; size <= 3; ++size) {
    AudioMsgQueue queue(size);
    for (unsigned round = 1; round <= 4; ++round) {
      for (unsigned t = 1; t <= round; ++t) queue.storeMessage(AudioMsg(0, t, false));
      for (unsigned t = round - std::min(round, size) + 1; t <= round; ++t) {
        ASSERT_TRUE(queue.getNextMsg(msg));
        ASSERT_EQ(msg.getServerTime(), t) << size;
      }
      ASSERT_FALSE(queue.getNextMsg(msg));
    }
  }
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
