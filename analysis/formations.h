// Formations: where a side's players stand on average, with and without the ball, and the name of
// the lines that they form.
#pragma once

#include <string>
#include <vector>

#include "touches.h"

namespace vok::analysis {

/// Which of the two situations of a side a cycle belongs to.
enum class Ball { WITH, WITHOUT };

inline constexpr std::array BOTH_BALLS = {Ball::WITH, Ball::WITHOUT};

template <typename T>
struct ByBall {
  std::array<T, 2> of{};

  T& operator[](Ball ball) { return of[static_cast<std::size_t>(ball)]; }
  const T& operator[](Ball ball) const { return of[static_cast<std::size_t>(ball)]; }
};

/// A mean place in the side's own frame, metres.
struct Place {
  int shirt = 0;
  Vector2d pos;
};

struct Formation {
  std::string name = "unclear";  ///< counted from the back: "4-3-3"
  double separation = ABSENT;    ///< the smallest step in x between two lines, metres
  std::vector<Place> places;     ///< by shirt number
};

class Formations {
 public:
  /// Of a cycle of play; `holder` is who has the ball, `SIDE_UNKNOWN` for nobody.
  void cycle(const Step& step, playing_side holder);

  /// Without the goalie, whose shirt number is known at the match's end only.
  Formation of(Period period, playing_side side, Ball ball, int goalieShirt) const;

 private:
  struct Sum {
    int cycles = 0;
    Vector2d pos;
  };
  struct Table {
    int cycles = 0;
    std::array<Sum, LAST_SHIRT> players{};
  };

  ByPeriod<BySide<ByBall<Table>>> tables_;
};

/// Names the lines that places form. The places are cut into three lines, or into four where these
/// fit much better.
void nameLines(Formation& formation);

}  // namespace vok::analysis
