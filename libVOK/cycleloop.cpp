#include "cycleloop.h"

#include "constants.h"

namespace vok {

bool takeCycle(Comm& comm, Worldmodel& world) {
  AsyncCommInfo& timing = *comm.async;
  const bool begun = timing.takeAct();
  // No cycle has begun, but the server waits for an answer.
  const bool answerDue = !begun && timing.answerDue();
  if (answerDue) timing.takeAnswer();
  if (begun || answerDue || !timing.isCoach()) world.adjust();
  if (answerDue) comm.sendDone();
  return begun;
}

void endCycle(Comm& comm) {
  if (SYNCH_MODE) comm.sendDone();
}

}  // namespace vok
