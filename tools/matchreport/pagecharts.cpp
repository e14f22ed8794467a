#include "pagecharts.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace vok::matchreport {
namespace {

using namespace analysis;

// A chart's plot, in units of the picture.
constexpr double LEFT = 46;
constexpr double WIDTH = 560;
constexpr double TOP = 12;
constexpr double HEIGHT = 190;

/// The axes of a chart: cycles to the right, a value upwards.
class Chart {
 public:
  Chart(std::string& out, const std::string& title, const char* unit, int lastCycle, double low,
        double high, int steps = 4)
      : out_(out), last_(std::max(lastCycle, 1)), low_(low), high_(high) {
    beginPicture(out, title, "0 0 630 250");
    out += "<g class='chart'>";
    drawValues(unit, steps);
    drawCycles();
  }

  double x(double cycle) const { return LEFT + WIDTH * std::clamp(cycle / last_, 0.0, 1.0); }
  double y(double value) const {
    return TOP + HEIGHT * (1 - std::clamp((value - low_) / (high_ - low_), 0.0, 1.0));
  }

  /// A line through the middles of the slices; it is broken where a value is absent.
  void line(const char* look, const std::vector<TimeSlice>& slices,
            const std::function<double(const TimeSlice&)>& value) {
    std::string path;
    bool drawn = false;
    for (const TimeSlice& slice : slices) {
      const double v = value(slice);
      if (isAbsent(v)) {
        drawn = false;
        continue;
      }
      path +=
          (drawn ? "L" : "M") + shown(x(slice.cycle + MatchFilm::SLICE / 2.0)) + " " + shown(y(v));
      drawn = true;
    }
    out_ += "<path class='graph " + std::string(look) + "' d='" + path + "'/>";
  }

  void end(const std::string& legend) {
    out_ += "</g>";
    endPicture(out_, legend);
  }

 private:
  void drawValues(const char* unit, int steps) {
    for (int i = 0; i <= steps; ++i) {
      const double value = low_ + (high_ - low_) * i / steps;
      out_ += "<path class='axis' d='M" + shown(LEFT) + " " + shown(y(value)) + "h" + shown(WIDTH) +
              "'/><text class='to' x='" + shown(LEFT - 5) + "' y='" + shown(y(value) + 4) + "'>" +
              shown(value) + "</text>";
    }
    out_ += "<text x='14' y='" + shown(TOP + HEIGHT / 2) + "' transform='rotate(-90 14 " +
            shown(TOP + HEIGHT / 2) + ")'>" + unit + "</text>";
  }

  void drawCycles() {
    double step = 100;
    while (last_ / step > 6) step *= std::fmod(std::log10(step), 1) == 0 ? 5 : 2;
    for (double cycle = 0; cycle <= last_; cycle += step) {
      out_ += "<path class='axis' d='M" + shown(x(cycle)) + " " + shown(TOP + HEIGHT) +
              "v5'/><text x='" + shown(x(cycle)) + "' y='" + shown(TOP + HEIGHT + 18) + "'>" +
              shown(cycle) + "</text>";
    }
    out_ += "<text x='" + shown(LEFT + WIDTH / 2) + "' y='" + shown(TOP + HEIGHT + 35) +
            "'>cycles</text>";
  }

  std::string& out_;
  double last_;
  double low_;
  double high_;
};

std::string lineLegend(const char* look, const std::string& text) {
  return "<span><svg class='key chart' viewBox='0 0 34 10'><path class='graph " +
         std::string(look) + "' d='M0 5h34'/></svg> " + text + ".</span> ";
}

}  // namespace

