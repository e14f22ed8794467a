// Writes a match as a game log of version 6.
#pragma once

#include <ostream>
#include <string>

#include "loghead.h"
#include "matchsource.h"
#include "textlines.h"

namespace vok::gamelogs {

class GameLogWriter {
 public:
  /// The stream must live as long as the writer. Whether it took everything, it tells itself.
  explicit GameLogWriter(std::ostream& out) : out_(out) {}

  /// First: the version and all parameters.
  void head(const LogHead& head);

  // Then, in the order of the match, what happened, each announcement before the frame that first
  // shows it.

  void frame(const analysis::Frame& frame);
  void call(const analysis::Call& call);
  void score(const analysis::Score& score);
  void message(const LogMessage& message);

 private:
  void put();

  std::ostream& out_;
  std::string line_;  ///< kept, so that no line allocates once the longest was written
};

}  // namespace vok::gamelogs
