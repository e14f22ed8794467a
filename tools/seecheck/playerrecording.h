// What a player received and sent, and where everybody truly was.
#pragma once

#include <istream>
#include <map>
#include <string>
#include <vector>

#include "coordinates.h"
#include "pitch.h"
#include "protocol.h"

namespace vok::seecheck {

/// A recorded player.
struct PlayerRecording {
  struct Text {
    bool sent = false;
    std::string text;
  };

  std::vector<Text> texts;  ///< in order
  std::string team;
  playing_side side = SIDE_UNKNOWN;
  bool goalie = false;

  /// Reads lines of milliseconds, tab, '<' (received) or '>' (sent), tab and text. Returns false,
  /// with the reason in `error`, when a line has another form or there is no check-in.
  bool read(std::istream& in, std::string& error);
};

/// A player's true place, in the frame of the recorded player's team.
struct TruePlayer {
  bool there = false;
  Vector2d pos;
  double body = 0;  ///< radians
};

/// The true state of one cycle, in the frame of the recorded player's team: metres, radians,
/// cycles.
struct TrueState {
  Vector2d pos;
  Vector2d v;
  double body = 0;
  double neck = 0;
  Vector2d ball;
  Vector2d ballV;
  Squad<TruePlayer> ours;
  Squad<TruePlayer> theirs;
};

class Truth {
 public:
  /// Reads lines of cycle, x, y, vx, vy, body and neck of the player, x, y, vx, vy of the ball, all
  /// tab-separated, and behind the last tab side, number, x, y and body of all others, in the
  /// server's frame and degrees. Lines that begin with '#' do not count. Returns false, with the
  /// reason in `error`, when a line has another form or there is none.
  bool read(std::istream& in, std::string& error);

  /// Turns all into the frame of a team on that side.
  void turnTo(playing_side side);

  /// The state of a cycle; null when the truth has none or, while the clock stood, several of it.
  const TrueState* at(long cycle) const;

 private:
  struct Entry {
    TrueState state;
    int rows = 0;
  };

  bool readLine(const std::string& line);

  std::map<long, Entry> entries_;
};

}  // namespace vok::seecheck
