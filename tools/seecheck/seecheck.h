// Feeds a recorded player's senses to a world and holds it against the truth.
#pragma once

#include <string>

#include "figures.h"
#include "playerrecording.h"

namespace vok::seecheck {

/// All errors in metres, degrees and metres per cycle. What it is compared with is the fit of each
/// single view, or for what is out of view somebody who lets it stand still.
struct Findings {
  int views = 0;
  int standing = 0;  ///< left out: the truth has not exactly one row of their cycle
  int lowViews = 0;
  Errors position;
  Errors face;
  Errors velocity;
  Errors ball;
  Errors players;
  Errors ballVelocity;
  Errors playerVelocity;
  Errors ballUnseen;
  Errors playersUnseen;
  int unnumbered = 0;       ///< of a known team within 30 m
  int unnumberedGiven = 0;  ///< those of them that got a number
  int given = 0;            ///< numbers given to players without one
  int givenWrong = 0;
  // Views of low quality, which tell no distances.
  Errors lowPosition;
  Errors lowFace;
  Errors lowBall;
};

/// Returns false, with the reason in `error`, when the recording lacks its check-in.
bool check(const PlayerRecording& recording, const Truth& truth, Findings& findings,
           std::string& error);

}  // namespace vok::seecheck
