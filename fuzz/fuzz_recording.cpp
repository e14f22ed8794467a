// A recording of a coach: any bytes as a file, read to the end and counted, and read as the replays
// of practicematch do.
#include <cstdint>
#include <sstream>

#include "coachrecording.h"
#include "harness.h"
#include "matchtelling.h"
#include "recording.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vok;
  fuzz::silence();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const fuzz::MemoryFile file(text);
  gamelogs::TextWindow window;
  fuzz::require(window.open(file.path) || text.starts_with("\x1f\x8b"), "a file is opened");
  gamelogs::CoachRecording recording;
  std::string error;
  if (recording.open(std::move(window), error)) {
    static analysis::MatchAnalysis match;
    analysis::analyse(recording, match);
    fuzz::checkMatch(match, recording);
  }

  tools::Recording replay;
  std::istringstream in{std::string(text)};
  if (replay.read(in, error)) {
    fuzz::require(replay.texts.front().text.starts_with("(init "), "a replay begins with it");
    replay.synchronous();
    replay.team();
    replay.lastTime();
  }
  return 0;
}
