// The report of our players' types to the monitor.
#include <algorithm>
#include <cstddef>
#include <sstream>

#include "mcommand.h"
#include "vokcoach.h"

namespace vok {

namespace {

constexpr int NO_DURATION = 0;  // a log line stays

/// Sends one line, made of all parts in their stream forms.
template <typename... Parts>
void report(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  Comm::sendMCmd(MLog(text.str(), NO_DURATION));
}

}  // namespace

void VokCoach::printStats() const {
  report("0 Coach hetero player status:");
  const std::size_t known = world == nullptr ? 0 : world->playerType.size();
  const std::size_t types = std::min(static_cast<std::size_t>(numPlTypes), known);
  for (std::size_t type = 0; type < types; ++type) report("1 ", world->playerType[type]);
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n)
    report("2 Player ", n, " has type ", plType[n]);
}

}  // namespace vok
