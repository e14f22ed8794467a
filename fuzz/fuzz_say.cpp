// A say message from outside: any text, read in any order, by the manager and by the world.
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <numbers>
#include <sstream>

#include "Config.h"
#include "audiomgr.h"
#include "constants.h"
#include "harness.h"

namespace {

using namespace vok;
using fuzz::require;

void checkLength(const AudioMsg& msg) {
  require(std::strlen(msg.getEncoding()) < 512, "a message stays within its buffer");
}

template <typename T>
bool same(const T& a, const T& b) {
  return a == b;
}

bool same(const Val5B& a, const Val5B& b) {
  return a.getX() == b.getX() && a.getY() == b.getY() && a.getState() == b.getState() &&
         (a.getAge() == b.getAge() || (!a.isValid() && !b.isValid()));
}

/// Reads a value, says it and hears it again: then it is the same.
template <typename T>
T readAndRepeat(AudioMsg& msg, T value) {
  msg >> value;
  AudioMsg said(0, 0, false);
  said << value;
  if (!said.getState()) return value;  // of characters behind the first 64: out of range
  AudioMsg heard(said.getEncoding());
  T again = value;
  heard >> again;
  require(heard.getState() && same(value, again), "what was said is heard");
  return value;
}

void readNumber(AudioMsg& msg) {
  const unsigned number = readAndRepeat(msg, Int3B(0U)).getValue();
  const Int3B again(Int3B(number).getEncoding());
  require(again.getValue() == (number & 0x3FFFF), "18 bits of a number travel");
}

void readPlace(AudioMsg& msg) {
  const Val5B place = readAndRepeat(msg, Val5B(0, 0, 0, UNSAFE));
  const Val5B coded(place.getX(), place.getY(), place.getAge(), place.getState());
  require(same(place, Val5B(coded.getEncoding())), "a decoded place is coded the same");
}

/// Not repeated: the players' decoding adds the digits.
void readAngle(AudioMsg& msg) {
  Angle angle;
  msg >> angle;
  require(std::abs(angle) <= std::numbers::pi, "an angle is normalised");
}

void goBack(AudioMsg& msg) {
  msg.rollbackRead();
  msg.markRead();
  msg.clearState();
}

/// What a character of the text does to the message.
constexpr void (*STEPS[])(AudioMsg&) = {
    readNumber,
    readPlace,
    readAngle,
    goBack,
    [](AudioMsg& msg) { readAndRepeat(msg, false); },
    [](AudioMsg& msg) { readAndRepeat(msg, 'x'); },
    [](AudioMsg& msg) { readAndRepeat(msg, 0.0); },
    [](AudioMsg& msg) { readAndRepeat(msg, NodaChar(0)); },
};

Worldmodel newWorld(int myNumber) {
  Worldmodel world(nullptr);
  world.my.number = myNumber;
  world.my.pos = {-10, 3};
  return world;
}

/// A player's message: what the world has taken from it is said and heard the same.
void hearPlayer(const std::array<char, 11>& text, int sender, double direction) {
  Worldmodel world = newWorld(5);
  world.decodeAudio(text.data(), sender, direction);
  for (const WPlayer& player : world.ourTeam)
    require(player.age == NEVER || player.age == 0, "a heard player is fresh");
  require(world.ball.age >= 0 && world.ball.age <= NEVER, "a heard ball has an age");

  // The direction of 180 degrees has two codes; the second round has only one of them.
  std::array<std::array<char, 11>, 2> said = {text, text};
  for (auto& message : said) {
    Worldmodel listener = newWorld(7);
    world.encodeAudio(MSGTYPE_BALL, message.data(), {});
    listener.decodeAudio(message.data(), 5, NO_ANGLE);
    world.ball = listener.ball;
  }
  require(said[0] == said[1] || world.ball.age == NEVER, "a heard ball is said the same");
}

void hearCoach(const AudioMsg& heard) {
  for (const int number : {0, 5}) {
    Worldmodel world = newWorld(number);
    AudioMsg msg = heard;
    const bool taken = world.feedbackAudio(msg);
    require(!taken || world.otherTeam[11].age == 0, "a message that is taken is taken whole");
    for (const WPlayer& player : world.otherTeam)
      require(player.type >= -1 && player.type < numPlayerTypes(), "types are in range");
    checkLength(msg);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool PREPARED = [] {
    fuzz::silence();
    setEntry("world_maxPlayersOurTeam", "11");
    setEntry("world_maxPlayersOtherTeam", "11");
    playerParams.player_types = 7;
    return true;
  }();
  if (!PREPARED || size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const int sender = decodeChar(text[0]) - 1;

  AudioMgr manager(5, true, AudioMsg::DEFAULT_MSG_PREFIX, 3);
  for (AudioMsg msg : {AudioMsg(text.c_str()), AudioMsg(sender, text.c_str(), text.c_str())}) {
    manager.storeMsg(msg);
    AudioMsg stamped = msg;
    manager.SpeakTo(stamped);
    require(stamped.isChkSumsValid(), "a stamped message is valid");
    manager.storeMsg(stamped);
    hearCoach(msg);

    std::ostringstream printed;
    printed << msg;
    for (const char c : text)
      STEPS[static_cast<std::size_t>(decodeChar(c)) % std::size(STEPS)](msg);
    checkLength(msg);
    msg.clearState();
    while (msg.getState()) msg << Int3B(1U);
    msg.rollbackWrite();
    checkLength(msg);
    printed << msg;
  }
  AudioMsg next;
  while (manager.getNextMsg(next)) hearCoach(next);

  std::array<char, 11> ten{};
  text.copy(ten.data(), 10);
  hearPlayer(ten, sender, (static_cast<int>(size) - 10) * 0.3);
  return 0;
}
