// The line about the whole match that the key "summary" asks for.
#include <algorithm>
#include <chrono>
#include <iostream>

#include "vokcoach.h"

namespace vok {

namespace {

long known(const Squad<int>& types) {
  return std::count_if(types.begin(), types.end(), [](int type) { return type != -1; });
}

double milliseconds(CycleCount::Clock::duration time) {
  const auto rounded = std::chrono::round<std::chrono::microseconds>(time);
  return static_cast<double>(rounded.count()) / 1000;
}

}  // namespace

void VokCoach::writeSummary() const {
  if (!wantsSummary || world == nullptr) return;
  std::cerr << "Coach: summary: " << cycles.followed() << " cycles followed, " << cycles.missed()
            << " missed; " << comm->async->sayCount << " messages said, " << numMsgsLeft
            << " left; our types: ";
  if (typeRequests != nullptr) {
    typeRequests->writeCounts(std::cerr);
  } else {
    std::cerr << LAST_SHIRT - std::count(plType.begin(), plType.end(), DEFAULT_TYPE) << " asked";
  }
  std::cerr << "; opponents' types: " << known(tactical->playerType) << " of " << LAST_SHIRT
            << " known; " << (comm->sock == nullptr ? 0 : comm->sock->dropped())
            << " datagrams from other addresses dropped";
  if (cycles.longestAnswer() > CycleCount::Clock::duration::zero()) {
    std::cerr << "; longest time from \"(think)\" to \"(done)\": "
              << milliseconds(cycles.longestAnswer()) << " ms";
  }
  std::cerr << "\n";
}

}  // namespace vok
