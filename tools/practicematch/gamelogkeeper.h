// Writes a simulated match as a server does: a game log of version 6, and beside it a text log of
// what the coach said. Where the libraries for game logs are not built, it refuses to open.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "match.h"

namespace vok::practicematch {

class GameLogKeeper {
 public:
  GameLogKeeper();
  ~GameLogKeeper();

  /// Returns false, with the reason in `error`, when the files cannot be written. The text log has
  /// the same name with .rcl. Without `open` nothing of what follows does anything.
  bool open(const std::string& file, std::string& error);

  void begin(const Match& match);
  /// A cycle that was played, with the texts that it brought.
  void cycle(const Match& match, const std::vector<std::string>& texts);
  void command(const Match& match, std::string_view text);
  /// False when something could not be written.
  bool end();

 private:
  class Files;
  std::unique_ptr<Files> files_;
};

}  // namespace vok::practicematch
