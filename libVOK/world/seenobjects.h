// What views tell a player of the ball and of other players, put together over the cycles.
#pragma once

#include "gaussian.h"
#include "sensordata.h"
#include "worldobjects.h"

namespace vok {

/// Where and how fast a moving object is: x, y (metres), vx, vy (metres per cycle). The mean is
/// that of the world's object; only the covariance is kept between the cycles.
using Motion = Gaussian<4>;

/// From where objects are seen.
struct Observer {
  Vector2d pos;
  Vector2d v;
  double face = 0;          ///< radians
  double posVariance = 0;   ///< of each coordinate
  double faceVariance = 0;  ///< radians squared
};

/// How an object moves of itself.
struct Drift {
  double way = 1;         ///< way in a cycle, of its velocity before the cycle
  double keep = 1;        ///< velocity after a cycle, of that before
  double decay = 1;       ///< how much of an unforeseen way is left as velocity
  double unforeseen = 0;  ///< standard deviation of the way in a cycle, metres
  double aside = 0;       ///< the same across `direction`
  double direction = 0;   ///< radians
};

/// Nothing is known of a motion any more, but that the object is somewhere on the field.
void forgetMotion(Motion& motion);
/// Makes the covariance that of a cycle later.
void drift(Motion& motion, const Drift& by);
/// Takes over what a view tells of an object; `speedDeviation` is what its speed may be where
/// nothing is known of it, metres per cycle.
void seeObject(WMovedObject& object, Motion& motion, const SensorObject& seen, const Observer& from,
               double speedDeviation);

/// Takes over that a player runs where its body points, radians: forwards within its top speed,
/// hardly backwards, and not aside when it has not just turned, of which nothing is known of a new
/// one.
void runAhead(WPlayer& player, Motion& motion, double body, bool isNew);

/// The middle of where an object is seen, and the half length of that stretch; metres.
struct Stretch {
  double middle = 0;
  double half = 0;
};
Stretch stretchOf(const SensorObject& seen);

}  // namespace vok
