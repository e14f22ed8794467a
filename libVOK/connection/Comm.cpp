// The connection's life and its receive loop.
#include "Comm.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "constants.h"
#include "playmodes.h"
#include "printable.h"
#include "recordedlink.h"
#include "scanner.h"
#include "stopsignals.h"

namespace vok {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

constexpr unsigned MAX_DATAGRAM = 8192;

// One drain takes no more: a flood must not keep the coach from its cycle.
constexpr int MAX_DRAIN = 1000;

constexpr unsigned MSG_QUEUE_SIZE = 20;

// A wait that ends later than the system's timers do was none: the process stood still.
constexpr milliseconds STOOD_STILL(100);

}  // namespace

Comm* Comm::theComm = nullptr;

Comm::Comm(const char* teamname, client_type clientType, const char* host, int port, int reconnect,
           bool remoteControl, int clangMinVer, int clangMaxVer, playing_side trainerSide)
    : ZELTRAmode(remoteControl),
      reconnectNumber(reconnect),
      ctype(clientType),
      coachSide(trainerSide) {
  claimProcess();
  openSocket(host, port);
  createParts(teamname, clangMinVer, clangMaxVer);
}

Comm::Comm(const char* teamname, client_type clientType, Link& link, int reconnect,
           bool remoteControl, int clangMinVer, int clangMaxVer, playing_side trainerSide)
    : ZELTRAmode(remoteControl),
      reconnectNumber(reconnect),
      ctype(clientType),
      coachSide(trainerSide),
      link_(&link) {
  claimProcess();
  createParts(teamname, clangMinVer, clangMaxVer);
}

void Comm::claimProcess() {
  if (theComm != nullptr) {
    std::cerr << "CommError: Comm: cannot construct more than one Comm in any single process !\n";
    std::exit(-1);
  }
  theComm = this;
}

void Comm::openSocket(const char* host, int port) {
  try {
    sock = std::make_unique<UDPSocket>(host, port, MAX_DATAGRAM);
    link_ = sock.get();
    stopInOrder();
  } catch (const UDPSocketError& error) {
    std::cerr << "CommError: " << error.msg() << "\n";
    serverOK = false;
  }
}

void Comm::createParts(const char* teamname, int clangMinVer, int clangMaxVer) {
  async = std::make_unique<AsyncCommInfo>(teamname, ctype);
  parser = std::make_unique<Parser>(teamname, ctype, clangMinVer, clangMaxVer);
  store = std::make_unique<SensorDataStore>();
  audiomgr =
      std::make_unique<AudioMgr>(UINT_MAX, false, AudioMsg::DEFAULT_MSG_PREFIX, MSG_QUEUE_SIZE);
}

void Comm::record(MatchRecorder& recorder) {
  if (link_ == nullptr) return;
  recorded_ = std::make_unique<RecordedLink>(*link_, recorder);
  link_ = recorded_.get();
}

Comm::~Comm() {
  if (serverOK) sendText("(bye)");
  if (sock != nullptr && sock->dropped() > 0) {
    commError() << "dropped " << sock->dropped() << " datagrams that were not the server's\n";
  }
  theComm = nullptr;
  sock.reset();
  async.reset();
  parser.reset();
  store.reset();
  audiomgr.reset();
}

int Comm::millisecondsUntil(steady_clock::time_point end) {
  const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
  return static_cast<int>(std::max<long>(left.count(), 0));
}

int Comm::receiveTimeout() {
  // Fifty simulation steps.
  const std::int64_t step = std::int64_t{SLOW_DOWN_FACTOR} * SIMULATOR_STEP;
  if (step <= 0) return 5000;
  return static_cast<int>(std::min<std::int64_t>(step, INT_MAX / 50) * 50);
}

void Comm::drainSocket() {
  if (async->act || async->answerDue()) return;
  const char* text = receiveFirst();
  for (int received = 1; text != nullptr; ++received) {
    receiveText(text);
    if (async->act || async->answerDue() || received == MAX_DRAIN) return;
    text = receiveNext();
  }
}

steady_clock::time_point Comm::endOfWait(const std::optional<steady_clock::time_point>& begun) {
  const auto now = steady_clock::now();
  // While the process stood still the server perhaps did, too.
  if (begun && now <= *begun + STOOD_STILL) return *begun;
  return now + milliseconds(receiveTimeout());
}

// Null when there is nothing to route, or when the server is lost.
const char* Comm::receiveFirst() {
  // A wait that a signal cut short goes on at the next drain: the server's silence counts in all.
  silenceEnds_ = endOfWait(silenceEnds_);
  try {
    const char* text = link_->recv(ZELTRAmode ? -1 : millisecondsUntil(*silenceEnds_), &async->act);
    silenceEnds_.reset();
    return text;
  } catch (const UDPAct&) {
    return nullptr;
  } catch (const UDPSocketError& error) {
    if (error.number() != EINTR) serverLost(error);
    return nullptr;
  }
}

