// The coach in the test's own process.
#pragma once

#include <fstream>
#include <memory>
#include <thread>

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

/// The coach of "Alpha", checked in with three answers.
inline std::unique_ptr<VokCoach> checkedIn(ScriptedServer& server, const Lines& answers) {
  std::thread serving([&] {
    server.receive();
    for (std::size_t i = 0; i < 3; ++i) server.send(answers[i]);
  });
  auto coach =
      std::make_unique<VokCoach>("Alpha", "127.0.0.1", server.port(), shippedConfig, "", false);
  serving.join();
  return coach;
}

inline std::unique_ptr<VokCoach> checkedIn(ScriptedServer& server, char side = 'l') {
  return checkedIn(server, {std::string("(init ") + side + " ok)", serverParam, playerParam});
}

}  // namespace vok::test
