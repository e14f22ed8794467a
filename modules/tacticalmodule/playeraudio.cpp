// What players tell each other of the team's action, in the three characters of a message that the
// world leaves free: state, performer and receiver of the action, and for a pass its grade and the
// place in the lattice around the receiver. Three times the first character of the alphabet tells
// nothing, so a message of somebody who does not know of this is understood rightly.
#include <algorithm>

#include "mixednumber.h"
#include "playermessage.h"
#include "tacticalmodule.h"

namespace vok {

namespace {

constexpr int STATES = TA_UNKNOWN + 1;
constexpr int PLAYERS = LAST_SHIRT + 1;  ///< 0 for none
constexpr int GRADES = IMPOSSIBLE + 1;
constexpr int INDICES = 7;  ///< of the lattice, both directions, around the middle
static_assert(STATES * PLAYERS * PLAYERS * GRADES * INDICES * INDICES <= MixedNumber::CAPACITY);

/// A ball that changes its way is news, but not in every cycle.
constexpr int BALL_PERIOD = 2;

int toDigit(int index) {
  return std::clamp(index + INDICES / 2, 0, INDICES - 1);
}

int playerDigit(int number) {
  return isShirtNumber(number) ? number : 0;
}

struct ActionWord {
  TacticalActionState state = TA_UNKNOWN;
  int performer = -1;
  int receiver = -1;
  PlayerPassInfo pass;

  void write(char* at) const {
    MixedNumber number;
    number.put((state + 1) % STATES, STATES);
    number.put(playerDigit(performer), PLAYERS);
    number.put(playerDigit(receiver), PLAYERS);
    number.put(std::clamp<int>(pass.grade.value, 0, GRADES - 1), GRADES);
    number.put(toDigit(pass.xIndex), INDICES);
    number.put(toDigit(pass.yIndex), INDICES);
    number.write(at);
  }

  /// False for what nobody writes.
  bool read(const char* at) {
    MixedNumber number(at);
    state = static_cast<TacticalActionState>((number.take(STATES) + STATES - 1) % STATES);
    performer = number.take(PLAYERS);
    receiver = number.take(PLAYERS);
    pass.grade.set(static_cast<GradeConstant>(number.take(GRADES)));
    pass.xIndex = number.take(INDICES) - INDICES / 2;
    pass.yIndex = number.rest() - INDICES / 2;
    if (performer == 0) performer = -1;
    if (receiver == 0) receiver = -1;
    return pass.yIndex <= INDICES / 2;
  }
};

}  // namespace

bool TacticalModule::feedbackAudio() {
  const long kept = static_cast<long>(world->heard.size());
  bool told = false;
  for (long i = std::max(heardUpTo, world->heardCount - kept); i < world->heardCount; ++i) {
    const HeardMessage& message = world->heard[static_cast<std::size_t>(i % kept)];
    told |= decodeAudio(message.text.data(), message.sender);
  }
  heardUpTo = world->heardCount;
  return told;
}

MessageType TacticalModule::determineMessageType() const {
  if (world->my.cyclesSinceTackle == 0) return MSGTYPE_TACKLE;
  if (communicateSimAction) return MSGTYPE_SIM_ACTION;
  if (communicateAction) return MSGTYPE_ACTION;
  if (isNextToBall() && world->ball.age == 0 && world->ball.state == VISUAL) {
    return cyclesSinceLastMessage >= BALL_PERIOD ? MSGTYPE_BALL : MSGTYPE_NONE;
  }
  const bool myTurn = world->time % (2 * LAST_SHIRT) == 2 * (world->my.number - 1);
  return myTurn ? MSGTYPE_POSITION : MSGTYPE_NONE;
}

bool TacticalModule::isNextToBall() const {
  return world->ourTeamClosestTo(world->ball.pos, NEVER - 1, 1) == world->my.number;
}

void TacticalModule::encodeAudio(MessageType type, char* text) {
  text[0] = '\0';
  if (type == MSGTYPE_NONE) return;
  const TacticalAction& action = communicateAction ? reportedTAction : ourAction;
  const PlayerPassInfo unrated;
  const bool passing = action.state == TA_PASS && isShirtNumber(action.receiver);
  const ActionWord word{action.state, action.performer, action.receiver,
                        passing ? playerPassInfo[action.receiver] : unrated};
  std::fill_n(text, PlayerMessage::LENGTH, msgEncodeChars.front());
  text[PlayerMessage::LENGTH] = '\0';
  word.write(text + PlayerMessage::CALLERS);
  world->encodeAudio(type, text, simulatedBall);
  cyclesSinceLastMessage = 0;
  communicateAction = false;
  communicateSimAction = false;
}

bool TacticalModule::decodeAudio(const char* text, int sender) {
  ActionWord word;
  if (!isShirtNumber(sender) || sender == world->my.number) return false;
  const std::optional<PlayerMessage> told = PlayerMessage::read(text);
  if (!told || !word.read(text + PlayerMessage::CALLERS)) return false;
  if (word.state == TA_UNKNOWN) return false;

  const TacticalActionQuality quality = word.performer == sender ? TQ_AUDIAL_REPORTED : TQ_AUDIAL;
  if (quality > audioTAction.quality) return false;
  // The message was said in the cycle before.
  audioTAction = {word.state, quality, 1, word.performer, word.receiver};
  if (word.state == TA_PASS && isShirtNumber(word.receiver)) {
    playerPassInfo[word.receiver] = word.pass;
    playerPassInfo[word.receiver].age = 1;
  }
  if (told->type == MSGTYPE_SIM_ACTION) {
    simulatedBall = WBall(told->pos, told->velocity);
    simulatedBall.state = FUZZY;
    simulatedBall.age = 1;
  }
  return true;
}

}  // namespace vok
