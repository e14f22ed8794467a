// What the tool makes of matches: the text, JSON and so on are each an output.
#pragma once

#include <functional>
#include <memory>

#include "matchfile.h"

namespace vok::matchreport {

/// What an output does with one match.
struct MatchTaker {
  /// While the match is read, in the thread that reads it; may be empty.
  EachFrame frame;
  /// When the match was read to its end. The matches come one by one, in the order of the sources,
  /// not always in the same thread. Not called when the source cannot be read.
  std::function<void(const Match& match)> take;
};

class Output {
 public:
  virtual ~Output() = default;

  /// The taker of one more match; called from several threads at once.
  virtual MatchTaker match() = 0;
  /// Behind the last match. False when something could not be written.
  virtual bool end() = 0;
};

}  // namespace vok::matchreport
