// Any text as a configuration file behind the shipped one: every key in every form, then the
// modules and a few cycles on it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "Config.h"
#include "constants.h"
#include "harness.h"
#include "matchtelling.h"

namespace {

using namespace vok;
using fuzz::require;

/// What the end of the process is turned into.
struct Fatal {};

template <typename Request>
bool isGranted(Request request) {
  try {
    request();
    return true;
  } catch (const Fatal&) {
    return false;
  }
}

void checkKey(const char* key) {
  const char* value = Config::getValue(key);
  if (value == nullptr) return;
  require(std::strlen(value) <= 255, "values are bounded");
  double real = 0;
  if (isGranted([&] { real = Config::getValueAsDouble(key); })) {
    require(std::isfinite(real), "a real is finite");
    require(isGranted([&] { real -= Config::getValueAsDoubleFromList(key, 0); }) && real == 0,
            "a real is a list of one");
  }
  Vector2d vector;
  if (isGranted([&] { vector = Config::getValueAsVector(key); }))
    require(std::isfinite(vector.x) && std::isfinite(vector.y), "a vector is finite");
  isGranted([&] { Config::getValueAsInt(key); });
  for (const int index : {-1, 0, 4, 300}) {
    isGranted([&] { Config::getValueAsIntFromList(key, index); });
    isGranted([&] { Config::getValueAsDoubleFromList(key, index); });
  }
}

/// The last word in front of each equals sign, as far as it can be a key.
void checkKeys(std::string_view text) {
  for (std::size_t equals = 0; (equals = text.find('=', equals)) != text.npos; ++equals) {
    const std::size_t last = text.substr(0, equals).find_last_not_of(' ');
    if (last == text.npos) continue;
    const std::size_t before = text.find_last_of(" \n", last);
    const std::size_t first = before == text.npos ? 0 : before + 1;
    checkKey(std::string(text.substr(first, last + 1 - first)).c_str());
  }
}

/// What players ask for.
void checkPlaces(const VokCoach& coach) {
  const Worldmodel* world = coach.world.get();
  const TacticalSystem& heads = coach.tactical->ourSystem;
  // The places of a negative number of players lie among those of others.
  const bool disjoint = std::min({heads.numDefenders, heads.numDefMidfield, heads.numOffMidfield,
                                  heads.numOffenders}) >= 0;
  for (int n = 1; n <= 11; ++n) {
    const bool roles[] = {coach.tactical->ourTeamDefender(n), coach.tactical->ourTeamMidfield(n),
                          coach.tactical->ourTeamOffender(n)};
    require(!disjoint || std::count(std::begin(roles), std::end(roles), true) <= 1,
            "a player has one role");
    Vector2d lo;
    Vector2d hi;
    coach.positionEval->GetPlayerArea(world, n, lo, hi);
    for (int k = 0; k < 3; ++k) {
      const int watched = coach.positionEval->GetPlayerWatchNo(world, n, k);
      require(watched == -1 || isShirtNumber(watched), "watched players have shirt numbers");
    }
  }
}

void play() {
  fuzz::Match& match = fuzz::Match::instance();
  match.checkIn(fuzz::INIT_ANSWER, fuzz::SERVER_PARAM, fuzz::PLAYER_PARAM);
  SYNCH_MODE = false;
  for (int id = 0; id < 7; ++id) match.receive(fuzz::playerType(id));
  for (const char* call : {"goal_kick_l", "play_on"}) {
    match.receive("(hear 7 referee " + std::string(call) + ")");
    match.expectGoodCycle();
  }
  checkPlaces(match.itsCoach());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Match::instance();
  Config::onFatal = [](const std::string&) { throw Fatal(); };
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const fuzz::MemoryFile file(text);
  Config::clear();
  Config::readFile(VOK_SOURCE_DIR "/conf/agent.conf");
  fuzz::setOptionalKeys(static_cast<unsigned>(size));
  require(Config::readFile(file.path.c_str()), "any file is read");
  checkKeys(text);
  isGranted(play);
  return 0;
}
