// Runs the inference of the opponents' types over a recorded match and compares it with the truth.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "pitch.h"
#include "recording.h"
#include "sensordata.h"

namespace vok::typecheck {

/// Which player had which type, and from which cycle on.
class Truth {
 public:
  /// Reads lines of time, side (l or r), shirt number and type. Returns false, with the reason in
  /// `error`, when a line has another form or there is none.
  bool read(std::istream& in, std::string& error);

  /// The type of a player at a time, -1 when nothing is known yet.
  int typeAt(playing_side side, int number, long time) const;

 private:
  struct Entry {
    long time;
    playing_side side;
    int number;
    int type;
  };

  std::vector<Entry> entries_;
};

/// How the inference about one opponent went.
struct Finding {
  int trueType = -1;  ///< at the end
  int verdict = -1;   ///< at the end
  // Counted from the opponent's last announced change to the verdict or the end:
  int playOn = 0;  ///< views in play-on
  int moved = 0;   ///< those in which it had moved by a fifth of a metre
  int wrongOnTheWay = 0;

  bool isRight() const { return trueType != -1 && verdict == trueType; }
  bool isWrong() const { return verdict != -1 && verdict != trueType; }
};

using Findings = Squad<Finding>;  ///< by shirt number

/// Finds what the coach of `team` on `side` infers. Returns false, with the reason in `error`, when
/// the recording was not made by that coach.
bool check(const tools::Recording& capture, const Truth& truth, const std::string& team,
           playing_side side, bool fromDecay, Findings& findings, std::string& error);

}  // namespace vok::typecheck
