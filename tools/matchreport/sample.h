// Means and how sure they are.
#pragma once

#include <cstddef>

namespace vok::matchreport {

/// A mean, and half the width of the interval that holds the true one in 95 of 100 cases, if single
/// values scatter as a normal distribution does (Student's t). Both may be absent.
struct Estimate {
  double mean;
  double halfWidth;
};

/// Values of one number in several matches.
class Sample {
 public:
  /// An absent value does not count.
  void add(double value);

  std::size_t size() const { return size_; }
  Estimate estimate() const;
  /// How much the mean of `after` is above that of `before`; the two may scatter differently and
  /// differ in size (Welch's interval).
  friend Estimate difference(const Sample& before, const Sample& after);

 private:
  double variance() const;  ///< of single values; with two or more

  // Welford's sums, which lose no digits however large the values are.
  std::size_t size_ = 0;
  double mean_ = 0;
  double squares_ = 0;
};

Estimate difference(const Sample& before, const Sample& after);

}  // namespace vok::matchreport
