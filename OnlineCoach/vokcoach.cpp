#include "vokcoach.h"

#include <algorithm>
#include <climits>
#include <iostream>

#include "Config.h"
#include "constants.h"
#include "movement.h"
#include "playmodes.h"
#include "printable.h"

namespace vok {

namespace {

// While a set play lasts, a message is repeated after so many cycles.
constexpr long REPEAT_CYCLES = 40;

// In running play the server passes a message on for 20 cycles of every 600, from the second 600
// on.
constexpr long IN_PLAY_PERIOD = 600;
constexpr long IN_PLAY_FIRST = 2;  // of these 20, with a margin on both sides
constexpr long IN_PLAY_LAST = 17;

// A player who comes in so late has nothing of its stamina, cycles before the end of a half.
constexpr long TOO_LATE = 200;

}  // namespace

VokCoach::VokCoach(const char* team, const char* host, int port, const char* agentConfFile,
                   const char* traceConfFile, bool zeltraMode)
    : Onlinecoach(team, host, port, agentConfFile, traceConfFile, zeltraMode),
      numMsgsLeft(SAY_COACH_CNT_MAX) {
  createModules();
}

VokCoach::VokCoach(const char* team, Link& link, const char* agentConfFile)
    : Onlinecoach(team, link, agentConfFile), numMsgsLeft(SAY_COACH_CNT_MAX) {
  createModules();
}

void VokCoach::createModules() {
  tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
  goalShotEval = std::make_unique<GoalShotEval>();
  passEval = std::make_unique<PassEval>(goalShotEval.get());
  positionEval = std::make_unique<PositionEval>(goalShotEval.get(), passEval.get());
  otherTeam = std::make_unique<Team>(world.get());
  initSubs();
  if (world != nullptr) {
    initTypeRequests();
    initTeamGraphic();
  }
  saysMessages = Config::getOptionalInt("say_messages", 1) != 0;
  saysInPlay = Config::getOptionalInt("say_inPlay", 0) == 1;
  const int capacity = Config::getOptionalInt("skill_staminaCapacity", DEFAULT_CAPACITY);
  if (Config::getOptionalInt("types_replaceTired", 0) == 1) {
    tiredPlayers = std::make_unique<TiredPlayers>(capacity);
  }
}

VokCoach::~VokCoach() {
  typeRequests.reset();
  // In the order of construction; the members by themselves would go in the reverse order.
  tactical.reset();
  goalShotEval.reset();
  passEval.reset();
  positionEval.reset();
  otherTeam.reset();
}

void VokCoach::initTypeRequests() {
  if (Config::getOptionalInt("types_withinLimits", 0) == 1) {
    typeRequests = std::make_unique<TypeRequests>(*world, *comm);
  }
}

void VokCoach::initTeamGraphic() {
  const std::string file = Config::getOptionalText("team_graphic", "");
  if (file.empty()) return;
  std::string error;
  teamGraphic = TeamGraphic::fromFile(file, error);
  if (teamGraphic != nullptr) return;
  std::cerr << "Coach: no team graphic: " << printable(file) << ": " << error << "\n";
}

void VokCoach::analyze() {
  tactical->feedbackWorld();
  if (tiredPlayers != nullptr) tiredPlayers->feedbackWorld(*world);
  positionEval->CalMinMaxX(world.get());
  positionEval->CalPlayerPositions(world.get());
  if (world->playMode == PLAY_MODE_PLAY_ON) otherTeam->Update();
  if (typeRequests != nullptr) followTypes();

  // A message is due when a set play begins and from time to time while it lasts.
  const bool setPlay = isSetPlay(world->playMode);
  if (!setPlay) lastAumsgTime = -42;
  if (world->playMode != lastPlayMode) {
    lastPlayMode = world->playMode;
    playModeSince = world->time;
    if (setPlay) sayMessageNow = true;
  } else if (setPlay && world->time - lastAumsgTime > REPEAT_CYCLES) {
    sayMessageNow = true;
  }
}

void VokCoach::actInPlay() {
  const long played = world->time - playModeSince;
  const long inPeriod = played % IN_PLAY_PERIOD;
  const bool isOpen =
      played >= IN_PLAY_PERIOD && inPeriod >= IN_PLAY_FIRST && inPeriod <= IN_PLAY_LAST;
  if (!saysInPlay || !saysMessages || !isOpen || world->playMode != PLAY_MODE_PLAY_ON) return;
  if (world->time - lastInPlayTime > IN_PLAY_LAST) {
    lastInPlayTime = world->time;
    sayMessage();
  }
}

void VokCoach::act() {
  refillBudget();
  if (sayMessageNow) {
    sayMessageNow = false;
    if (saysMessages) sayMessage();
  }
  chooseTypesOnce();
  if (teamGraphic != nullptr) teamGraphic->send(*comm);
}

void VokCoach::refillBudget() {
  if (world->time - lastNewMessageTime < 2L * HALF_TIME_IN_CYCLES) return;
  lastNewMessageTime = world->time;
  // Saturating: the server may name any number.
  const long refilled = static_cast<long>(numMsgsLeft) + SAY_COACH_CNT_MAX;
  numMsgsLeft = static_cast<int>(std::clamp<long>(refilled, INT_MIN, INT_MAX));
}

void VokCoach::sayMessage() {
  if (numMsgsLeft == 0) {
    std::cerr << "Coach: Cannot scream: Lost voice earlier!\n";
    return;
  }
  AudioMsg message(0, static_cast<unsigned>(world->time), true);
  newsForPlayers().write(message);
  if (!message.getState()) {
    std::cerr << "Coach : Fatal error: buffer overflow:" << message << "\n";
    return;
  }
  lastAumsgTime = world->time;
  comm->say(message);
  if (numMsgsLeft > INT_MIN) --numMsgsLeft;
}

CoachMessage VokCoach::newsForPlayers() const {
  CoachMessage news = world->coachMessage();
  news.otherTypes = tactical->playerType;
  news.kicker = calcPlayerForKickUs();
  otherTeam->GetDefensePlayer(news.lastDefender, news.secondLastDefender);
  return news;
}

void VokCoach::chooseTypesOnce() {
  if (Config::getValueAsInt("use_heterogenous_players") != 1) return;
  if (initDone && typeRequests != nullptr) {
    replaceTired();
    typeRequests->ask();
  }
  if (initDone || !knowsHeteroTypes()) return;
  chooseHeterogenousPlayers();
  initDone = true;
}

void VokCoach::replaceTired() {
  if (tiredPlayers == nullptr) return;
  const int tired = tiredPlayers->mostTired();
  const long left = HALF_TIME_IN_CYCLES - world->time % std::max(1, HALF_TIME_IN_CYCLES);
  if (tired != -1 && left > TOO_LATE) typeRequests->replace(tired);
}

int VokCoach::calcPlayerForKickUs() const {
  int nearest = -1;
  double bound = 10000.0;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (!tactical->ourTeamMidfield(n)) continue;
    const double dist = world->ourTeam[n].distTo(world->ball.pos);
    if (dist < bound) {
      bound = dist;
      nearest = n;
    }
  }
  return nearest;
}

}  // namespace vok
