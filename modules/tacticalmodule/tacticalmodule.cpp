#include "tacticalmodule.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Config.h"
#include "constants.h"
#include "ensure.h"

namespace vok {

namespace {

/// Head counts come unchecked from the configuration.
int saturatedSum(int a, int b) {
  const long sum = static_cast<long>(a) + b;
  return static_cast<int>(
      std::clamp<long>(sum, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// What one cycle of a player's motion demands of its type. A quotient may be no number (0 / 0,
/// when nothing moved or turned) and must then exclude nothing: so the comparisons ask for a
/// violation, which a NaN never is.
struct ObservedMotion {
  double distance;
  double inertiaBound;
  double dashRate;
  double decay;

  ObservedMotion(const WPlayer& before, const WPlayer& now) {
    const Vector2d way = now.pos - before.pos;
    const double turned = std::abs(now.bodyDir - before.bodyDir);
    const double fullPower = std::max(MAXPOWER, MINPOWER);
    distance = way.getLength();
    // MAXMOMENT is in degrees and `turned` in radians, on purpose.
    inertiaBound = (std::abs(MAXMOMENT) / turned - 1) / before.v.getLength();
    dashRate = (way - before.v).getLength() / fullPower;
    // The way divided by the speed that is left, and not the reverse, on purpose.
    decay = distance / now.v.getLength();
  }

  bool excludes(const WPlayerType& type) const {
    return type.playerSpeedMax < distance || type.inertiaFactor > inertiaBound ||
           type.dashPowerRate < dashRate || type.playerDecay < decay;
  }
};

}  // namespace

TacticalSystem::TacticalSystem(int _numDef, int _numDefMid, int _numOffMid, int _numOff)
    : numDefenders(_numDef),
      numDefMidfield(_numDefMid),
      numOffMidfield(_numOffMid),
      numMidfield(saturatedSum(_numDefMid, _numOffMid)),
      numOffenders(_numOff) {
  ensure(_numDef >= 0 && _numDefMid >= 0 && _numOffMid >= 0 && _numOff >= 0, "tacticalmodule");
  ensure(_numDef + _numDefMid + _numOffMid + _numOff == 10, "tacticalmodule");
}

TacticalModule::TacticalModule(const Worldmodel* world, AdvSkills* skills)
    : world(world), skills(skills), decayTypes(static_cast<std::size_t>(numPlayerTypes())) {
  ourSystem.numDefenders = Config::getValueAsInt("ourDefenders");
  ourSystem.numDefMidfield = Config::getValueAsInt("ourDefMidfield");
  ourSystem.numOffMidfield = Config::getValueAsInt("ourOffMidfield");
  ourSystem.numMidfield = saturatedSum(ourSystem.numDefMidfield, ourSystem.numOffMidfield);
  ourSystem.numOffenders = Config::getValueAsInt("ourOffenders");
  ourEdgeDefender = Config::getValueAsInt("tac_ourEdgeDefender");
  ourEdgeDefMidfield = Config::getValueAsInt("tac_ourEdgeDefMidfield");
  ourEdgeOffMidfield = Config::getValueAsInt("tac_ourEdgeOffMidfield");
  ourEdgeOffender = Config::getValueAsInt("tac_ourEdgeOffender");
  ourEdgeGoalie = Config::getValueAsInt("tac_ourEdgeGoalie");
  otherEdgeDefender = Config::getValueAsInt("tac_otherEdgeDefender");
  otherEdgeDefMidfield = Config::getValueAsInt("tac_otherEdgeDefMidfield");
  otherEdgeOffMidfield = Config::getValueAsInt("tac_otherEdgeOffMidfield");
  otherEdgeOffender = Config::getValueAsInt("tac_otherEdgeOffender");
  otherEdgeGoalie = Config::getValueAsInt("tac_otherEdgeGoalie");
  typesFromDecay = Config::getOptionalInt("tac_typesFromDecay", 0) == 1;
  playerType.fill(-1);
  ourTeamReachBallTime.fill(NEVER);
  otherTeamReachBallTime.fill(NEVER);
  for (auto& beliefs : playerTypeData) {
    beliefs.resize(static_cast<std::size_t>(numPlayerTypes()));
  }
}

bool TacticalModule::ourTeamDefender(int n) const {
  return placeWithin(n, 1, ourSystem.numDefenders + 1L);
}

bool TacticalModule::ourTeamDefMidfield(int n) const {
  const long lastDefender = ourSystem.numDefenders + 1L;
  return placeWithin(n, lastDefender, lastDefender + ourSystem.numDefMidfield);
}

bool TacticalModule::ourTeamOffMidfield(int n) const {
  const long lastDefender = ourSystem.numDefenders + 1L;
  return placeWithin(n, lastDefender + ourSystem.numDefMidfield,
                     lastDefender + ourSystem.numMidfield);
}

bool TacticalModule::ourTeamMidfield(int n) const {
  const long lastDefender = ourSystem.numDefenders + 1L;
  return placeWithin(n, lastDefender, lastDefender + ourSystem.numMidfield);
}

bool TacticalModule::ourTeamOffender(int n) const {
  const long lastMidfield = ourSystem.numDefenders + 1L + ourSystem.numMidfield;
  return placeWithin(n, lastMidfield, std::numeric_limits<long>::max());
}

/// True when the player's tactical number is above `behind` and at most `upTo`.
bool TacticalModule::placeWithin(int n, long behind, long upTo) const {
  ensure(n >= 1 && n <= 11, "tacticalmodule");
  if (!isShirtNumber(n)) return false;
  const int place = world->ourTeam[n].tacticalNo;
  return place != -1 && place > behind && place <= upTo;
}

bool TacticalModule::feedbackWorld() {
  communicateSimAction = false;
  ageOneCycle(cyclesSinceLastMessage);
  if (world->my.isCoach()) {
    determineOtherPlayerTypes();
    return true;
  }
  for (PlayerPassInfo& info : playerPassInfo) ageOneCycle(info.age);
  ageOneCycle(simulatedBall.age);
  feedbackAudio();
  determineResponsibility();
  determineBallControl();
  determineOurTacticalAction();
  for (TacticalAction* action : {&reportedTAction, &audioTAction}) {
    action->state = TA_UNKNOWN;
    action->quality = TQ_UNKNOWN;
    action->performer = -1;
    action->receiver = -1;
  }
  return true;
}

void TacticalModule::determineOtherPlayerTypes() {
  const bool nextCycle = oldTime < world->time && world->time - 1 == oldTime;
  if (typesFromDecay) {
    decayTypes.observe(*world, oldPlayer, nextCycle, playerTypeData, playerType);
  } else if (nextCycle && world->playMode == PLAY_MODE_PLAY_ON) {
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      if (substitutedSinceLastCall(n)) {
        forgetType(n);
      } else if (otherPlayerType(n) == -1) {
        excludeTypes(n);
        decideType(n);
      }
    }
  }
  oldPlayer = world->otherTeam;
  oldTime = world->time;
  oldNumSubs = world->numOtherSubs;
}

int TacticalModule::otherPlayerType(int n) const {
  if (!isShirtNumber(n)) return -1;
  return playerType[n];
}

/// Looks at no more changes than the ring holds; older ones are overwritten.
bool TacticalModule::substitutedSinceLastCall(int n) const {
  const auto& ring = world->otherSubs;
  const int size = static_cast<int>(ring.size());
  const int recent = std::min(world->numOtherSubs - oldNumSubs, size);
  for (int k = 0; k < recent; ++k) {
    const int index = (world->numOtherSubs - 1 - k) % size;
    if (ring[static_cast<std::size_t>(index)].number == n) return true;
  }
  return false;
}

void TacticalModule::forgetType(int n) {
  playerType[n] = -1;
  std::fill(playerTypeData[n].begin(), playerTypeData[n].end(), PlayerTypeData{});
}

void TacticalModule::excludeTypes(int n) {
  auto& beliefs = playerTypeData[n];
  const ObservedMotion motion(oldPlayer[n], world->otherTeam[n]);
  const std::size_t known = std::min(beliefs.size(), world->playerType.size());
  for (std::size_t type = 0; type < known; ++type) {
    if (beliefs[type].state == PTS_UNKNOWN && motion.excludes(world->playerType[type])) {
      beliefs[type] = {PTS_IMPOSSIBLE, 0};
    }
  }
}

/// The last type that is left is the player's.
void TacticalModule::decideType(int n) {
  auto& beliefs = playerTypeData[n];
  const auto possible = [](const PlayerTypeData& belief) { return belief.state != PTS_IMPOSSIBLE; };
  if (std::count_if(beliefs.begin(), beliefs.end(), possible) != 1) return;
  const auto left = std::find_if(beliefs.begin(), beliefs.end(), possible);
  left->state = PTS_SURE;
  playerType[n] = static_cast<int>(left - beliefs.begin());
}

}  // namespace vok
