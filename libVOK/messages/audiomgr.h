// Marks outgoing say messages with their sender, and filters and queues the heard ones.
#pragma once

#include <array>
#include <vector>

#include "audiomsg.h"

namespace vok {

/// Messages in the order of their arrival. A full queue overwrites the oldest.
class AudioMsgQueue {
 public:
  explicit AudioMsgQueue(unsigned queueSize);

  /// False, and nothing is stored, when the queue has size 0.
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

  /// Number and side as they are known after the check-in; 0 is a coach.
  void setStates(int number, bool sideIsLeft);

  /// Makes a message ready to be sent: prefix, sender, rewound read position, and checksum.
  void SpeakTo(AudioMsg& msg);

  /// Queues a heard message and returns true, or drops it. A message whose sender the server named
  /// is queued without any check. Any other must have a valid checksum, our team's prefix and side,
  /// and be addressed to us or to everybody.
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
