#include "matchtelling.h"

#include <sys/mman.h>
#include <unistd.h>

#include "harness.h"

namespace vok::fuzz {

using namespace analysis;

MemoryFile::MemoryFile(std::string_view text) : fd_(memfd_create("file", 0)) {
  require(write(fd_, text.data(), text.size()) == static_cast<ssize_t>(text.size()), "harness");
  path = "/proc/self/fd/" + std::to_string(fd_);
}

MemoryFile::~MemoryFile() {
  close(fd_);
}

void checkMatch(const MatchAnalysis& match, const gamelogs::MatchLog& log) {
  const std::string remark = log.remark();
  require(!log.complete() || remark.empty() || remark == "it holds no frame",
          "nothing is wrong with a complete match");
  for (const Period period : {Period::WHOLE, Period::FIRST_HALF, Period::SECOND_HALF}) {
    require(match.cycles(period) >= 0, "cycles are counted up");
    for (const playing_side side : BOTH_SIDES) {
      const double share = match.possession.share(period, side);
      require(isAbsent(share) || (share >= 0 && share <= 1), "a share is one");
      require(match.possession.cycles(period, side) <= match.possession.playCycles(period),
              "the ball is held in play only");
    }
  }
  for (const playing_side side : BOTH_SIDES) {
    require(sideOf(match.goalies()[side]) == side, "a goalie is of its side");
  }
}

}  // namespace vok::fuzz
