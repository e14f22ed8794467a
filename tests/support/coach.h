// The coach in the test's own process.
#pragma once

#include <fstream>
#include <memory>

#include "support/server.h"
#include "vokcoach.h"

namespace vok::test {

/// The texts of a recorded match: tests/data/realtime_left.txt, 300 cycles that a real server sent
/// to the coach of "Alpha" on the left. The first three are the check-in.
inline Lines recording() {
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/realtime_left.txt");
  Lines texts;
  for (std::string line; std::getline(file, line);)
    texts.push_back(line.substr(line.find('\t') + 1));
  return texts;
}

/// The coach of "Alpha" without a socket.
class CoachTest : public testing::Test {
 protected:
  /// Checks it in with three answers.
  void checkIn(const Lines& answers) {
    for (std::size_t i = 0; i < 3; ++i) server.add(answers[i]);
    coach = std::make_unique<VokCoach>("Alpha", server, PLAIN_CONFIG);
    EXPECT_EQ(server.receive(), "(init Alpha (version 9.00))");
  }
  void checkIn(char side = 'l') {
    checkIn({std::string("(init ") + side + " ok)", SERVER_PARAM, PLAYER_PARAM});
  }

  void hear(const std::string& text) {
    coach->comm->receiveText(text.c_str());
    coach->step();
  }

  WPlayerType& type(int id) { return coach->world->playerType.at(static_cast<std::size_t>(id)); }

  TextServer server;
  StderrCapture errors;
  std::unique_ptr<VokCoach> coach;
};

}  // namespace vok::test
