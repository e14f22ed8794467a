#include "sample.h"

#include <array>
#include <cmath>

#include "frame.h"

namespace vok::matchreport {
namespace {

using analysis::ABSENT;

/// The quantile of Student's t that 97.5 % lie below, for one or more degrees of freedom, which
/// need not be whole. Above the table three terms of the series in their reciprocal are within
/// 0.003.
double studentT(double freedom) {
  static constexpr std::array TABLE = {12.7062, 4.3027, 3.1824, 2.7764, 2.5706,
                                       2.4469,  2.3646, 2.3060, 2.2622, 2.2281};
  constexpr double NORMAL = 1.959964;
  constexpr double FIRST = 2.372271;
  constexpr double SECOND = 2.822466;
  if (freedom >= TABLE.size()) return NORMAL + FIRST / freedom + SECOND / (freedom * freedom);
  const auto below = static_cast<std::size_t>(freedom);
  const double part = freedom - std::floor(freedom);
  return TABLE[below - 1] + part * (TABLE[below] - TABLE[below - 1]);
}

}  // namespace

void Sample::add(double value) {
  if (!std::isfinite(value)) return;
  ++size_;
  const double away = value - mean_;
  mean_ += away / static_cast<double>(size_);
  squares_ += away * (value - mean_);
}

double Sample::variance() const {
  return squares_ / static_cast<double>(size_ - 1);
}

Estimate Sample::estimate() const {
  if (size_ == 0) return {ABSENT, ABSENT};
  if (size_ == 1) return {mean_, ABSENT};
  const auto n = static_cast<double>(size_);
  return {mean_, studentT(n - 1) * std::sqrt(variance() / n)};
}

Estimate difference(const Sample& before, const Sample& after) {
  if (before.size_ == 0 || after.size_ == 0) return {ABSENT, ABSENT};
  const double mean = after.mean_ - before.mean_;
  if (before.size_ == 1 || after.size_ == 1) return {mean, ABSENT};
  const auto share = [](const Sample& s) { return s.variance() / static_cast<double>(s.size_); };
  const double a = share(before);
  const double b = share(after);
  if (!(a + b > 0)) return {mean, 0};
  const double freedom = (a + b) * (a + b) /
                         (a * a / static_cast<double>(before.size_ - 1) +
                          b * b / static_cast<double>(after.size_ - 1));
  return {mean, studentT(freedom) * std::sqrt(a + b)};
}

}  // namespace vok::matchreport
