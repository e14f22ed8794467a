#include "gaussian.h"

#include <numbers>

namespace vok {

namespace {

/// Standard deviations beyond which a bound cuts nothing off that would matter.
constexpr double FAR = 4;
/// Bounds that leave less than this of the probability contradict what is known.
constexpr double CONTRADICTION = 1e-5;

double density(double x) {
  return std::exp(-0.5 * x * x) / std::sqrt(2 * std::numbers::pi);
}

double below(double x) {
  return 0.5 * std::erfc(-x / std::numbers::sqrt2);
}

}  // namespace

Truncated truncatedNormal(double low, double high) {
  if (low < -FAR && high > FAR) return {};
  const double kept = below(high) - below(low);
  if (!(kept > CONTRADICTION)) return {0, 1, false};
  // A bound at infinity has no density; its product would be no number.
  const double atLow = density(low);
  const double atHigh = density(high);
  const double mean = (atLow - atHigh) / kept;
  const double edges = (atLow > 0 ? low * atLow : 0) - (atHigh > 0 ? high * atHigh : 0);
  const double variance = 1 + edges / kept - mean * mean;
  return {mean, variance > 1e-4 ? variance : 1e-4, true};
}

}  // namespace vok
