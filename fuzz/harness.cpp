#include "harness.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <numbers>
#include <streambuf>
#include <vector>

#include "constants.h"

namespace vok::fuzz {

const char* const initAnswer = "(init l ok)";
const char* const serverParam =
    "(server_param (half_time 300)(say_coach_cnt_max 128)(say_coach_msg_size 128)"
    "(simulator_step 100)(synch_mode 1))";
const char* const playerParam = "(player_param (player_types 7)(subs_max 3))";

namespace {

constexpr const char* TEAM = "Alpha";
constexpr std::size_t MAX_DATAGRAM = 8192;

/// Takes everything and remembers only whether a line was that of a soft assertion.
class Nowhere : public std::streambuf {
 public:
  bool ensureFailed = false;

 protected:
  int overflow(int c) override {
    const char character = traits_type::to_char_type(c);
    xsputn(&character, 1);
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char* text, std::streamsize n) override {
    const std::string_view piece(text, static_cast<std::size_t>(n));
    if (atLineStart && piece.starts_with("Warning: ensure")) ensureFailed = true;
    if (!piece.empty()) atLineStart = piece.back() == '\n';
    return n;
  }

 private:
  bool atLineStart = true;
};

Nowhere nowhere;

/// The timing takes the alarm, by which libFuzzer notices a hang: gives it back.
class AlarmKeeper {
 public:
  AlarmKeeper() {
    sigaction(SIGALRM, nullptr, &before);
    getitimer(ITIMER_REAL, &timerBefore);
    std::signal(SIGALRM, AsyncCommInfo::alrmHandler);
  }
  ~AlarmKeeper() {
    setitimer(ITIMER_REAL, &timerBefore, nullptr);
    sigaction(SIGALRM, &before, nullptr);
  }
  AlarmKeeper(const AlarmKeeper&) = delete;
  AlarmKeeper& operator=(const AlarmKeeper&) = delete;

 private:
  struct sigaction before {};
  itimerval timerBefore{};
};

/// "(init l 5 MODE)"; a coach is given no number.
bool isPlayersAnswer(std::string_view init) {
  return init.size() > 8 && init.starts_with("(init ") && isDigit(init[8]);
}

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port));
  return address;
}

/// One player of the good view.
struct Placed {
  double x, y, vx, vy;
  int degrees;
  bool goalie;
};

Placed placed(bool ours, int n) {
  const double sign = ours ? -1 : 1;
  return {sign * 4.5 * n, 2.25 * n - 13, sign * 0.125, 0.25, 15 * n, n == (ours ? 1 : 3)};
}

/// The good view behind its time.
std::string goodObjects() {
  std::string text = " ((g r) 52.5 0) ((g l) -52.5 0) ((b) -20.5 7.25 0.5 -0.75)";
  std::array<char, 120> player{};
  for (const bool ours : {true, false}) {
    for (int n = 1; n <= 11; ++n) {
      const Placed p = placed(ours, n);
      std::snprintf(player.data(), player.size(), " ((p \"%s\" %d%s) %g %g %g %g %d 0)",
                    ours ? TEAM : "Beta", n, p.goalie ? " goalie" : "", p.x, p.y, p.vx, p.vy,
                    p.degrees);
      text += player.data();
    }
  }
  return text + ")";
}

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "FAILED: %s\n", what);
  std::abort();
}

void silence() {
  std::cerr.rdbuf(&nowhere);
  // The stream is flushed once more after this buffer's end.
  std::atexit([] { std::cerr.rdbuf(nullptr); });
}

std::string playerType(int id) {
  return "(player_type (id " + std::to_string(id) + ")(player_speed_max 0." +
         std::to_string(3 + id) +
         ")(stamina_inc_max 45)(player_decay 0.4)(inertia_moment 5)(dash_power_rate 0.006)"
         "(player_size 0.3)(kickable_margin 0.7)(kick_rand 0.1)(extra_stamina 50)(effort_max 1)"
         "(effort_min 0.6))";
}

Match& Match::instance() {
  static Match theMatch;
  return theMatch;
}

