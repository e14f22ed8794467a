#include "gamelogkeeper.h"

namespace vok::practicematch {

class GameLogKeeper::Files {};

GameLogKeeper::GameLogKeeper() = default;
GameLogKeeper::~GameLogKeeper() = default;

bool GameLogKeeper::open(const std::string& /*file*/, std::string& error) {
  error = "this program was built without zlib, which game logs need";
  return false;
}

void GameLogKeeper::begin(const Match& /*match*/) {}
void GameLogKeeper::cycle(const Match& /*match*/, const std::vector<std::string>& /*texts*/) {}
void GameLogKeeper::command(const Match& /*match*/, std::string_view /*text*/) {}
bool GameLogKeeper::end() {
  return true;
}

}  // namespace vok::practicematch
