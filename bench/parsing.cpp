// From text to record: views and the server's parameters.
#include <benchmark/benchmark.h>

#include "bench.h"
#include "references.h"

namespace vok::bench {
namespace {

Parser parserFor(playing_side side) {
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 7);
  parser.setSide(side);
  return parser;
}

void parseView(benchmark::State& state, const std::string& text, playing_side side) {
  Parser parser = parserFor(side);
  SensorData plain;
  SensorData ours;
  if (!parser.parseServerString(text, ours) || !plainView(text.c_str(), "Alpha", side, plain)) {
    return state.SkipWithError("not parsed");
  }
  if (fieldsOf(ours) != fieldsOf(plain))
    return state.SkipWithError("the plain way reads otherwise");
  for (auto _ : state) {
    SensorData data;  // a fresh one for each text, as the connection has it
    benchmark::DoNotOptimize(parser.parseServerString(text, data));
    benchmark::DoNotOptimize(data);
  }
}

void parseViewPlainly(benchmark::State& state, const std::string& text, playing_side side) {
  for (auto _ : state) {
    SensorData data;
    benchmark::DoNotOptimize(plainView(text.c_str(), "Alpha", side, data));
    benchmark::DoNotOptimize(data);
  }
}

void referenceOfView(benchmark::State& state, const std::string& text) {
  const Reference reference(text);
  if (reference.numbers() < 130) return state.SkipWithError("numbers are missing");
  for (auto _ : state) benchmark::DoNotOptimize(reference.run());
}

void makeRecord(benchmark::State& state) {
  for (auto _ : state) {
    SensorData data;
    benchmark::DoNotOptimize(data);
  }
}

void parseParameters(benchmark::State& state) {
  const std::string text = recording().at(1);
  Parser parser = parserFor(SIDE_LEFT);
  parser.parseServerParam(text);  // the first one in a process also sorts the table
  for (auto _ : state) benchmark::DoNotOptimize(parser.parseServerParam(text));
}

void parseParametersPlainly(benchmark::State& state) {
  const std::string text = recording().at(1);
  int items = 0;
  for (auto _ : state) benchmark::DoNotOptimize(items = plainServerParam(text.c_str()));
  if (items != std::count(text.begin(), text.end(), ')') - 1) state.SkipWithError("not all read");
}

}  // namespace

void addParsing() {
  for (const auto& [name, text] : namedViews()) {
    const playing_side side = name == "right" ? SIDE_RIGHT : SIDE_LEFT;
    benchmark::RegisterBenchmark(("view/" + name).c_str(), parseView, text, side);
    benchmark::RegisterBenchmark(("view_plain/" + name).c_str(), parseViewPlainly, text, side);
    benchmark::RegisterBenchmark(("view_reference/" + name).c_str(), referenceOfView, text);
  }
  benchmark::RegisterBenchmark("record", makeRecord);
  benchmark::RegisterBenchmark("server_param", parseParameters);
  benchmark::RegisterBenchmark("server_param_plain", parseParametersPlainly);
}

}  // namespace vok::bench
