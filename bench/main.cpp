// Runs the benchmarks and sets their figures against each other, in one table.
//
//   vokbench [--benchmark_...] [TABLE.json]
//   vokbench --cycles play_on|free_kick N     for a profiler
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>

#include "bench.h"

namespace vok::bench {
namespace {

enum class Goal { NONE, AT_MOST, AT_LEAST };

/// One line of the table: a figure over another of the same run, or over a unit.
struct Row {
  const char* what;
  const char* over;             ///< a benchmark, or with ':' one of its counters
  const char* under = nullptr;  ///< the same
  Goal goal = Goal::NONE;
  double bound = 0;
  const char* unit = "x";
  double scale = 1;
};

constexpr auto AT_MOST = Goal::AT_MOST;
constexpr auto AT_LEAST = Goal::AT_LEAST;

constexpr auto ROWS = std::to_array<Row>({
    {"see_global, left / reference", "view/left", "view_reference/left", AT_MOST, 1.7},
    {"see_global, right / reference", "view/right", "view_reference/right", AT_MOST, 1.7},
    {"see_global, tackles / reference", "view/tackles", "view_reference/tackles", AT_MOST, 1.7},
    {"see_global, largest / reference", "view/largest", "view_reference/largest", AT_MOST, 1.7},
    {"plain way / see_global, left", "view_plain/left", "view/left", AT_LEAST, 10},
    {"plain way / see_global, right", "view_plain/right", "view/right", AT_LEAST, 10},
    {"plain way / see_global, tackles", "view_plain/tackles", "view/tackles", AT_LEAST, 10},
    {"plain way / see_global, largest", "view_plain/largest", "view/largest", AT_LEAST, 10},
    {"empty record / reference", "record", "view_reference/left"},
    {"plain way / server_param", "server_param_plain", "server_param", AT_LEAST, 100},
    {"cycle, play-on / parse", "cycle/types_18", "parse", AT_MOST, 3},
    {"cycle, free kick, message / parse", "cycle/free_kick", "parse", AT_MOST, 3},
    {"cycle, synchronous, (done) / parse", "cycle/synchronous", "parse"},
    {"cycle, play-on", "cycle/types_18", nullptr, Goal::NONE, 0, "us", 1e-6},
    {"player: body sense, view / parse", "player/cycle", "player/parse", AT_MOST, 5},
    {"player: body sense and view", "player/cycle", nullptr, Goal::NONE, 0, "us", 1e-6},
    {"composing a message / parse", "message/compose", "parse"},
    {"checking a message / parse", "message/check", "parse"},
    {"decoding a message / parse", "message/decode", "parse"},
    {"think to done, median / echo", "think_done:coach_median", "think_done:echo_median", AT_MOST,
     1.3},
    {"think to done, 99th percentile / echo", "think_done:coach_p99", "think_done:echo_p99",
     AT_MOST, 2},
    {"think to done, median", "think_done:coach_median", nullptr, Goal::NONE, 0, "us", 1e-6},
    {"think to done, 99th percentile", "think_done:coach_p99", nullptr, Goal::NONE, 0, "us", 1e-6},
    {"echo, 99th percentile", "think_done:echo_p99", nullptr, Goal::NONE, 0, "us", 1e-6},
    {"cycle with 1 type / with 18", "cycle/types_1", "cycle/types_18"},
    {"cycle with 7 types / with 18", "cycle/types_7", "cycle/types_18"},
    {"cycle with 100 types / with 18", "cycle/types_100", "cycle/types_18"},
    {"cycle, types from decay / without", "cycle/decay_known", "cycle/types_18", AT_MOST, 1.3},
    {"the same while no type is known", "cycle/decay_unknown", "cycle/types_18"},
    // It must not grow; the rest is noise.
    {"cycle after 24000 cycles / after none", "cycle/late", "cycle/first", AT_MOST, 1.1},
    {"start-up to the first datagram", "start_up/coach", nullptr, AT_MOST, 5, "ms", 1e-3},
    {"start-up / echo's", "start_up/coach", "start_up/echo"},
    {"resident memory, at most", "think_done:memory", nullptr, AT_MOST, 6, "MB", 1e6},
});

/// Keeps every repetition's figure, seconds or a counter's value, by name.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const std::string& name = run.run_name.function_name;
      if (run.error_occurred) std::cerr << name << ": " << run.error_message << "\n";
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      const bool isManual = !run.run_name.time_type.empty();
      const double time = isManual ? run.real_accumulated_time : run.cpu_accumulated_time;
      figures[name].push_back(time / static_cast<double>(run.iterations));
      for (const auto& [key, value] : run.counters) {
        std::string figure = name;
        figure.append(":").append(key);
        figures[figure].push_back(value);
      }
    }
  }

  std::map<std::string, std::vector<double>> figures;
};

