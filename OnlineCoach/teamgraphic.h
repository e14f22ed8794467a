// The team's picture, which monitors show beside the score: the coach sends it in tiles of 8 x 8
// pixels, one a cycle.
//
// A current server takes tiles before each kick-off, that of the second half included, and answers
// at other times that it does not. So a tile is sent in every cycle of an interruption until the
// server has said so, and from then on only before a kick-off. Any other refusal ends it. A tile
// that was not confirmed when all have been sent is sent again.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "Comm.h"
#include "xpm.h"

namespace vok {

class TeamGraphic {
 public:
  static constexpr int TILE = 8;  ///< pixels of a side

  /// Reads the picture of an XPM file. Null, with the reason in `error`, when it cannot be read.
  static std::unique_ptr<TeamGraphic> fromFile(const std::string& fileName, std::string& error);
  explicit TeamGraphic(const Picture& picture);

  /// How many cycles the picture needs: its tiles, without those that are transparent throughout.
  std::size_t tiles() const { return tiles_.size(); }

  /// In a cycle of an interruption: takes the server's answers, and sends a tile if one is due.
  void send(Comm& comm);

 private:
  struct Tile {
    int column;
    int row;
    std::string strings;  ///< as the command has them
    int sent = 0;
    bool taken = false;
  };

  void takeAnswers(Comm& comm);
  Tile* next();

  std::vector<Tile> tiles_;
  std::size_t taken_ = 0;
  bool onlyBeforeKickOff_ = false;
  bool refused_ = false;
};

}  // namespace vok
