// The queue of heard messages and its manager, which stamps what is said and filters what is heard.
#pragma once

#include <array>
#include <vector>

#include "audiomsg.h"

namespace vok {

/// A ring of messages, first in, first out; a full one overwrites the oldest.
class AudioMsgQueue {
 public:
  explicit AudioMsgQueue(unsigned queueSize);

  /// False, and nothing is stored, when the ring has no place at all.
  bool storeMessage(const AudioMsg& msg);
  /// Takes the oldest message; false when there is none.
  bool getNextMsg(AudioMsg& msg);

 private:
  std::vector<AudioMsg> queue;
  unsigned queueLen;
  unsigned readMsg = 0;
  unsigned writeMsg = 0;
  unsigned numMessages = 0;
};

class AudioMgr {
 public:
  /// `msgPrefix` is cut to three characters. A queue size of 0 is reported, and nothing is queued.
  AudioMgr(unsigned myPlayerNum, bool sideIsLeft, const char* msgPrefix, unsigned queueSize);

  void setStates(int number, bool sideIsLeft);

  /// Stamps a message with prefix, sender, rewound read position and checksum, ready to be sent.
  void SpeakTo(AudioMsg& msg);

  /// Queues a heard message. One whose sender the server named is taken unseen; another needs a
  /// valid checksum, our prefix and side, and us or everybody as destination.
  bool storeMsg(const AudioMsg& msg);
  bool getNextMsg(AudioMsg& msg) { return myQueue.getNextMsg(msg); }

  /// Despite its name true when the last accepted message is two or more cycles older than
  /// `stime`; with 0 the difference wraps, and it is true as well.
  bool heardMsgRecently(unsigned stime) const { return timeOfLastHeard < stime - 1; }

 private:
  unsigned myNumber;
  bool mySideIsLeft;
  AudioMsgQueue myQueue;
  std::array<char, 4> m_prefix{};
  unsigned timeOfLastHeard = 0;
};

}  // namespace vok
