// A game log of any version: any bytes as a file, read to the end, counted, and written anew as
// version 6. What is written of a text log must be read without a remark and be written the same.
#include <cstdint>
#include <sstream>

#include "gamelog.h"
#include "gamelogwriter.h"
#include "harness.h"
#include "matchtelling.h"

namespace {

using namespace vok;
using analysis::Told;
using fuzz::require;
using gamelogs::GameLog;

/// What a log tells, written anew.
std::string tell(GameLog& log, analysis::MatchAnalysis& match) {
  std::ostringstream out;
  gamelogs::GameLogWriter writer(out);
  bool begun = false;
  for (Told told = log.next(); told != Told::END; told = log.next()) {
    if (!begun) {
      match.start(log.rules());
      writer.head(log.head());
    }
    begun = true;
    if (told == Told::FRAME) {
      match.frame(log.frame());
      writer.frame(log.frame());
    }
    if (told == Told::CALL) {
      match.call(log.call());
      writer.call(log.call());
    }
    if (told == Told::SCORE) {
      match.score(log.score());
      writer.score(log.score());
    }
    if (told == Told::MESSAGE) writer.message(log.message());
  }
  if (!begun) match.start(log.rules());
  match.end();
  return out.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static GameLog log;
  static analysis::MatchAnalysis match;
  const fuzz::MemoryFile file({reinterpret_cast<const char*>(data), size});
  std::string error;
  if (!log.open(file.path, error)) {
    require(!error.empty(), "a refusal has a reason");
    return 0;
  }
  const std::string text = tell(log, match);
  fuzz::checkMatch(match, log);
  // The names and texts of JSON may hold what a line cannot.
  if (log.head().version < 0 || text.empty()) return 0;
  const fuzz::MemoryFile again(text);
  require(log.open(again.path, error), "what is written is a log");
  require(tell(log, match) == text, "what is written is read the same");
  require(log.remark().find("damaged") == std::string::npos, "what is written is whole");
  return 0;
}