Match::Match()
    : server(socket(AF_INET, SOCK_DGRAM, 0)),
      emptyAudiomgr(UINT_MAX, false, AudioMsg::DEFAULT_MSG_PREFIX, 20) {
  silence();
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  require(bind(server, reinterpret_cast<const sockaddr*>(&address), size) == 0, "harness: bind");
  getsockname(server, reinterpret_cast<sockaddr*>(&address), &size);

  const AlarmKeeper keeper;
  SIMULATOR_STEP = 1;  // nobody answers this check-in: it should give up soon
  coach = std::make_unique<VokCoach>(TEAM, "127.0.0.1", ntohs(address.sin_port),
                                     VOK_SOURCE_DIR "/conf/agent.conf", "", false);
  recvfrom(server, nullptr, 0, 0, reinterpret_cast<sockaddr*>(&address), &size);
  coachPort = ntohs(address.sin_port);
  readFormations();
}

void Match::readFormations() {
  positions = std::make_unique<PositionEval>(coach->goalShotEval.get(), coach->passEval.get());
}

/// As a client is before its check-in.
void Match::restart(client_type type) {
  parameters.restore();
  Comm& comm = *coach->comm;
  comm.async.reset();
  AsyncCommInfo::info = nullptr;  // also of one whose construction failed
  const AlarmKeeper keeper;
  comm.async = std::make_unique<AsyncCommInfo>(TEAM, type);
  *comm.parser = Parser(TEAM, type, 7, 7);
  comm.ctype = type;
  *comm.store = emptyStore;
  *comm.audiomgr = emptyAudiomgr;
  comm.terminateTexts = false;
  comm.serverOK = true;
  while (comm.sock->tryRecv() != nullptr) continue;
}

bool Match::checkIn(std::string_view init, std::string_view serverText,
                    std::string_view playerText) {
  restart(isPlayersAnswer(init) ? CLIENT_FIELDPLAYER : CLIENT_ONLINECOACH);
  for (const std::string_view text : {init, serverText, playerText}) sendToCoach(text);
  const bool checkedIn = coach->comm->connect() == COMM_OK;
  takeCommands();
  if (!checkedIn) return false;

  coach->world = std::make_unique<Worldmodel>(coach->comm.get());
  prepareCoach();
  answers = 0;
  nowhere.ensureFailed = false;  // a configuration may have been told off
  checkWorld();
  return true;
}

void Match::prepareCoach() {
  *coach->tactical = TacticalModule(coach->world.get(), nullptr);
  *coach->positionEval = *positions;
  *coach->otherTeam = Team(coach->world.get());
  coach->sayMessageNow = false;
  coach->lastPlayMode = PLAY_MODE_UNKNOWN;
  coach->numMsgsLeft = SAY_COACH_CNT_MAX;
  coach->lastNewMessageTime = 0;
  coach->lastAumsgTime = -43;
  coach->plType.fill(0);
  coach->initSubs();
}

