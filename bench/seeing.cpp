// A player's cycle: from the texts of its body sense and view to the world.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>

#include "Config.h"
#include "bench.h"
#include "cycleloop.h"

namespace vok::bench {
namespace {

using Clock = std::chrono::steady_clock;

/// What a player of "Beta" received ('<') and sent ('>') in 300 cycles.
std::vector<std::string> playerRecording() {
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/player_right_10.txt");
  std::vector<std::string> texts;
  for (std::string line; std::getline(file, line);)
    texts.push_back(line.substr(line.find('\t') + 1));
  return texts;
}

bool isSense(std::string_view text) {
  return text.starts_with("<\t(sense_body ") || text.starts_with("<\t(see ");
}

/// The commands that move the player; without them the world would be surprised by every step.
void sendCommand(Comm& comm, const char* text) {
  double value = 0;
  if (std::sscanf(text, "(dash %lf", &value) == 1) comm.sendDash(value);
  if (std::sscanf(text, "(turn %lf", &value) == 1) comm.sendTurn(toRadians(value));
  if (std::sscanf(text, "(turn_neck %lf", &value) == 1) comm.sendTurnNeck(toRadians(value));
}

/// One iteration is the whole recording; its time is that of a cycle, body sense and view.
void playerCycle(benchmark::State& state, bool parseAlone) {
  const std::vector<std::string> texts = playerRecording();
  Config::readFile(PLAIN_CONFIG);
  std::cerr.setstate(std::ios::failbit);
  for (auto _ : state) {
    TextLink link;
    std::size_t first = 0;
    for (int answers = 0; answers < 3; ++first) {
      if (texts.at(first).front() != '<') continue;
      link.add(texts[first].substr(2));
      ++answers;
    }
    Comm comm("Beta", CLIENT_FIELDPLAYER, link, 0, false, 7, 8, SIDE_RIGHT);
    if (comm.connect() != COMM_OK) return state.SkipWithError("not checked in");
    Worldmodel world(&comm);
    world.takeChangesWithoutComma();
    Clock::duration taken{};
    int bodies = 0;
    for (std::size_t i = first; i < texts.size(); ++i) {
      const char* text = texts[i].c_str() + 2;
      if (texts[i].front() == '>') sendCommand(comm, text);
      link.dropCommands();
      const auto begun = Clock::now();
      if (parseAlone) {
        SensorData data;
        benchmark::DoNotOptimize(comm.parser->parseServerString(text, data));
        benchmark::DoNotOptimize(data);
      } else if (texts[i].front() == '<') {
        comm.receiveText(text);
        takeCycle(comm, world);
      }
      if (!isSense(texts[i])) continue;
      taken += Clock::now() - begun;
      if (texts[i].starts_with("<\t(sense")) ++bodies;
    }
    if (!parseAlone && (world.my.age > 1 || world.time < 290)) {
      return state.SkipWithError("the player is lost");
    }
    state.SetIterationTime(std::chrono::duration<double>(taken).count() / bodies);
  }
  std::cerr.clear();
}

}  // namespace

void addSeeing() {
  benchmark::RegisterBenchmark("player/parse", playerCycle, true)->UseManualTime()->Iterations(20);
  benchmark::RegisterBenchmark("player/cycle", playerCycle, false)->UseManualTime()->Iterations(20);
}

}  // namespace vok::bench
