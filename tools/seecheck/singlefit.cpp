#include "singlefit.h"

#include <array>
#include <cmath>
#include <vector>

#include "constants.h"

namespace vok::seecheck {

namespace {

constexpr int ROUNDS = 12;
constexpr double UNIFORM = 0.288675;  ///< standard deviation of a rounding to steps of one

struct Mark {
  Vector2d pos;
  double dist;
  double dir;
};

std::vector<Mark> marksOf(const SensorData& view, playing_side side) {
  std::vector<Mark> marks;
  const double sign = side == SIDE_RIGHT ? -1 : 1;
  const auto add = [&](const SensorObject& seen, double x, double y) {
    if (seen.valid && seen.dist > 0) marks.push_back({{sign * x, sign * y}, seen.dist, seen.dir});
  };
  for (std::size_t i = 0; i < view.flag.size(); ++i) add(view.flag[i], flag_x[i], flag_y[i]);
  for (std::size_t i = 0; i < view.goal.size(); ++i) add(view.goal[i], goal_x[i], goal_y[i]);
  return marks;
}

/// Lays the seen landmarks onto the true ones: the start of the fit.
SingleFit laidOn(const std::vector<Mark>& marks) {
  Vector2d seen;
  Vector2d place;
  const auto seenAt = [](const Mark& mark) {
    Vector2d at;
    at.setRadAng(mark.dist, mark.dir);
    return at;
  };
  for (const Mark& mark : marks) {
    seen += seenAt(mark);
    place += mark.pos;
  }
  const auto n = static_cast<double>(marks.size());
  seen /= n;
  place /= n;
  double along = 0;
  double across = 0;
  for (const Mark& mark : marks) {
    along += (seenAt(mark) - seen) * (mark.pos - place);
    across += crossProduct(seenAt(mark) - seen, mark.pos - place);
  }
  SingleFit fit;
  fit.face = std::atan2(across, along);
  fit.pos = place - seen.turn(fit.face);
  return fit;
}

/// The normal equations of one round.
struct Equations {
  std::array<std::array<double, 3>, 3> matrix{};
  std::array<double, 3> right{};

  void add(const std::array<double, 3>& row, double residual, double deviation) {
    const double weight = 1 / (deviation * deviation);
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) matrix[i][j] += weight * row[i] * row[j];
      right[i] += weight * row[i] * residual;
    }
  }

  /// By Gaussian elimination; the matrix is positive.
  std::array<double, 3> solve() {
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t k = i + 1; k < 3; ++k) {
        const double factor = matrix[k][i] / matrix[i][i];
        for (std::size_t j = i; j < 3; ++j) matrix[k][j] -= factor * matrix[i][j];
        right[k] -= factor * right[i];
      }
    }
    std::array<double, 3> x{};
    for (std::size_t i = 3; i-- > 0;) {
      x[i] = right[i];
      for (std::size_t j = i + 1; j < 3; ++j) x[i] -= matrix[i][j] * x[j];
      x[i] /= matrix[i][i];
    }
    return x;
  }
};

}  // namespace

Vector2d SingleFit::place(const SensorObject& object) const {
  Vector2d way;
  way.setRadAng(object.dist, face + object.dir);
  return pos + way;
}

Vector2d SingleFit::velocity(const SensorObject& object, const Vector2d& own) const {
  Vector2d ahead;
  ahead.setRadAng(1, face + object.dir);
  return own + object.dist_change * ahead + (object.dist * object.dir_change) * ahead.perp();
}

std::optional<SingleFit> fitView(const SensorData& view, playing_side side) {
  const std::vector<Mark> marks = marksOf(view, side);
  if (marks.size() < 2) return {};
  SingleFit fit = laidOn(marks);
  for (int round = 0; round < ROUNDS; ++round) {
    Equations equations;
    for (const Mark& mark : marks) {
      const Vector2d way = mark.pos - fit.pos;
      const double dist = std::max(way.getLength(), 0.1);
      const double x = way.x / dist;
      const double y = way.y / dist;
      const double step = std::max(0.1, QUANTIZE_STEP_L * mark.dist);
      equations.add({-x, -y, 0}, mark.dist - dist, UNIFORM * step);
      equations.add({y / dist, -x / dist, -1},
                    Angle::mod2pi(mark.dir - (way.getAngle() - fit.face)), UNIFORM * toRadians(1));
    }
    const auto step = equations.solve();
    fit.pos += Vector2d(step[0], step[1]);
    fit.face = Angle::mod2pi(fit.face + step[2]);
  }
  return fit;
}

}  // namespace vok::seecheck
