// What every client has of the cycle timing; the players' timer and command accounting are in
// asyncinfo_players.cpp.
//
// A cycle has begun (`nextTimestep`) from the first message of a later time, or a view or call in a
// standstill, until the loop takes it, for which a coach in synchronous mode also needs `thinking`.
// Beside that runs the state `globalView`: it is AWAITED behind every answer, and a view makes it
// CAME, or IDLE when the view opened no cycle; a cycle that begins later turns IDLE into CAME.
// IDLE together with "(think)" is a standstill that the play mode does not show: `answerDue`, an
// answer without a cycle. When "(think)" has overtaken the message that begins the cycle, the view
// may have been overtaken, too, and the state is OVERTAKEN: then the next view of the same time
// belongs to the answered cycle and only leads back to AWAITED, while a later time begins a cycle
// of its own. A view that is lost behind a "(think)" in its place leaves the state AWAITED, so that
// the next view counts.
#include "asyncinfo.h"

#include <chrono>
#include <csignal>
#include <iostream>

#include "Config.h"
#include "constants.h"
#include "ensure.h"
#include "playmodes.h"

namespace vok {

using std::chrono::steady_clock;

namespace {

// Stand in the warnings' text, whatever the line here: who searches logs knows them.
constexpr int INTERVAL_LINE = 88;
constexpr int NO_COMMAND_LINE = 709;

}  // namespace

AsyncCommInfo* AsyncCommInfo::info = nullptr;

AsyncCommInfo::AsyncCommInfo(const char* teamName, client_type clientType)
    : team(teamName),
      client(clientType),
      startTime(std::chrono::floor<std::chrono::seconds>(steady_clock::now())) {
  if (info != nullptr) {
    std::cerr << "You can create only one AsyncCommInfo!\n";
  } else {
    info = this;
  }
  waitForSeeTime = Config::getValueAsInt("async_waitForSeeTime");
  if (waitForSeeTime % 10 != 0 || waitForSeeTime < 0 || waitForSeeTime > 90) {
    ensureFailed("waitForSeeTime%10 == 0 && 0 <= waitForSeeTime && waitForSeeTime <= 90",
                 "asyncinfo", INTERVAL_LINE);
  }
  clearAction(serverTime, sentAction);
  processedAction = sentAction;
  lostAction = sentAction;

  struct sigaction onAlarm {};
  onAlarm.sa_handler = alrmHandler;
  sigemptyset(&onAlarm.sa_mask);
  sigaddset(&onAlarm.sa_mask, SIGALRM);
  onAlarm.sa_flags = SA_RESTART;
  sigaction(SIGALRM, &onAlarm, nullptr);
}

AsyncCommInfo::~AsyncCommInfo() {
  if (info == this) info = nullptr;
}

void AsyncCommInfo::alrmHandler(int) {
  if (info == nullptr) return;
  info->abortWaitForSee = true;
  info->updateAct();
}

bool AsyncCommInfo::adjust(const SensorData& data) {
  const bool laterTime = adjustTime(data);
  bool accounted = false;
  switch (data.type) {
    case SENSOR_TYPE_EXACT:
      noteGlobalView(laterTime);
      break;
    case SENSOR_TYPE_SENSE_BODY:
      neckTwisted = false;
      if (data.my_view_width != VIEW_WIDTH_NONE) {
        curVisAngle = data.my_view_width;
        curVisQual = data.my_view_quality;
      }
      if (isStopped(playMode) && !noSenseBodyYet) newTimestep();
      accounted = noSenseBodyYet;
      if (accounted) {
        noSenseBodyYet = false;
        actionNeeded = true;
        checkSyncCommandCount(data);
        updateAct();
      }
      checkAsyncCommandCount(data);
      break;
    case SENSOR_TYPE_SEE:
      noteSee();
      break;
    case SENSOR_TYPE_HEAR:
      if (data.sender == SENDER_REFEREE) hearReferee(data);
      break;
    default:
      break;
  }
  return accounted;
}

bool AsyncCommInfo::adjustTime(const SensorData& data) {
  if (data.time <= serverTime) return false;
  if (data.time > serverTime + 1) {
    std::cerr << data.time << " AsyncInfo (" << team << " No." << number
              << "): completely missed server timesteps from " << serverTime + 1 << " to "
              << data.time - 1 << " (no commands sent)\n";
  } else if (!isCoach() && actionNeeded && !isStopped(playMode)) {
    report() << "agent did not send command\n";
    ensureFailed("false", "asyncinfo", NO_COMMAND_LINE);
  }
  serverTime = data.time;
  newTimestep();
  return true;
}

void AsyncCommInfo::noteGlobalView(bool laterTime) {
  if (laterTime || isStopped(playMode)) {
    globalView = GlobalView::CAME;
  } else if (globalView == GlobalView::OVERTAKEN) {
    globalView = GlobalView::AWAITED;
  } else {
    globalView = GlobalView::IDLE;
  }
  if (isStopped(playMode)) newTimestep();
}

void AsyncCommInfo::hearReferee(const SensorData& data) {
  // A call ends the standstill.
  if (isStopped(playMode) && serverTime > 0) newTimestep();
  // Cards, the trainer's words and the like change nothing in how the clock runs.
  if (data.mode == PLAY_MODE_UNKNOWN) return;
  playMode = data.mode;
  if (playMode == PLAY_MODE_GOAL_US) ourScore = data.score;
  if (playMode == PLAY_MODE_GOAL_THEM) otherScore = data.score;
  if (playMode == PLAY_MODE_HALF_TIME) secondHalf = true;
}

void AsyncCommInfo::newTimestep() {
  noSenseBodyYet = true;
  processedAction = lostAction.command != NO_COMMAND ? lostAction : sentAction;
  processedNeckTurn = sentNeckTurn;
  sentNeckTurn = {};
  abortWaitForSee = false;
  if (!isCoach() && !SYNCH_MODE) startTimer();
  nextTimestep = true;
  const bool viewCame = globalView == GlobalView::CAME || globalView == GlobalView::IDLE;
  globalView = viewCame ? GlobalView::CAME : thinking ? GlobalView::OVERTAKEN : GlobalView::AWAITED;
  seeMsgCntIndex = (seeMsgCntIndex + 1) % static_cast<int>(seeMsgCnt.size());
  seeTime[static_cast<std::size_t>(seeMsgCntIndex)] = 0;
  seeMsgCnt[static_cast<std::size_t>(seeMsgCntIndex)] = 0;
  ++viewModeTime;
  updateAct();
}

void AsyncCommInfo::updateAct() {
  if (isCoach()) {
    act = nextTimestep && (!SYNCH_MODE || thinking);
  } else {
    act = (actionNeeded && !noSenseBodyYet && nextTimestep && abortWaitForSee) || thinking;
  }
}

void AsyncCommInfo::think() {
  thinking = true;
  updateAct();
}

bool AsyncCommInfo::takeAct() {
  if (!act) return false;
  nextTimestep = false;
  thinking = false;
  if (globalView != GlobalView::OVERTAKEN) globalView = GlobalView::AWAITED;
  updateAct();
  return true;
}

bool AsyncCommInfo::answerDue() const {
  return SYNCH_MODE && isCoach() && thinking && globalView == GlobalView::IDLE && !nextTimestep;
}

void AsyncCommInfo::takeAnswer() {
  thinking = false;
  globalView = GlobalView::AWAITED;
}

void AsyncCommInfo::setStates(int shirtNumber, long time, play_mode mode, playing_side ownSide,
                              bool second) {
  number = shirtNumber;
  serverTime = time;
  playMode = mode;
  side = ownSide;
  secondHalf = second;
}

void AsyncCommInfo::setAction(CycleCommand command, long time, double p1, double p2,
                              CycleAction& into) {
  into = {time, command, p1, p2};
}

void AsyncCommInfo::setRecvTime() {
  recvTime = sinceStart();
}

long AsyncCommInfo::sinceStart() const {
  return std::chrono::floor<std::chrono::milliseconds>(steady_clock::now() - startTime).count();
}

std::ostream& AsyncCommInfo::report() const {
  return std::cerr << serverTime << " AsyncInfo (" << team << " No." << number << "): ";
}

}  // namespace vok
