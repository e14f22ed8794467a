#include "sidenumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <sstream>

#include "reporttables.h"

namespace vok::matchreport {
namespace {

using M = analysis::MatchAnalysis;
using P = analysis::Period;
using S = playing_side;

constexpr double PERCENT = 100;
constexpr double KILO = 1e-3;

const std::array<SideNumber, SIDE_NUMBERS> NUMBERS = {{
    {"Goals", 1, 0, "", [](const M& m, P p, S s) { return 1.0 * goalsIn(m, p, s); }},
    {"Possession", PERCENT, 1, " %", [](const M& m, P p, S s) { return m.possession.share(p, s); }},
    {"Shots", 1, 0, "", [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).shots.total; }},
    {"  on target", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).shots.onTarget; }},
    {"Passes tried", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).passes.tried(); }},
    {"  completed", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).passes.completed; }},
    {"  intercepted", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).passes.intercepted; }},
    {"Touches", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).actions.touches; }},
    {"Dribbles", 1, 0, "", [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).dribbles; }},
    {"Recoveries", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).recoveries; }},
    {"Tackles won", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * sideCounts(m, p, s).actions.tacklesWon; }},
    {"Penalty-area entries", 1, 0, "",
     [](const M& m, P p, S s) { return 1.0 * m.entries.of(p, s); }},
    {"Distance (km)", KILO, 1, "", [](const M& m, P p, S s) { return m.distances.of(p, s); }},
}};

}  // namespace

const SideNumber& sideNumber(std::size_t index) {
  return NUMBERS[index];
}

std::string fixed(double value, int decimals) {
  if (!std::isfinite(value)) return "-";
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << value;
  return text.str();
}

std::string SideNumber::shown(double value) const {
  return std::isfinite(value) ? fixed(value * scale, decimals) + unit : "-";
}

std::string SideNumber::mean(double value) const {
  return std::isfinite(value) ? fixed(value * scale, std::max(1, decimals)) + unit : "-";
}

std::string SideNumber::shown(const Estimate& estimate) const {
  if (!std::isfinite(estimate.mean)) return "-";
  return fixed(estimate.mean * scale, std::max(1, decimals)) + " +- " + mean(estimate.halfWidth);
}

}  // namespace vok::matchreport