struct Measured {
  double median = 0;
  double low = 0;   ///< a quarter of the repetitions lies below
  double high = 0;  ///< and a quarter above
};

/// The figures of a row, repetition by repetition. None when the benchmark has not run.
std::vector<double> figuresOf(const Row& row, const Collector& collected) {
  const auto over = collected.figures.find(row.over);
  if (over == collected.figures.end()) return {};
  std::vector<double> values = over->second;
  if (row.under != nullptr) {
    const auto under = collected.figures.find(row.under);
    if (under == collected.figures.end()) return {};
    values.resize(std::min(values.size(), under->second.size()));
    for (std::size_t i = 0; i < values.size(); ++i) values[i] /= under->second[i];
  }
  for (double& value : values) value /= row.scale;
  return values;
}

Measured summary(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t n = values.size();
  return {values[n / 2], values[n / 4], values[n - 1 - n / 4]};
}

std::string goalText(const Row& row) {
  if (row.goal == Goal::NONE) return "";
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%s %g %s",
                row.goal == Goal::AT_MOST ? "<=" : ">=", row.bound, row.unit);
  return text.data();
}

const char* verdict(const Row& row, double value) {
  if (row.goal == Goal::NONE) return "";
  return (row.goal == Goal::AT_MOST ? value <= row.bound : value >= row.bound) ? "kept" : "MISSED";
}

/// The number of rows without a figure.
int printTable(const Collector& collected, const char* jsonPath) {
  std::ofstream json;
  if (jsonPath != nullptr) json.open(jsonPath);
  const char* separator = "[";
  int missing = 0;
  std::size_t repetitions = 0;
  std::printf("| %-38s | %10s | %17s | %8s | %6s |\n", "row", "measured", "middle half", "goal",
              "");
  std::printf("|%s|%s:|%s:|%s:|%s|\n", std::string(40, '-').c_str(), std::string(11, '-').c_str(),
              std::string(18, '-').c_str(), std::string(9, '-').c_str(),
              std::string(8, '-').c_str());
  for (const Row& row : ROWS) {
    const std::vector<double> values = figuresOf(row, collected);
    if (values.empty()) {
      ++missing;
      continue;
    }
    repetitions = std::max(repetitions, values.size());
    const Measured m = summary(values);
    std::array<char, 40> spread{};
    std::snprintf(spread.data(), spread.size(), "%.2f .. %.2f", m.low, m.high);
    std::printf("| %-38s | %7.2f %2s | %17s | %8s | %6s |\n", row.what, m.median, row.unit,
                spread.data(), goalText(row).c_str(), verdict(row, m.median));
    json << separator << "\n{\"row\": \"" << row.what << "\", \"median\": " << m.median
         << ", \"low\": " << m.low << ", \"high\": " << m.high << ", \"unit\": \"" << row.unit
         << "\", \"goal\": \"" << goalText(row) << "\", \"verdict\": \"" << verdict(row, m.median)
         << "\"}";
    separator = ",";
  }
  json << "\n]\n";
  if (const auto reference = collected.figures.find("view_reference/left");
      reference != collected.figures.end()) {
    const auto [least, most] =
        std::minmax_element(reference->second.begin(), reference->second.end());
    std::printf(
        "\n%zu repetitions; between them the same reference took %.2f to %.2f microseconds.\n",
        repetitions, *least * 1e6, *most * 1e6);
  }
  return missing;
}

}  // namespace
}  // namespace vok::bench

int main(int argc, char** argv) {
  using namespace vok::bench;
  if (argc == 4 && std::string_view(argv[1]) == "--cycles") {
    return runCycles(argv[2], std::atoi(argv[3])) ? 0 : 1;
  }
  benchmark::Initialize(&argc, argv);
  addParsing();
  addCycles();
  addProcesses();
  addSeeing();
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  const int missing = printTable(collector, argc > 1 ? argv[1] : nullptr);
  if (missing != 0) std::cerr << missing << " rows have no figure\n";
  return missing == 0 ? 0 : 1;
}
