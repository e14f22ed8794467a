// The players' part of the cycle timing: how long to wait for a visual message, and whether the
// commands that were sent were executed. A coach is never sent the messages that lead here.
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstddef>
#include <iostream>

#include "asyncinfo.h"
#include "constants.h"

namespace vok {

namespace {

// Of server parameters, which may be anything.
long boundedMs(long ms) {
  return std::clamp<long>(ms, 0, INT_MAX);
}

// Arms the one-shot timer; 0 stops it. "Real" is time that passes, whatever the clock is set to.
void setTimer(long ms) {
  itimerval timer{};
  timer.it_value = {ms / 1000, (ms % 1000) * 1000};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

// A command that the server executes once a cycle: the client's count, and the server's.
struct BodyCommand {
  CycleCommand command;
  const char* name;
  int AsyncCommInfo::*sent;
  int SensorData::*executed;
};

constexpr auto BODY_COMMANDS = std::to_array<BodyCommand>({
    {KICK_COMMAND, "kick", &AsyncCommInfo::kickCount, &SensorData::kick_count},
    {DASH_COMMAND, "dash", &AsyncCommInfo::dashCount, &SensorData::dash_count},
    {TURN_COMMAND, "turn", &AsyncCommInfo::turnCount, &SensorData::turn_count},
    {CATCH_COMMAND, "catch", &AsyncCommInfo::catchCount, &SensorData::catch_count},
    {TACKLE_COMMAND, "tackle", &AsyncCommInfo::tackleCount, &SensorData::tackle_count},
    {MOVE_COMMAND, "move", &AsyncCommInfo::moveCount, &SensorData::move_count},
});

// A command of which any number may be sent in a cycle.
struct FreeCommand {
  const char* name;
  int AsyncCommInfo::*sent;
  int SensorData::*executed;
};

constexpr auto FREE_COMMANDS = std::to_array<FreeCommand>({
    {"say", &AsyncCommInfo::sayCount, &SensorData::say_count},
    {"turn_neck", &AsyncCommInfo::turnNeckCount, &SensorData::turn_neck_count},
    {"change view", &AsyncCommInfo::changeViewCount, &SensorData::change_view_count},
    {"point to", &AsyncCommInfo::pointToCount, &SensorData::point_to_count},
    {"attention to", &AsyncCommInfo::attentionToCount, &SensorData::attention_to_count},
});

}  // namespace

void AsyncCommInfo::noteSee() {
  if (seeMsgCntIndex < 0) return;
  const auto slot = static_cast<std::size_t>(seeMsgCntIndex);
  ++seeMsgCnt[slot];
  seeTime[slot] = sinceStart() - cycleStartTime;
}

void AsyncCommInfo::startTimer() {
  const long step = boundedMs(static_cast<long>(SIMULATOR_STEP) * SLOW_DOWN_FACTOR);
  // The share of a cycle is an integer quotient: it is 0 for all allowed waits.
  const long maxCycle = 2 * step - (waitForSeeTime / 100) * step - 10;
  const long nowMs = sinceStart();
  long wait = std::lround(waitForSeeTime / 100.0 * static_cast<double>(step) -
                          static_cast<double>(nowMs - recvTime));
  const long lastCycle = nowMs - cycleStartTime;
  cycleStartTime = recvTime;

  const auto line = [this]() -> std::ostream& {
    return std::cerr << serverTime << " AsyncInfo: (" << team << " No." << number << ")";
  };
  if (lastCycle < 0) line() << " last cycle was to short: " << lastCycle << "\n";
  if (wait < 1 || lastCycle > maxCycle) {
    abortWaitForSee = true;
    setTimer(0);
    if (waitForSeeTime > 0 && wait < 1) {
      line() << " aborting waitForSee due to non positive timervalue (" << wait << ")\n";
    }
    if (lastCycle > maxCycle && serverTime > 0 && waitForSeeTime > 0) {
      line() << " timer not started as last cycle was to long: " << lastCycle << "\n";
    }
    return;
  }
  shortenWait(wait);
  if (wait < 1) abortWaitForSee = true;  // a timer of 0 would never end
  setTimer(wait);
}

void AsyncCommInfo::shortenWait(long& wait) {
  const bool settled = !viewModeUnknown && !viewModeChangedAgain && chVisAngle == curVisAngle &&
                       chVisQual == curVisQual && viewModeTime > 1;
  if (!settled || seeMsgCntIndex < 0) return;

  const auto slot = static_cast<std::size_t>(seeMsgCntIndex);
  const std::size_t before = (slot + seeMsgCnt.size() - 1) % seeMsgCnt.size();
  const int c = seeMsgCnt[slot];
  const int p = seeMsgCnt[before];
  const long d = boundedMs(static_cast<long>(SLOW_DOWN_FACTOR) * SEND_VI_STEP);
  const auto cap = [&wait](long ms) { wait = std::min(wait, ms % 101); };
  const auto dontWait = [&] {
    wait = 0;
    abortWaitForSee = true;
  };

  const bool high = curVisQual == VIEW_QUALITY_HIGH;
  if ((curVisAngle == VIEW_WIDTH_NORMAL && high) || (curVisAngle == VIEW_WIDTH_WIDE && !high)) {
    // A view every other cycle.
    if (c == 1 && p == 1) dontWait();
    if (c == 0 && p == 1) cap(seeTime[before] + 5 + 2 * d);
    if (c == 1 && p == 0) cap(seeTime[slot] + 5 + 2 * d);
  } else if (curVisAngle == VIEW_WIDTH_NARROW && high) {
    if (c == 1 && p == 1) cap(seeTime[slot] + 5 + 2 * d);
    if (c == 2 || (c == 1 && p == 2)) cap(seeTime[slot] + 5 + d);
  } else if (curVisAngle == VIEW_WIDTH_WIDE && high) {
    if (c == 1 || p == 1) dontWait();
  }
}

void AsyncCommInfo::twistNeck(double moment) {
  neckTwisted = true;
  if (sentNeckTurn.time != serverTime) sentNeckTurn = {serverTime, 0, 0};
  ++sentNeckTurn.commands;
  sentNeckTurn.moment += moment;
}

void AsyncCommInfo::sendAction(CycleCommand command, double p1, double p2) {
  for (const BodyCommand& kind : BODY_COMMANDS) {
    if (kind.command == command) ++(this->*kind.sent);
  }
  setAction(command, serverTime, p1, p2, sentAction);
  actionNeeded = false;
  updateAct();
}

// The command that was missing at the last body sense may have been executed since then. What is
// missing now was sent in the cycle that ended, and so is the latest that was sent.
void AsyncCommInfo::checkSyncCommandCount(const SensorData& data) {
  const CycleCommand late = lostAction.command;
  clearAction(serverTime, lostAction);
  int unexpected = 0;
  for (const BodyCommand& kind : BODY_COMMANDS) {
    int missing = this->*kind.sent - data.*kind.executed;
    this->*kind.sent = data.*kind.executed;
    if (missing < 0 && kind.command == late) ++missing;
    if (missing > 0) {
      report() << "missing " << missing << " " << kind.name << " command(s)!\n";
      if (sentAction.command == kind.command) lostAction = sentAction;
    } else if (missing < 0) {
      report() << "Server executed command (" << kind.name << ") I didn't send!\n";
      ++unexpected;
    }
  }
  if (unexpected > 1) report() << "Server executed more than one command\n";
}

void AsyncCommInfo::checkAsyncCommandCount(const SensorData& data) {
  for (const FreeCommand& kind : FREE_COMMANDS) {
    int& sent = this->*kind.sent;
    const int told = data.*kind.executed;
    if (sent == told) continue;
    report() << "missing " << kind.name << " commands (sent " << sent << ", was told " << told
             << ")\n";
    sent = told;
  }
}

}  // namespace vok
