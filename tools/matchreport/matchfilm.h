// What the page of a match needs of its frames: the film, and values over time.
#pragma once

#include <vector>

#include "filmwriter.h"
#include "matchfile.h"

namespace vok::matchreport {

/// Means over some cycles; `ABSENT` where nothing was counted.
struct TimeSlice {
  int cycle = 0;                     ///< the first one
  analysis::BySide<int> possession;  ///< cycles of play with the ball
  analysis::BySide<analysis::Shape> shape;
  analysis::BySide<double> stamina{
      {analysis::ABSENT, analysis::ABSENT}};  ///< share of the full one
  analysis::BySide<double> leastStamina{{analysis::ABSENT, analysis::ABSENT}};
};

class MatchFilm {
 public:
  static constexpr int SLICE = 100;  ///< cycles

  /// Every frame of the match, behind its analysis.
  void frame(const analysis::Frame& frame, std::string_view playMode, const Match& soFar);
  void end() { endSlice(); }

  const FilmWriter& frames() const { return frames_; }
  const std::vector<TimeSlice>& slices() const { return slices_; }

  /// The mean place in play; not finite for a player who was never there.
  Vector2d meanPlace(int player) const;
  /// The ball's way from the frame before a cycle on, up to where it is touched again or leaves the
  /// pitch. Empty when the cycle is not known.
  std::vector<Vector2d> ballWay(int cycle) const;

 private:
  struct Mean {
    double sum = 0;
    int count = 0;
    void add(double value) {
      sum += value;
      ++count;
    }
    double value() const { return count == 0 ? analysis::ABSENT : sum / count; }
  };
  struct BallFrame {
    int cycle = 0;
    Vector2d pos;
  };
  struct Sum {
    int cycles = 0;
    Vector2d pos;
  };

  void countCycle(const analysis::Frame& frame, const Match& soFar);
  void countStamina(const analysis::Frame& frame, const Match& soFar);
  void endSlice();

  FilmWriter frames_;
  std::vector<TimeSlice> slices_;
  std::vector<BallFrame> ball_;
  analysis::ByPlayer<Sum> places_;
  // Of the last slice.
  analysis::Shapes shapes_;
  analysis::BySide<Mean> stamina_;
  analysis::BySide<int> goalies_;
};

}  // namespace vok::matchreport
