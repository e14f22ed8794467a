// What is heard and said.
//
// A player hears its coach, and in a cycle one team-mate: the one whom it pays attention to when he
// speaks. What is worth saying and who is worth listening to is the tactical module's choice.
#include <VOK/coachmessage.h>

#include <array>

#include "player.h"

using namespace vok;

namespace {

constexpr long KEEP_LISTENING = 5;  ///< cycles; every change is one more datagram

/// Takes an opponent for one of the type that the coach has found out.
void useType(Worldmodel& world, int opponent, int type) {
  if (type < 0 || type >= static_cast<int>(world.playerType.size())) return;
  const WPlayerType& physics = world.playerType[static_cast<std::size_t>(type)];
  if (physics.state != -1) world.otherTeam[opponent].setType(physics);
}

}  // namespace

void listen(Player& player) {
  AudioMsg message;
  while (player.comm.getNextMsg(message)) {
    // Read before the world does: its reading moves the position that the checksum covers.
    const auto news = CoachMessage::read(message);
    if (!player.world.feedbackAudio(message) || !news) continue;
    player.memory.kicker = news->kicker;
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) useType(player.world, n, news->otherTypes[n]);
  }
}

void talk(Player& player) {
  const MessageType type = player.tactics.determineMessageType();
  if (type != MSGTYPE_NONE) {
    std::array<char, PlayerMessage::LENGTH + 1> text{};
    player.tactics.encodeAudio(type, text.data());
    player.comm.sendSay(text.data());
  }
  const int speaker = player.tactics.attentionTo;
  Memory& memory = player.memory;
  if (speaker == -1 || speaker == memory.listenedTo) return;
  if (player.world.time < memory.listenedSince + KEEP_LISTENING) return;
  player.comm.sendAttentionTo(speaker, true);
  memory.listenedTo = speaker;
  memory.listenedSince = player.world.time;
}
