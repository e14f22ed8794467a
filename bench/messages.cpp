// One message of the coach: composed, checked and decoded, without a socket.
#include <benchmark/benchmark.h>

#include "bench.h"

namespace vok::bench {
namespace {

/// As the coach puts its messages together, stamped.
AudioMsg compose(VokCoach& coach) {
  AudioMsg message(0, static_cast<unsigned>(coach.world->time), true);
  message << true << *coach.world << coach.tactical->playerType.data();
  message << Int3B(static_cast<unsigned>(coach.calcPlayerForKickUs()));
  int foremost = 3;
  int second = 9;
  coach.otherTeam->GetDefensePlayer(foremost, second);
  message << Int3B(static_cast<unsigned>(second + 12 * foremost));
  coach.comm->audiomgr->SpeakTo(message);
  return message;
}

bool decode(AudioMsg& message, Worldmodel& world) {
  Int3B kicker;
  Int3B opponents;
  if (!world.feedbackAudio(message)) return false;
  message >> kicker >> opponents;
  return message.getState();
}

void composing(benchmark::State& state) {
  CoachInMatch match;
  for (auto _ : state) benchmark::DoNotOptimize(compose(*match.coach));
}

void checking(benchmark::State& state) {
  CoachInMatch match;
  const std::string text = compose(*match.coach).getEncoding();
  if (!AudioMsg(text.c_str()).isChkSumsValid()) return state.SkipWithError("refused");
  for (auto _ : state) {
    const AudioMsg heard(text.c_str());
    benchmark::DoNotOptimize(heard.isChkSumsValid());
  }
}

void decoding(benchmark::State& state) {
  CoachInMatch match;
  const AudioMsg message = compose(*match.coach);
  Worldmodel player = *match.coach->world;
  AudioMsg heard = message;
  if (!decode(heard, player)) return state.SkipWithError("not understood");
  for (auto _ : state) {
    heard.rewindRead();
    benchmark::DoNotOptimize(decode(heard, player));
  }
}

}  // namespace

void addMessages() {
  benchmark::RegisterBenchmark("message/compose", composing);
  benchmark::RegisterBenchmark("message/check", checking);
  benchmark::RegisterBenchmark("message/decode", decoding);
}

}  // namespace vok::bench
