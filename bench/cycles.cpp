// Whole cycles, from the text of a view to the end of act.
#include <benchmark/benchmark.h>

#include "bench.h"
#include "constants.h"

namespace vok::bench {
namespace {

// The server's buffer holds more; full, it would make sending cheaper than it is.
constexpr int MESSAGES_UNREAD = 64;

/// A function of its own, so that a profiler can count inside it alone.
[[gnu::noinline]] void measuredCycle(CoachInMatch& match, const std::string& text) {
  match.feed(text);
}

/// Makes a message due in this cycle, as the beginning of a standard situation does.
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

void freeKick(benchmark::State& state) {
  CoachInMatch match;
  match.call("free_kick_l");
  int unread = 0;
  for (auto _ : state) {
    orderMessage(*match.coach);
    measuredCycle(match, match.views.next());
    if (match.coach->numMsgsLeft != 1) return state.SkipWithError("nothing said");
    if (++unread < MESSAGES_UNREAD) continue;
    unread = 0;
    state.PauseTiming();
    match.server.drop();
    state.ResumeTiming();
  }
}

/// What series of matches run on: the view, "(think)" and the answer "(done)".
void synchronous(benchmark::State& state) {
  CoachInMatch match;
  SYNCH_MODE = true;
  match.server.drop();
  int unread = 0;
  for (auto _ : state) {
    match.feed(match.views.next());
    match.feed("(think)");
    if (++unread < MESSAGES_UNREAD) continue;
    unread = 0;
    state.PauseTiming();
    match.server.drop();
    state.ResumeTiming();
  }
  if (match.coach->world->time != match.views.time()) state.SkipWithError("cycles are missing");
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
  benchmark::RegisterBenchmark("cycle/first", playOn, 18, 0)->Iterations(2000);
  benchmark::RegisterBenchmark("cycle/late", playOn, 18, FOUR_MATCHES)->Iterations(2000);
}

}  // namespace vok::bench
