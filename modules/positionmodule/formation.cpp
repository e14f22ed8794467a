#include "formation.h"

#include <cstddef>

#include "Config.h"
#include "pitch.h"

namespace vok {

namespace {

/// An item of a formation: the end of its key, and the member that takes it, a real or an integer.
struct FormationKey {
  const char* name;
  double& (*real)(PlayerPos&);
  int& (*whole)(PlayerPos&);
};

constexpr auto FORMATION_KEYS = std::to_array<FormationKey>({
    {"PosX", [](PlayerPos& p) -> double& { return p.Pos.x; }, nullptr},
    {"PosY", [](PlayerPos& p) -> double& { return p.Pos.y; }, nullptr},
    {"tact", nullptr, [](PlayerPos& p) -> int& { return p.tact; }},
    {"BforceX", [](PlayerPos& p) -> double& { return p.ballforceX; }, nullptr},
    {"BforceY", [](PlayerPos& p) -> double& { return p.ballforceY; }, nullptr},
    {"AreaX", [](PlayerPos& p) -> double& { return p.Area.x; }, nullptr},
    {"AreaY", [](PlayerPos& p) -> double& { return p.Area.y; }, nullptr},
    {"BModX", [](PlayerPos& p) -> double& { return p.BMod.x; }, nullptr},
    {"BModY", [](PlayerPos& p) -> double& { return p.BMod.y; }, nullptr},
    {"FModX", [](PlayerPos& p) -> double& { return p.FMod.x; }, nullptr},
    {"FModY", [](PlayerPos& p) -> double& { return p.FMod.y; }, nullptr},
    {"Watch1", nullptr, [](PlayerPos& p) -> int& { return p.Watches[0]; }},
    {"Watch2", nullptr, [](PlayerPos& p) -> int& { return p.Watches[1]; }},
    {"Watch3", nullptr, [](PlayerPos& p) -> int& { return p.Watches[2]; }},
});

}  // namespace

HalfFormation readHalfFormation(const std::string& prefix) {
  HalfFormation places;
  for (const FormationKey& item : FORMATION_KEYS) {
    const std::string key = prefix + item.name;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const int index = static_cast<int>(i);
      if (item.real != nullptr) {
        item.real(places[i]) = Config::getValueAsDoubleFromList(key.c_str(), index);
      } else {
        item.whole(places[i]) = Config::getValueAsIntFromList(key.c_str(), index);
      }
    }
  }
  // The key has a share of the pitch's width. Per cent of the band stay: its length varies.
  for (PlayerPos& place : places) place.Area.y *= 2 * HALF_WIDTH;
  return places;
}

}  // namespace vok