void drawPossession(std::string& out, const Match& match, const MatchFilm& film) {
  constexpr int SLICES = 3;
  const MatchAnalysis& all = match.analysis;
  const std::vector<TimeSlice>& slices = film.slices();
  Chart chart(out, "Who has the ball, over time", "% of the cycles", all.lastCycle(), 0, 100);
  for (std::size_t i = 0; i < slices.size();) {
    const int block = slices[i].cycle / (SLICES * MatchFilm::SLICE);
    BySide<int> cycles;
    for (; i < slices.size() && slices[i].cycle / (SLICES * MatchFilm::SLICE) == block; ++i) {
      for (const playing_side side : BOTH_SIDES) cycles[side] += slices[i].possession[side];
    }
    const int both = cycles[SIDE_LEFT] + cycles[SIDE_RIGHT];
    if (both == 0) continue;
    const double from = chart.x(static_cast<double>(block) * SLICES * MatchFilm::SLICE);
    const double to = chart.x((block + 1.0) * SLICES * MatchFilm::SLICE);
    const double share = 100.0 * cycles[SIDE_LEFT] / both;
    const auto bar = [&](const char* look, double top, double bottom) {
      out += "<rect class='" + std::string(look) + "' x='" + shown(from + 0.5) + "' y='" +
             shown(top) + "' width='" + shown(std::max(to - from - 1, 0.5)) + "' height='" +
             shown(bottom - top) + "'/>";
    };
    bar("bar-r", chart.y(100), chart.y(share));
    bar("bar-l", chart.y(share), chart.y(0));
  }
  out += "<path class='graph dash' d='M" + shown(LEFT) + " " + shown(chart.y(50)) + "h" +
         shown(WIDTH) + "'/>";
  chart.end("From below " + teamWithSpot(all, SIDE_LEFT) + ", from above " +
            teamWithSpot(all, SIDE_RIGHT) +
            ": the share of the cycles in which the team touched the ball last, by 300 cycles. In "
            "the whole match " +
            percentage(all.possession.share(Period::WHOLE, SIDE_LEFT), 1) + " % and " +
            percentage(all.possession.share(Period::WHOLE, SIDE_RIGHT), 1) + " %.");
}

void drawStamina(std::string& out, const Match& match, const MatchFilm& film) {
  const MatchAnalysis& all = match.analysis;
  const std::vector<TimeSlice>& slices = film.slices();
  const auto isTold = [](const TimeSlice& slice) { return !isAbsent(slice.stamina[SIDE_LEFT]); };
  if (std::none_of(slices.begin(), slices.end(), isTold)) return;
  constexpr double PERCENT = 100;
  Chart chart(out, "Stamina of the field players, over time", "% of the full stamina",
              all.lastCycle(), 0, PERCENT);
  for (const playing_side side : BOTH_SIDES) {
    const bool isLeft = side == SIDE_LEFT;
    chart.line(isLeft ? "a" : "b", slices,
               [side](const TimeSlice& slice) { return PERCENT * slice.stamina[side]; });
    chart.line(isLeft ? "a dash" : "b dash", slices,
               [side](const TimeSlice& slice) { return PERCENT * slice.leastStamina[side]; });
  }
  const double low = PERCENT * all.rules().effortDecThr;
  out += "<path class='axis' stroke-dasharray='2 2' d='M" + shown(LEFT) + " " +
         shown(chart.y(low)) + "h" + shown(WIDTH) + "'/>";
  chart.end(lineLegend("a", "mean of " + teamName(all, SIDE_LEFT)) +
            lineLegend("a dash", "its most tired player") +
            lineLegend("b", "mean of " + teamName(all, SIDE_RIGHT)) +
            lineLegend("b dash", "its most tired player") + "Below " + shown(low) +
            " % the effort falls. Means and minima of 100 cycles of play.");
}

void drawShapes(std::string& out, const Match& match, const MatchFilm& film) {
  const MatchAnalysis& all = match.analysis;
  for (const playing_side side : BOTH_SIDES) {
    constexpr double LOWEST = -60;
    constexpr double HIGHEST = 90;
    constexpr int STEPS = 5;
    Chart chart(out, "Shape of the team over time: " + teamWithSpot(all, side), "metres",
                all.lastCycle(), LOWEST, HIGHEST, STEPS);
    const auto& slices = film.slices();
    chart.line("a", slices, [side](const TimeSlice& slice) { return slice.shape[side].width; });
    chart.line("dash", slices, [side](const TimeSlice& slice) { return slice.shape[side].length; });
    chart.line("dot", slices, [side](const TimeSlice& slice) { return slice.shape[side].x; });
    chart.line("b", slices, [side](const TimeSlice& slice) { return slice.shape[side].lastLine; });
    chart.end(lineLegend("a", "width") + lineLegend("dash", "length") +
              lineLegend("dot", "middle of the team") + lineLegend("b", "last line") +
              "The last two are places: the own goal is at -52.5, the other one at 52.5. Field "
              "players; the last line with the goalie. Means of 100 cycles of play.");
  }
}

}  // namespace vok::matchreport
