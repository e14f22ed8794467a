// What is known of a few numbers at once: a mean and a covariance.
//
// The server rounds all that a player senses, so that a sense tells an interval: within it every
// value is equally likely, beyond it none is possible. `confine` takes such an interval over with
// the mean and covariance of the Gaussian cut off at both ends (assumed-density filtering). Unlike
// the update of a Kalman filter, which takes the rounding for noise of its own in every view, this
// does not gain confidence from the same rounding seen twice, and it gains much from an interval
// that the estimate lies at the edge of.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace vok {

/// How a standard normal variable changes when it is known to lie between two bounds.
struct Truncated {
  double mean = 0;       ///< was 0
  double variance = 1;   ///< was 1
  bool possible = true;  ///< the bounds were no contradiction
};
Truncated truncatedNormal(double low, double high);

template <std::size_t N>
struct Gaussian {
  using Vector = std::array<double, N>;

  Vector mean{};
  std::array<Vector, N> cov{};

  /// Forgets all: independent numbers of these standard deviations.
  void spread(const Vector& deviations) {
    cov = {};
    for (std::size_t i = 0; i < N; ++i) cov[i][i] = deviations[i] * deviations[i];
  }

  /// The variance of the sum of `weights[i] * x[i]`.
  double varianceAlong(const Vector& weights) const {
    double variance = 0;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j < N; ++j) variance += weights[i] * cov[i][j] * weights[j];
    }
    return variance;
  }

  /// Takes over that the sum of `weights[i] * (x[i] - mean[i])` lies between `low` and `high`, up
  /// to an additional Gaussian error of that variance. False, and nothing is changed, when that
  /// contradicts what is known.
  bool confine(const Vector& weights, double low, double high, double extraVariance = 0) {
    Vector along{};
    double own = 0;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j < N; ++j) along[i] += cov[i][j] * weights[j];
      own += weights[i] * along[i];
    }
    const double variance = own + extraVariance;
    if (!(variance > 0)) return true;
    const double deviation = std::sqrt(variance);
    const Truncated cut = truncatedNormal(low / deviation, high / deviation);
    if (!cut.possible) return false;
    shift(along, cut.mean / deviation, (1 - cut.variance) / variance);
    return true;
  }

  /// Takes over that the sum of `weights[i] * (x[i] - mean[i])` is `value` up to a Gaussian error
  /// of that variance.
  void observe(const Vector& weights, double value, double variance) {
    Vector along{};
    double total = variance;
    for (std::size_t i = 0; i < N; ++i) {
      for (std::size_t j = 0; j < N; ++j) along[i] += cov[i][j] * weights[j];
      total += weights[i] * along[i];
    }
    if (!(total > 0)) return;
    shift(along, value / total, 1 / total);
  }

 private:
  void shift(const Vector& along, double step, double shrink) {
    for (std::size_t i = 0; i < N; ++i) {
      mean[i] += along[i] * step;
      for (std::size_t j = 0; j < N; ++j) cov[i][j] -= along[i] * along[j] * shrink;
    }
    dropNegative();
  }

  /// Rounding may take a variance below 0: such a number is known exactly and tells nothing more of
  /// the others.
  void dropNegative() {
    for (std::size_t i = 0; i < N; ++i) {
      if (cov[i][i] >= 0) continue;
      for (std::size_t j = 0; j < N; ++j) cov[i][j] = cov[j][i] = 0;
    }
  }
};

}  // namespace vok
