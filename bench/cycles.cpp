// Whole cycles, from the text of a view to the end of act, and the message that some of them say.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "Config.h"
#include "bench.h"
#include "constants.h"

namespace vok::bench {
namespace {

/// A function of its own, so that a profiler can count inside it alone.
[[gnu::noinline]] void measuredCycle(CoachInMatch& match, const std::string& text) {
  match.feed(text);
}

/// Makes a message due in this cycle, as the beginning of a set play does.
void orderMessage(VokCoach& coach) {
  coach.sayMessageNow = true;
  coach.numMsgsLeft = 2;
}

/// The parse alone, of the same views.
void parseViews(benchmark::State& state) {
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 7);
  Views views;
  for (auto _ : state) {
    const std::string& text = views.next();
    SensorData data;
    benchmark::DoNotOptimize(parser.parseServerString(text.c_str(), data));
    benchmark::DoNotOptimize(data);
  }
}

/// Play-on, with so many types announced, and so many cycles played before.
void playOn(benchmark::State& state, int types, int played) {
  CoachInMatch match(types);
  for (int i = 0; i < played; ++i) match.feed(match.views.next());
  for (auto _ : state) measuredCycle(match, match.views.next());
  const Worldmodel& world = *match.coach->world;
  if (world.time != match.views.time()) return state.SkipWithError("cycles are missing");
  if (world.playerType.size() != static_cast<std::size_t>(types) ||
      world.playerType.back().state != types - 1) {
    state.SkipWithError("types are missing");
  }
}

/// Play-on with the opponents' types inferred from the decay of their speed: when all that run are
/// known, or as if none ever were.
void typesFromDecay(benchmark::State& state, bool known) {
  setEntry("tac_typesFromDecay", "1");
  CoachInMatch match;
  setEntry("tac_typesFromDecay", "0");
  auto& verdicts = match.coach->tactical->playerType;
  for (int i = 0; i < 600; ++i) match.feed(match.views.next());
  if (std::count(verdicts.begin(), verdicts.end(), -1) > 1) {
    return state.SkipWithError("types are missing");
  }
  for (auto _ : state) {
    if (!known) verdicts.fill(-1);
    measuredCycle(match, match.views.next());
  }
}

void freeKick(benchmark::State& state) {
  CoachInMatch match;
  match.call("free_kick_l");
  for (auto _ : state) {
    orderMessage(*match.coach);
    measuredCycle(match, match.views.next());
    if (match.coach->lastAumsgTime != match.views.time()) {
      return state.SkipWithError("nothing said");
    }
    match.link.dropCommands();
  }
}

/// What series of matches run on: the view, "(think)" and the answer "(done)".
void synchronous(benchmark::State& state) {
  CoachInMatch match;
  SYNCH_MODE = true;
  for (auto _ : state) {
    match.feed(match.views.next());
    match.feed("(think)");
    match.link.dropCommands();
  }
  if (match.coach->world->time != match.views.time()) state.SkipWithError("cycles are missing");
}

/// As the coach puts its messages together, stamped.
AudioMsg compose(VokCoach& coach) {
  AudioMsg message(0, static_cast<unsigned>(coach.world->time), true);
  coach.newsForPlayers().write(message);
  coach.comm->audiomgr->SpeakTo(message);
  return message;
}

bool decode(AudioMsg& message, Worldmodel& world) {
  return CoachMessage::read(message) && world.feedbackAudio(message);
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

constexpr int FOUR_MATCHES = 24000;

}  // namespace

bool runCycles(std::string_view situation, int cycles) {
  const bool interrupted = situation == "free_kick";
  if (!interrupted && situation != "play_on") return false;
  CoachInMatch match;
  if (interrupted) match.call("free_kick_l");
  for (int i = 0; i < cycles; ++i) {
    if (interrupted) orderMessage(*match.coach);
    measuredCycle(match, match.views.next());
  }
  return true;
}

void addCycles() {
  benchmark::RegisterBenchmark("parse", parseViews);
  benchmark::RegisterBenchmark("cycle/free_kick", freeKick);
  benchmark::RegisterBenchmark("cycle/synchronous", synchronous);
  for (const int types : {1, 7, 18, 100}) {
    const std::string name = "cycle/types_" + std::to_string(types);
    benchmark::RegisterBenchmark(name.c_str(), playOn, types, 0);
  }
  benchmark::RegisterBenchmark("cycle/decay_known", typesFromDecay, true);
  benchmark::RegisterBenchmark("cycle/decay_unknown", typesFromDecay, false);
  benchmark::RegisterBenchmark("cycle/first", playOn, 18, 0)->Iterations(2000);
  benchmark::RegisterBenchmark("cycle/late", playOn, 18, FOUR_MATCHES)->Iterations(2000);
  benchmark::RegisterBenchmark("message/compose", composing);
  benchmark::RegisterBenchmark("message/check", checking);
  benchmark::RegisterBenchmark("message/decode", decoding);
}

}  // namespace vok::bench
