// Where a player stands and where its body points, from the landmarks that it sees.
#pragma once

#include <array>
#include <span>

#include "coordinates.h"
#include "gaussian.h"
#include "sensordata.h"

namespace vok {

/// A goal, flag or line as it is seen.
struct SeenLandmark {
  Vector2d pos;     ///< where it stands, of a line its middle; field frame
  double dir = 0;   ///< radians from the face direction, rounded to whole degrees
  double low = 0;   ///< metres: the distance lies between these two; both `NO_DISTANCE` when the
  double high = 0;  ///< view did not tell it
  /// Of a line the view tells where the face direction crosses it: the distances are those of that
  /// place, and `dir` is the face direction from the one straight at the line.
  bool isLine = false;
};

/// The landmarks of one view.
class SeenLandmarks {
 public:
  /// Of a client on that side: on the right one the field is turned by 180 degrees.
  SeenLandmarks(const SensorData& view, playing_side side);
  std::span<const SeenLandmark> all() const { return {marks_.data(), count_}; }

 private:
  void add(const SensorObject& seen, double x, double y);
  void addLine(const SensorLine& seen);

  static constexpr std::size_t MOST =
      std::size_t{NUM_FLAGS} + std::size_t{NUM_GOALS} + std::size_t{NUM_LINES};
  std::array<SeenLandmark, MOST> marks_;
  std::size_t count_ = 0;
  double sign_;
};

/// The place of an observer with its uncertainty: x and y in metres, the body direction in radians.
class Localisation {
 public:
  /// False until a view has told the place.
  bool isKnown() const { return known_; }
  Vector2d pos() const { return {state_.mean[0], state_.mean[1]}; }
  double body() const { return state_.mean[2]; }
  /// Standard deviation of the place, metres: the root of the sum of both variances.
  double error() const;
  double bodyVariance() const { return state_.cov[2][2]; }

  /// Takes the place over as the prediction has it, with the uncertainty that it had.
  void set(Vector2d pos, double body);
  /// The place may be that much farther away, metres, and the body turned, radians (standard
  /// deviations).
  void blur(double metres, double radians);
  /// The place has changed by `way` metres (field frame), which was sensed from the body: when this
  /// is corrected later, the way turns with it. `along` and `across` are the standard deviations.
  void walk(Vector2d way, double along, double across);
  /// Takes the landmarks of a view over. `neck` is the angle from body to face, radians. False when
  /// they do not tell the place.
  bool look(std::span<const SeenLandmark> marks, double neck);

  /// Calls `visit(state, known)` with all that a localisation holds, for the world's stream form.
  template <typename Self, typename Visit>
  static void reveal(Self& self, Visit visit) {
    visit(self.state_, self.known_);
  }

 private:
  void boundError();
  bool refine(std::span<const SeenLandmark> marks, double neck, int tolerated);
  bool agrees(std::span<const SeenLandmark> marks, double neck) const;
  void approach(std::span<const SeenLandmark> marks, double neck);
  bool fit(std::span<const SeenLandmark> marks, double neck);

  Gaussian<3> state_;
  bool known_ = false;
};

}  // namespace vok
