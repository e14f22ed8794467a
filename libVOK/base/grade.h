// The quality scale that all evaluators share.
#pragma once

namespace vok {

/// Steps of the scale, best first.
enum GradeConstant {
  ABSOLUTE = 0,
  PERFECT = 1,
  GOOD = 2,
  AVERAGE = 3,
  POOR = 4,
  BAD = 5,
  IMPOSSIBLE = 6
};

/// A step of the scale, or undefined (-1). Smaller is better.
struct Grade {
  int value = -1;

  Grade() = default;
  Grade(GradeConstant constant) : value(constant) {}

  bool isDefined() const { return value != -1; }
  bool is(GradeConstant constant) const { return value == constant; }
  void set(GradeConstant constant) { value = constant; }

  /// One step better, at most `ABSOLUTE`; an undefined grade stays so.
  void upgrade() {
    if (value > ABSOLUTE) --value;
  }
  /// One step worse, at most `IMPOSSIBLE`; an undefined grade stays so.
  void downgrade() {
    if (isDefined() && value < IMPOSSIBLE) ++value;
  }

  bool operator==(const Grade&) const = default;
};

}  // namespace vok