const char* Comm::receiveNext() {
  try {
    return link_->tryRecv();
  } catch (const UDPSocketError& error) {
    serverLost(error);
    return nullptr;
  }
}

void Comm::serverLost(const UDPSocketError& error) {
  serverOK = false;
  std::cerr << "CommError:  (" << getMyTeam() << " No. " << getMyNumber() << ") " << error.msg()
            << " assuming server is dead\n";
}

void Comm::receiveText(const char* text) {
  async->setRecvTime();
  SensorData data;
  if (!parser->parseServerString(text, data)) {
    timedCommError() << "could not parse server string " << printable(firstLine(text)) << "\n";
    return;
  }
  const bool newCycle = async->adjust(data);
  route(data, newCycle, text);
}

void Comm::route(const SensorData& data, bool newCycle, const char* text) {
  switch (data.type) {
    case SENSOR_TYPE_SEE:
      store->put(data);
      feignNormalView(VIEW_WIDTH_NORMAL);
      break;
    case SENSOR_TYPE_HEAR:
      routeHear(data);
      break;
    case SENSOR_TYPE_SENSE_BODY:
      routeSenseBody(data, newCycle);
      break;
    case SENSOR_TYPE_EXACT:
    case SENSOR_TYPE_PLAYER_TYPE:
    case SENSOR_TYPE_PLAYER_CHANGED:
      store->put(data);
      break;
    case SENSOR_TYPE_OK:
      routeAnswer(data.answer);
      if (SYNCH_MODE && data.think) async->think();
      feignNormalView(VIEW_WIDTH_NARROW);
      break;
    case SENSOR_TYPE_ERROR:
      routeAnswer(data.answer);
      timedCommError() << "received error message from server: " << printable(firstLine(text))
                       << "\n";
      break;
    case SENSOR_TYPE_WARNING:
      routeAnswer(data.answer);
      timedCommError() << "received warning message from server: " << printable(firstLine(text))
                       << "\n";
      break;
    case SENSOR_TYPE_STRANGE:
      timedCommError() << "received strange message from server: " << printable(firstLine(text))
                       << "\n";
      break;
    case SENSOR_TYPE_CLANG_VER:
      break;
  }
}

static bool isAboutTile(AnswerKind kind) {
  return kind == AnswerKind::TILE_TAKEN || kind == AnswerKind::TILE_TOO_LATE ||
         kind == AnswerKind::TILE_REFUSED;
}

void Comm::routeAnswer(const Answer& answer) {
  if (answer.kind == AnswerKind::TEXT_NOT_TERMINATED) {
    terminateTexts = true;
  } else if (isAboutTile(answer.kind)) {
    tileAnswers.push(answer);
  } else if (answer.kind != AnswerKind::NONE) {
    answers.push(answer);
  }
}

void Comm::routeHear(const SensorData& data) {
  const char* text = data.message.data();
  switch (data.sender) {
    case SENDER_REFEREE:
    case SENDER_PLAYER_US:
    case SENDER_PLAYER_THEM:
      store->put(data);
      break;
    case SENDER_DIR:
      audiomgr->storeMsg(AudioMsg(text));
      break;
    case SENDER_PLAYER:
      if (std::string_view(data.sender_name.data()) == getMyTeam()) {
        audiomgr->storeMsg(AudioMsg(data.sender_num, data.sender_name.data(), text));
      }
      break;
    case SENDER_ONLINECOACH:
      if (ctype != CLIENT_ONLINECOACH && data.coachMsgType == CMT_FREEFORM) {
        audiomgr->storeMsg(AudioMsg(text));
      }
      break;
    case SENDER_COACH:
      if (ctype != CLIENT_TRAINCOACH) audiomgr->storeMsg(AudioMsg(text));
      break;
    case SENDER_SELF:
      break;
  }
}

void Comm::routeSenseBody(const SensorData& data, bool newCycle) {
  if (!newCycle || isStopped(getPlayMode())) {
    store->put(data);
    return;
  }
  store->insert(data);
  feignNormalView(VIEW_WIDTH_NARROW);
}

// Views of normal width at half the price: narrow while waiting, normal for one view.
void Comm::feignNormalView(view_width width) {
  if (fakenormal && !SYNCH_MODE) sendChangeView(width, VIEW_QUALITY_HIGH, false);
}

bool Comm::isTimeRunning() const {
  return !isStopped(getPlayMode());
}

std::ostream& Comm::commError() const {
  return std::cerr << "CommError: Comm (" << getMyTeam() << " No." << getMyNumber() << "): ";
}

std::ostream& Comm::timedCommError() const {
  return std::cerr << "CommError: " << getServerTime() << " Comm (" << getMyTeam() << " No."
                   << getMyNumber() << "): ";
}

}  // namespace vok
