#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

#include "audiomgr.h"
#include "audiomsg.h"
#include "constants.h"

using namespace vok;

namespace {

std::string digits(unsigned n) {
  return {msgEncodeChars[n % 64], msgEncodeChars[n / 64 % 64]};
}

/// The value of a payload whose header fits it.
template <typename Value>
Value read(const std::string& payload, Value into) {
  AudioMsg msg(("aaaaaaaaaaaa" + digits(unsigned(payload.size())) + payload).c_str());
  msg >> into;
  EXPECT_TRUE(msg.getState()) << payload;
  return into;
}

template <typename Value>
std::string written(const Value& value) {
  AudioMsg msg;
  msg << value;
  return msg.getEncoding() + AudioMsg::HEADER_LENGTH;
}

/// A message of player 4 on the left, as it is heard.
AudioMsg heard(unsigned destination, unsigned time, bool left = true, const char* prefix = "vok") {
  AudioMsg msg(destination, time, false);
  AudioMgr(4, left, prefix, 1).SpeakTo(msg);
  return AudioMsg(msg.getEncoding());
}

}  // namespace

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
  for (const Val5B& invalid : {Val5B(102.4, 0, 0, VISUAL), Val5B(0, NAN, 0, VISUAL),
                               Val5B(0, 0, 64, VISUAL), Val5B(0, 0, 0, WObjectState(3))})
    EXPECT_FALSE(read(written(invalid), Val5B(0, 0, 0, VISUAL)).isValid());
}

TEST(SayCode, RealsAreFlooredToTenthsAndRefusedBeyondTheirRange) {
  for (unsigned n = 0; n < 4096; ++n) {
    ASSERT_EQ(read(digits(n), 0.0), (n - 2048.0) / 10);
    ASSERT_EQ(written((n - 2047.5) / 10), digits(n));
  }
  for (const double d : {204.8, -204.81, double(NAN)}) {
    AudioMsg msg;
    msg << d << true;  // a failure does not stop later values
    EXPECT_FALSE(msg.getState()) << d;
    EXPECT_STREQ(msg.getEncoding(), "aaaaaaaaaaaabab");
  }
}

TEST(SayCode, SmallValuesTravelButAnglesAreReadByTheSumOfTheirDigits) {
  EXPECT_EQ(written(Angle(0)) + written(Angle(-PI / 2)) + written(Angle(1)), "aGaqlQ");
  for (int step = 0; step < 4096; ++step) {
    const std::string code = written(Angle((step + 0.9) * 2 * PI / 4096 - PI));
    EXPECT_EQ(decodeChar(code[0]) + 64 * decodeChar(code[1]), step);
  }
  EXPECT_NEAR(read("aG", Angle()), 0, 1e-12);
  EXPECT_NEAR(read("lQ", Angle()), (11 + 42 - 32) * PI / 32, 1e-12);
  EXPECT_EQ(written(Int3B(4097U)) + written(Int3B(262144U)), "babaaa") << "eighteen bits travel";
  EXPECT_EQ(written(true) + written(false), "ba");
  EXPECT_EQ(decodeChar('!') + decodeChar('\xe4'), 0) << "outside the alphabet";
  for (const char c : {'a', '\xc8'}) EXPECT_EQ(read(written(c), 'x'), c);
  const int types[] = {99, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 61};  // entry 0 does not travel
  EXPECT_EQ(written(&types[0]), "abcdefghij+");
  EXPECT_EQ(written(NodaChar(63)) + written(NodaChar(64)), "-a");
}

TEST(AudioMsg, HeaderFieldsStandAtTheirPlaces) {
  AudioMsg msg(0, 100, true);
  EXPECT_STREQ(msg.getEncoding(), "aaaaq1aKbaaaaa");
  msg.setPrefix("voker");
  msg.setSourceAndSideIsLeft(7, true);
  msg.setDestination(11);
  EXPECT_STREQ(msg.getEncoding(), "vokxB1aKbaaaaa");
}

