#include "audiomgr.h"

#include <algorithm>
#include <cstring>

#include "ensure.h"

namespace vok {

AudioMsgQueue::AudioMsgQueue(unsigned queueSize) : queue(queueSize), queueLen(queueSize) {}

bool AudioMsgQueue::storeMessage(const AudioMsg& msg) {
  if (queueLen == 0) return false;
  const bool full = numMessages > 0 && writeMsg == readMsg;
  if (full) readMsg = (readMsg + 1) % queueLen;
  queue[writeMsg] = msg;
  writeMsg = (writeMsg + 1) % queueLen;
  if (!full) ++numMessages;
  return true;
}

bool AudioMsgQueue::getNextMsg(AudioMsg& msg) {
  if (numMessages == 0) return false;
  msg = queue[readMsg];
  readMsg = (readMsg + 1) % queueLen;
  --numMessages;
  return true;
}

AudioMgr::AudioMgr(unsigned myPlayerNum, bool sideIsLeft, const char* msgPrefix, unsigned queueSize)
    : myNumber(myPlayerNum), mySideIsLeft(sideIsLeft), myQueue(queueSize) {
  ensure(queueSize > 0, "audiomgr");
  std::copy_n(msgPrefix, strnlen(msgPrefix, m_prefix.size() - 1), m_prefix.begin());
}

void AudioMgr::setStates(int number, bool sideIsLeft) {
  myNumber = static_cast<unsigned>(number);
  mySideIsLeft = sideIsLeft;
}

/// The checksum is made last because it covers all the other fields.
void AudioMgr::SpeakTo(AudioMsg& msg) {
  msg.setPrefix(m_prefix.data());
  msg.setSourceAndSideIsLeft(myNumber, mySideIsLeft);
  msg.rewindRead();
  msg.createChkSums();
}

bool AudioMgr::storeMsg(const AudioMsg& msg) {
  if (msg.senderNo != -1) return myQueue.storeMessage(msg);
  if (!msg.isChkSumsValid() || !msg.verifyPrefix(m_prefix.data())) return false;
  if (msg.getSideIsLeft() != mySideIsLeft) return false;
  const unsigned destination = msg.getDestination();
  if (destination != 0 && destination != myNumber) return false;
  timeOfLastHeard = msg.getServerTime();
  return myQueue.storeMessage(msg);
}

}  // namespace vok
