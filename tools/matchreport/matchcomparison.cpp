#include "matchcomparison.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <vector>

#include "agreement.h"
#include "printable.h"
#include "reporttables.h"
#include "sidenumbers.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

constexpr int TITLE = 38;
constexpr int COLUMN = 13;

class Comparison {
 public:
  Comparison(const Telling& a, const Telling& b, std::ostream& out)
      : a_(a.analysis), b_(b.analysis), out_(out) {}

  void write() {
    writeRow("", "first", "second", "difference");
    writeCount("Cycles", a_.cycles(Period::WHOLE), b_.cycles(Period::WHOLE));
    writeCount("Cycles of play", a_.possession.playCycles(Period::WHOLE),
               b_.possession.playCycles(Period::WHOLE));
    for (const playing_side side : BOTH_SIDES) writeSide(side);
    writeLargest();
    writeGoals();
    for (const playing_side side : BOTH_SIDES) writeShots(side);
    writeTouches();
  }

 private:
  void writeRow(const std::string& title, const std::string& a, const std::string& b,
                const std::string& difference) {
    out_ << std::left << std::setw(TITLE) << title << std::right << std::setw(COLUMN) << a
         << std::setw(COLUMN) << b << std::setw(COLUMN) << difference << '\n';
  }

  void writeCount(const std::string& title, int a, int b) {
    writeRow(title, std::to_string(a), std::to_string(b), std::to_string(b - a));
  }

  void writeSide(playing_side side) {
    const std::string& name = a_.lastScore().names[side];
    out_ << '\n' << printable(name.empty() ? "null" : name) << '\n';
    for (std::size_t i = 0; i < SIDE_NUMBERS; ++i) {
      const SideNumber& number = sideNumber(i);
      const double a = number.of(a_, Period::WHOLE, side);
      const double b = number.of(b_, Period::WHOLE, side);
      writeRow(number.title, number.shown(a), number.shown(b),
               fixed((b - a) * number.scale, number.decimals + 1));
    }
    for (const Ball ball : BOTH_BALLS) {
      const std::string a = formation(a_, side, ball).name;
      const std::string b = formation(b_, side, ball).name;
      writeRow(ball == Ball::WITH ? "Formation, ball" : "  without it", a, b,
               a == b ? "same" : "other");
    }
  }

  static Formation formation(const MatchAnalysis& match, playing_side side, Ball ball) {
    return match.formations.of(Period::WHOLE, side, ball, goalieShirt(match, side));
  }

  void writeLargest() {
    double way = 0;
    for (int i = 0; i < PLAYERS; ++i) {
      way = std::max(
          way, std::abs(a_.distances.of(Period::WHOLE, i) - b_.distances.of(Period::WHOLE, i)));
    }
    double place = 0;
    for (const playing_side side : BOTH_SIDES) {
      for (const Ball ball : BOTH_BALLS) place = std::max(place, largestStep(side, ball));
    }
    const Territory::Cells& a = a_.territory.ball(Period::WHOLE);
    const Territory::Cells& b = b_.territory.ball(Period::WHOLE);
    int cells = 0;
    for (std::size_t i = 0; i < a.size(); ++i) cells += a[i] == b[i] ? 0 : 1;
    out_ << "\nLargest difference of\n";
    writeRow("  a player's distance (m)", "", "", fixed(way, 4));
    writeRow("  a mean place in a formation (m)", "", "", fixed(place, 4));
    writeRow("Cells of the territory that differ", "", "", std::to_string(cells));
  }

  double largestStep(playing_side side, Ball ball) const {
    double largest = 0;
    for (const Place& a : formation(a_, side, ball).places) {
      for (const Place& b : formation(b_, side, ball).places) {
        if (a.shirt == b.shirt) largest = std::max(largest, distance(a.pos, b.pos));
      }
    }
    return largest;
  }

  static std::string shown(const Goal& goal) {
    return std::to_string(goal.cycle) + " " + std::string(sideLetter(goal.side)) + " " +
           (goal.scorer == NONE ? "-" : std::to_string(shirtOf(goal.scorer))) +
           (goal.own ? " (own goal)" : "");
  }
  static std::string shown(const Shot& shot) {
    return std::to_string(shot.cycle) + " " + std::string(sideLetter(shot.side())) + " " +
           std::to_string(shirtOf(shot.player)) + (shot.onTarget ? " on target" : "");
  }

  /// What only one of two lists has, in the order of their cycles.
  void writeLists(const std::string& title, const std::vector<std::string>& a,
                  const std::vector<std::string>& b) {
    writeCount(title, static_cast<int>(a.size()), static_cast<int>(b.size()));
    const auto writeMissing = [this](const char* who, const auto& here, const auto& there) {
      for (const std::string& one : here) {
        if (std::find(there.begin(), there.end(), one) == there.end()) {
          out_ << "  only the " << who << ": " << one << '\n';
        }
      }
    };
    writeMissing("first", a, b);
    writeMissing("second", b, a);
  }

  void writeGoals() {
    const auto list = [](const MatchAnalysis& match) {
      std::vector<std::string> all;
      for (const Goal& goal : match.goals.all()) all.push_back(shown(goal));
      return all;
    };
    out_ << '\n';
    writeLists("Goals (cycle, side, scorer)", list(a_), list(b_));
  }

  void writeShots(playing_side side) {
    const auto list = [side](const MatchAnalysis& match) {
      std::vector<std::string> all;
      for (const Shot& shot : match.shots.all()) {
        if (shot.side() == side) all.push_back(shown(shot));
      }
      return all;
    };
    writeLists("Shots of " + std::string(sideLetter(side)) + " (cycle, side, number)", list(a_),
               list(b_));
  }

  /// Against the source that counts kicks, if only one does.
  void writeTouches() {
    const bool swapped = a_.inferred() && !b_.inferred();
    const Agreement sum = swapped ? agreement(b_, a_) : agreement(a_, b_);
    const auto line = [&](const char* title, int count) {
      const double share = sum.touches == 0 ? ABSENT : 100.0 * count / sum.touches;
      out_ << std::left << std::setw(TITLE) << title << std::right << std::setw(COLUMN) << count
           << std::setw(COLUMN) << fixed(share, 2) << " %\n";
    };
    out_ << "\nSingle touches in play, those of the " << (swapped ? "first" : "second")
         << " held against the " << (swapped ? "second" : "first") << '\n';
    line("  touches", sum.touches);
    line("  the side is right", sum.sideRight);
    line("  the player is right", sum.playerRight);
    line("  invented", sum.invented);
  }

  const MatchAnalysis& a_;
  const MatchAnalysis& b_;
  std::ostream& out_;
};

void writeSource(const char* which, const Telling& telling, std::ostream& out) {
  const Score& score = telling.analysis.lastScore();
  out << which << printable(telling.source) << (telling.complete ? "" : " (not complete)")
      << (telling.analysis.inferred() ? ", touches inferred" : "") << "\n        "
      << printable(score.names[SIDE_LEFT]) << ' ' << score.goals[SIDE_LEFT] << " : "
      << score.goals[SIDE_RIGHT] << ' ' << printable(score.names[SIDE_RIGHT]) << '\n';
}

}  // namespace

void writeComparison(const Telling& a, const Telling& b, std::ostream& out) {
  writeSource("first   ", a, out);
  writeSource("second  ", b, out);
  out << '\n';
  Comparison(a, b, out).write();
}

}  // namespace vok::matchreport