TEST(AudioMsg, ChecksumShowsEveryChangeOfOneCharacter) {
  AudioMsg msg(3, 4321, true);
  msg << true << 12.3 << NodaChar(17);
  msg.createChkSums();
  const std::string good = msg.getEncoding();
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const char c : {'a', 'b', '-'}) {
      std::string changed = good;
      changed[at] = c;
      EXPECT_EQ(AudioMsg(changed.c_str()).isChkSumsValid(), changed == good) << changed;
    }
  }
}

TEST(AudioMsg, WritesFitBelowTheCapacityAndFailUnchangedBeyondIt) {
  const std::pair<int, unsigned> rooms[] = {{-5, 0}, {15, 0}, {16, 1}, {128, 113}, {9999, 497}};
  for (const auto& [size, room] : rooms) {
    SAY_COACH_MSG_SIZE = size;
    AudioMsg msg(0, 0, true);
    for (unsigned pos = 0; pos < room; ++pos) msg << true;
    const std::string full = msg.getEncoding();
    EXPECT_TRUE(msg.getState() && full.size() == 14 + room) << size;
    EXPECT_FALSE(msg.setWritePos(0xFFFFFFF5U) || msg.setReadPos(room + 1));
    msg << true;
    EXPECT_TRUE(!msg.getState() && full == msg.getEncoding()) << size;
  }
  SAY_MSG_SIZE = 100;
  EXPECT_EQ(AudioMsg(4, "Ours", AudioMsg(0, 0, true).getEncoding()).getWriteLeft(), 100U);
}

TEST(AudioMsg, RollingBackKeepsTheCharactersAndNeverGoesBehindWhatIsReadNorAhead) {
  AudioMsg msg;
  msg << true;
  msg.markWrite();
  msg << true << false;
  msg.rollbackWrite();
  EXPECT_STREQ(msg.getEncoding() + 14, "bba") << "until they are overwritten";
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
  msg.setWritePos(0);
  msg.rollbackWrite();  // the mark is beyond the end
  EXPECT_EQ(msg.getWritePos(), 0U);
}

TEST(AudioMsgQueue, KeepsTheNewestInOrder) {
  AudioMsgQueue queue(2);
  for (const unsigned t : {1U, 2U, 3U}) queue.storeMessage(AudioMsg(0, t, false));
  AudioMsg msg;
  for (const unsigned t : {2U, 3U}) EXPECT_TRUE(queue.getNextMsg(msg) && msg.getServerTime() == t);
  EXPECT_FALSE(queue.getNextMsg(msg) || AudioMsgQueue(0).storeMessage(msg));
}

TEST(AudioMgr, DropsWhatIsDamagedForeignOrForSomebodyElse) {
  AudioMgr mgr(5, true, "vok", 1);
  AudioMsg damaged = heard(0, 1);
  damaged.setServerTime(2);
  const std::pair<AudioMsg, bool> rows[] = {
      {damaged, false},
      {heard(0, 1, true, "fok"), false},
      {heard(0, 1, false), false},
      {heard(7, 1), false},
      {heard(5, 100), true},
      // A named sender is not asked for a sum, and does not count as heard.
      {AudioMsg(3, "Ours", "damaged"), true}};
  AudioMsg msg;
  for (const auto& [received, taken] : rows) {
    EXPECT_EQ(mgr.storeMsg(received), taken) << received.getEncoding();
    EXPECT_EQ(mgr.getNextMsg(msg), taken);
  }
  EXPECT_STREQ(msg.teamName.data(), "Ours");
  EXPECT_STREQ(msg.getEncoding(), "damaged");
  EXPECT_FALSE(mgr.heardMsgRecently(101)) << "the name says the opposite";
  EXPECT_TRUE(mgr.heardMsgRecently(102));
}

TEST(AudioMgr, CutsALongPrefixAndReportsWhatIsOutOfRange) {
  testing::internal::CaptureStderr();
  const AudioMgr cut(5, true, "abcdefgh", 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_TRUE(cut.heardMsgRecently(2)) << "the rest of the prefix is written nowhere";
  testing::internal::CaptureStderr();
  const AudioMgr full(5, true, "vok", 0);
  EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with(
      "Warning: ensure queueSize > 0 not valid in audiomgr:"));
  testing::internal::CaptureStderr();
  AudioMsg().setSourceAndSideIsLeft(12, true);
  EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with(
      "Warning: ensure playerno <= 11 not valid in audiomsg:"));
}