void Match::sendToCoach(std::string_view datagram) const {
  const sockaddr_in address = loopback(coachPort);
  sendto(server, datagram.data(), std::min(datagram.size(), std::size_t{60000}), 0,
         reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

void Match::receive(std::string_view datagram) {
  // Of the exact size, so that the sanitizer sees a step behind the end.
  datagram = datagram.substr(0, MAX_DATAGRAM);
  std::vector<char> text(datagram.size() + 1);
  datagram.copy(text.data(), datagram.size());

  {
    const AlarmKeeper keeper;
    coach->comm->receiveText(text.data());
  }
  runCycle();
}

void Match::receiveFromSocket(std::string_view datagram) {
  sendToCoach(datagram);
  coach->comm->drainSocket();
  require(coach->comm->isServerAlive(), "no datagram is a dead server");
  runCycle();
}

void Match::runCycle() {
  if (coach->comm->async->isCoach()) {
    coach->step();
  } else {
    runPlayersCycle();
  }
  require(!nowhere.ensureFailed, "no soft assertion fails");
  checkWorld();
  takeCommands();
}

void Match::runPlayersCycle() {
  Comm& comm = *coach->comm;
  AsyncCommInfo::alrmHandler(SIGALRM);  // it has waited for a view
  const bool newCycle = comm.async->takeAct();
  coach->world->adjust();
  AudioMsg message;
  while (comm.getNextMsg(message)) heard = coach->world->feedbackAudio(message);
  // A cycle may pass without what it should begin with.
  nowhere.ensureFailed = false;
  if (!newCycle) return;
  if (comm.getServerTime() % 2 == 0) {
    comm.sendDash(50);
  } else {
    comm.sendTurn(1);
  }
  if (SYNCH_MODE) comm.sendDone();
}

void Match::checkWorld() const {
  const Worldmodel& world = *coach->world;
  const auto isAge = [](long age) { return 0 <= age && age <= NEVER; };
  const auto isAngle = [](double a) { return -std::numbers::pi < a && a <= std::numbers::pi; };
  const auto isShirtOrNone = [](int number) { return number == -1 || isShirtNumber(number); };
  const int types = static_cast<int>(world.playerType.size());

  bool agesFit = isAge(world.ball.age) && isAge(world.my.age) && isAge(world.ourGoal.age) &&
                 isAge(world.otherGoal.age) && isAge(world.visualAge);
  for (const auto* ages : {&world.vAge, &world.aOppAge, &world.aOurAge})
    agesFit = agesFit && std::all_of(ages->begin(), ages->end(), isAge);

  int places = 0;
  for (std::size_t n = 1; n <= 11; ++n) {
    for (const WPlayer* player : {&world.ourTeam[n], &world.otherTeam[n]}) {
      agesFit = agesFit && isAge(player->age) && isAge(player->bodyAge) &&
                isAge(player->cyclesSinceTackle);
      require(isAngle(player->bodyDir) && isAngle(player->faceDir), "angles are normalised");
      require(player->number == static_cast<int>(n), "players keep their numbers");
      require(player->type >= -1 && player->type < std::max(types, 1), "types were announced");
    }
    require(isShirtOrNone(world.ourTeam[n].tacticalNo), "tactical numbers are in range");
    if (world.ourTeam[n].tacticalNo > 0) places |= 1 << world.ourTeam[n].tacticalNo;
  }
  require(agesFit, "ages are in 0..32000");
  require(places == 0 || places == 0xffe, "tactical numbers are distinct");
  require(isShirtOrNone(world.ourGoalieNo) && isShirtOrNone(world.otherGoalieNo),
          "goalies have shirt numbers");
  require(world.numOurSubs >= 0 && world.numOtherSubs >= 0, "changes are counted up");
  require(isAngle(world.my.bodyDir) && isAngle(world.my.faceDir), "our own angles too");
  if (coach->comm->async->isCoach()) checkPlans();
}

void Match::checkPlans() const {
  const int types = static_cast<int>(coach->world->playerType.size());
  for (std::size_t n = 1; n <= 11; ++n) {
    require(coach->tactical->playerType[n] >= -1 && coach->tactical->playerType[n] < types,
            "inferred types are in range");
  }
  for (const auto& place : coach->positionEval->RealPositions)
    require(!(std::abs(place.Pos.y) > 29), "places are on the field");
}

void Match::expectGoodCycle() {
  const AsyncCommInfo& async = *coach->comm->async;
  const long time = std::max(coach->world->time, async.getServerTime()) + 1;
  if (time > INT_MAX) return;  // the clock goes no further
  if (!async.isCoach()) return expectGoodSenses(time);
  static const std::string objects = goodObjects();
  const int before = answers;
  receive("(see_global " + std::to_string(time) + objects);
  expectAnswer(before);
  checkView(time);
}

void Match::expectAnswer(int before) {
  if (!SYNCH_MODE) return;
  receive("(think)");
  require(answers > before, "a good cycle is answered");
}

void Match::expectGoodSenses(long time) {
  receive("(sense_body " + std::to_string(time) +
          " (view_mode low wide) (stamina 3210.5 0.75) (speed 0.25 90) (head_angle -30) (kick 1)"
          " (dash 2) (turn 3) (say 4) (turn_neck 5) (catch 6) (move 7) (change_view 8)"
          " (arm (movable 0) (expires 0) (target 0 0) (count 9)) (focus (target none) (count 10))"
          " (tackle (expires 0) (count 11)))");
  const Worldmodel& world = *coach->world;
  require(world.time == time, "the body sense's time is taken");
  require(world.playMode == coach->comm->getPlayMode(), "the play mode is taken");
  require(world.my.stamina == 3210.5 && world.my.effort == 0.75, "the body's state is taken");
  require(std::abs(world.my.v.getLength() - 0.25) < 1e-9 &&
              world.my.headAngle == Angle(-std::numbers::pi / 6),
          "speed and neck are taken");
  require(world.viewWidth == VIEW_WIDTH_WIDE && world.viewQuality == VIEW_QUALITY_LOW,
          "the view mode is taken");
  require(world.kickCount == 1 && world.dashCount == 2 && world.turnCount == 3 &&
              world.sayCount == 4 && world.turnNeckCount == 5 && world.catchCount == 6 &&
              world.moveCount == 7 && world.changeViewCount == 8 && world.pointToCount == 9 &&
              world.attentionToCount == 10 && world.tackleCount == 11,
          "the counts are taken");
  receive("(see " + std::to_string(time) + " ((b) 10 -20))");
  require(world.visualAge == 0, "the view is taken");
  expectAnswer(answers);
  expectGoodMessage(time);
}

void Match::expectGoodMessage(long time) {
  constexpr long timeInMessages = 1 << 18;
  const bool left = coach->comm->getMySide() == SIDE_LEFT;
  AudioMsg message(0, static_cast<unsigned>(time), true);
  Worldmodel told(nullptr);
  told.ball.pos = {-20.5, 7.25};
  std::array<int, 12> types;
  types.fill(-1);
  message << true << told << types.data();
  if (!message.getState() || time >= timeInMessages) return;

  AudioMgr(0, left, AudioMsg::DEFAULT_MSG_PREFIX, 1).SpeakTo(message);
  heard = false;
  receive("(hear " + std::to_string(time) + (left ? " online_coach_left" : " online_coach_right") +
          " (freeform \"" + message.getEncoding() + "\"))");
  require(heard && coach->world->ball.pos == Vector2d(-20.5, 7.2) && coach->world->ball.age == 0,
          "a good message is heard");
}

void Match::checkView(long time) const {
  const Worldmodel& world = *coach->world;
  const double turned = world.ourSide == SIDE_RIGHT ? -1 : 1;
  require(world.time == time && world.visualAge == 0, "the view's time is taken");
  require(world.playMode == coach->comm->getPlayMode(), "the play mode is taken");
  require(world.ball.pos == turned * Vector2d(-20.5, 7.25) &&
              world.ball.v == turned * Vector2d(0.5, -0.75) && world.ball.age == 0,
          "the view's ball is taken");
  for (const bool ours : {true, false}) {
    for (int n = 1; n <= 11; ++n) {
      const Placed p = placed(ours, n);
      const WPlayer& player = (ours ? world.ourTeam : world.otherTeam)[static_cast<std::size_t>(n)];
      require(player.pos == turned * Vector2d(p.x, p.y) &&
                  player.v == turned * Vector2d(p.vx, p.vy) &&
                  player.bodyDir == Angle(p.degrees * std::numbers::pi / 180) &&
                  player.isGoalie == (p.goalie ? GOALIE_TRUE : GOALIE_FALSE) && player.age == 0 &&
                  player.state == VISUAL,
              "the view's players are taken");
    }
  }
}

void Match::takeCommands() {
  std::array<char, MAX_DATAGRAM> text;
  for (ssize_t n = 0; (n = recv(server, text.data(), text.size(), MSG_DONTWAIT)) >= 0;) {
    std::string_view command(text.data(), static_cast<std::size_t>(n));
    if (coach->comm->terminateTexts && command.ends_with('\0')) command.remove_suffix(1);
    if (command == "(done)") ++answers;
    if (coach->comm->async->isCoach()) checkCommand(command);
  }
}

void Match::checkCommand(std::string_view command) {
  constexpr std::string_view sayHead = "(say (freeform \"";
  constexpr std::string_view sayTail = "\"))";
  if (command.starts_with(sayHead)) {
    require(command.ends_with(sayTail), "a say command is whole");
    command.remove_prefix(sayHead.size());
    command.remove_suffix(sayTail.size());
    require(static_cast<int>(command.size()) <= SAY_COACH_MSG_SIZE, "a message is short enough");
    require(command.find_first_not_of(msgEncodeChars) == command.npos, "of the right characters");
    require(AudioMsg(std::string(command).c_str()).isChkSumsValid(), "its checksum is valid");
  } else if (command.starts_with("(change_player_type ")) {
    int number = 0;
    int type = 0;
    std::sscanf(std::string(command).c_str(), "(change_player_type %d %d)", &number, &type);
    require(number >= 2 && number <= 11, "only field players change their types");
    require(type >= 1 && type < static_cast<int>(coach->world->playerType.size()) &&
                coach->world->playerType[static_cast<std::size_t>(type)].state == type,
            "only announced types are ordered");
  } else {
    require(command == "(done)" || command.starts_with("(eye on)") || command.starts_with("(init "),
            "a known command");
  }
}

}  // namespace vok::fuzz
