#include "harness.h"

#include <sys/time.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <streambuf>
#include <vector>

#include "Config.h"
#include "constants.h"
#include "cycleloop.h"
#include "scanner.h"

namespace vok::fuzz {

const char* const INIT_ANSWER = "(init l ok)";
const char* const SERVER_PARAM =
    "(server_param (half_time 300)(say_coach_cnt_max 128)(say_coach_msg_size 128)"
    "(simulator_step 100)(synch_mode 1))";
const char* const PLAYER_PARAM = "(player_param (player_types 7)(subs_max 3))";

namespace {

constexpr std::size_t MAX_DATAGRAM = 8192;

constexpr const char* NO_FURTHER_KEYS = "/dev/null";  // the configuration is read already

// By the bits of `setOptionalKeys`.
constexpr const char* OPTIONAL_KEYS[] = {"tac_typesFromDecay", "types_withinLimits",
                                         "types_byAbility",    "summary",
                                         "types_replaceTired", "say_inPlay"};

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
    if (atLineStart_ && piece.starts_with("Warning: ensure")) ensureFailed = true;
    if (!piece.empty()) atLineStart_ = piece.back() == '\n';
    return n;
  }

 private:
  bool atLineStart_ = true;
};

Nowhere nowhere;

bool recordsMatch = false;

/// The timing takes the alarm, by which libFuzzer notices a hang: gives it back.
class AlarmKeeper {
 public:
  AlarmKeeper() {
    sigaction(SIGALRM, nullptr, &before_);
    getitimer(ITIMER_REAL, &timerBefore_);
    std::signal(SIGALRM, AsyncCommInfo::alrmHandler);
  }
  ~AlarmKeeper() {
    setitimer(ITIMER_REAL, &timerBefore_, nullptr);
    sigaction(SIGALRM, &before_, nullptr);
  }
  AlarmKeeper(const AlarmKeeper&) = delete;
  AlarmKeeper& operator=(const AlarmKeeper&) = delete;

 private:
  struct sigaction before_ {};
  itimerval timerBefore_{};
};

/// "(init l 5 MODE)"; a coach is given no number.
bool isPlayersAnswer(std::string_view init) {
  return init.size() > 8 && init.starts_with("(init ") && isDigit(init[8]);
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

std::vector<std::string_view> lines(std::string_view text) {
  constexpr std::size_t MAX_LINES = 100;
  std::vector<std::string_view> all;
  while (!text.empty() && all.size() < MAX_LINES) {
    all.push_back(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(all.back().size() + 1, text.size()));
  }
  return all;
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

void setOptionalKeys(unsigned mask) {
  recordsMatch = mask % 3 == 0;
  for (const char* key : OPTIONAL_KEYS) {
    setEntry(key, mask % 2 == 0 ? "0" : "1");
    mask /= 2;
  }
}

Match::Player::Player(Link& link)
    : comm(TEAM, CLIENT_FIELDPLAYER, link, 0, false, 7, 7, SIDE_LEFT) {
  if (comm.connect() != COMM_OK) return;
  world = std::make_unique<Worldmodel>(&comm);
  tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
}

Match::Match() {
  silence();
  require(Config::readFile(VOK_SOURCE_DIR "/conf/agent.conf"), "the configuration is read");
}

void Match::endMatch() {
  if (isCoach() && coach_->world != nullptr) {
    require(coach_->cycles.missed() >= 0, "missed cycles are counted up");
    coach_->writeSummary();
  }
  coach_.reset();
  player_.reset();
  // The configuration's fatal end, which is thrown here, may have left these half built.
  Comm::theComm = nullptr;
  AsyncCommInfo::info = nullptr;
  parameters_.restore();
  link_.dropTexts();
  link_.dropCommands();
  answers_ = 0;
  requests_.clear();
}

bool Match::checkIn(std::string_view init, std::string_view serverText,
                    std::string_view playerText) {
  endMatch();
  for (const std::string_view text : {init, serverText, playerText}) link_.add(std::string(text));
  const AlarmKeeper keeper;
  if (isPlayersAnswer(init)) {
    player_ = std::make_unique<Player>(link_);
  } else {
    // Whatever files a configuration names, none is written or read.
    setEntry("record_file", recordsMatch ? "/dev/null" : "");
    setEntry("team_graphic", "");
    coach_ = std::make_unique<VokCoach>(TEAM, link_, NO_FURTHER_KEYS);
  }
  takeCommands();
  if (world() == nullptr) return false;
  nowhere.ensureFailed = false;  // a configuration may have been told off
  checkWorld();
  return true;
}

std::optional<TypeRequest> Match::takeRequest() {
  if (requests_.empty()) return std::nullopt;
  const TypeRequest oldest = requests_.front();
  requests_.pop_front();
  return oldest;
}

void Match::receive(std::string_view datagram) {
  // Of the exact size, so that the sanitizer sees a step behind the end.
  datagram = datagram.substr(0, MAX_DATAGRAM);
  std::vector<char> text(datagram.size() + 1);
  datagram.copy(text.data(), datagram.size());

  {
    const AlarmKeeper keeper;
    comm().receiveText(text.data());
  }
  runCycle();
}

void Match::drain(std::string_view datagram) {
  link_.add(std::string(datagram.substr(0, MAX_DATAGRAM)));
  comm().drainSocket();
  require(comm().isServerAlive(), "no datagram is a dead server");
  runCycle();
}

void Match::runCycle() {
  if (isCoach()) {
    coach_->step();
  } else {
    runPlayersCycle();
  }
  require(!nowhere.ensureFailed, "no soft assertion fails");
  checkWorld();
  takeCommands();
}

void Match::runPlayersCycle() {
  Comm& comm = player_->comm;
  AsyncCommInfo::alrmHandler(SIGALRM);  // it has waited for a view
  const bool newCycle = takeCycle(comm, *player_->world);
  AudioMsg message;
  while (comm.getNextMsg(message)) player_->heard = player_->world->feedbackAudio(message);
  // A cycle may pass without what it should begin with.
  nowhere.ensureFailed = false;
  if (!newCycle) return;
  decide();
  act();
  endCycle(comm);
}

/// Another command each cycle, so that whatever the next sense tells meets all predictions.
void Match::act() {
  Comm& comm = player_->comm;
  switch (comm.getServerTime() % 7) {
    case 1:
      comm.sendTurn(1);
      break;
    case 2:
      comm.sendKick(80, -1);
      break;
    case 3:
      comm.sendMove(-10, 20);
      break;
    case 4:
      comm.sendCatch(0.5);
      break;
    case 5:
      comm.sendTackle(100);
      break;
    default:
      comm.sendDash(50);
  }
  comm.sendTurnNeck(0.4);
}

void Match::takeCommands() {
  while (const auto sent = link_.takeCommand()) {
    std::string_view command = *sent;
    if (comm().terminateTexts && command.ends_with('\0')) command.remove_suffix(1);
    if (command == "(done)") ++answers_;
    if (isCoach()) checkCommand(command);
  }
}

}  // namespace vok::fuzz
