// Worlds without a server, and the records of its texts.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string_view>

#include "Config.h"
#include "Parser.h"
#include "constants.h"
#include "support/server.h"
#include "worldmodel.h"

namespace vok::test {

/// The record of a text to a client of "Alpha" on the left.
inline SensorData parsed(std::string_view text, client_type client = CLIENT_ONLINECOACH) {
  Parser parser("Alpha", client, 7, 8);
  parser.setSide(SIDE_LEFT);
  SensorData data;
  EXPECT_TRUE(parser.parseServerString(text, data)) << text;
  return data;
}

/// A world in which no player was ever seen, of so many player types and substitution rings.
inline Worldmodel newWorld(int types = 0, const char* rings = "11", Comm* comm = nullptr) {
  playerParams.player_types = types;
  setEntry("world_maxPlayersOurTeam", rings);
  setEntry("world_maxPlayersOtherTeam", rings);
  return Worldmodel(comm);
}

/// A coach's world in play.
inline std::unique_ptr<Worldmodel> coachsWorld(int types = 0) {
  Config::readFile(PLAIN_CONFIG);
  playerParams.player_types = types;
  auto world = std::make_unique<Worldmodel>(nullptr);
  world->my.number = 0;
  world->playMode = PLAY_MODE_PLAY_ON;
  return world;
}

inline bool near(const Vector2d& a, const Vector2d& b) {
  return (a - b).getLength() < 1e-6;
}

}  // namespace vok::test
