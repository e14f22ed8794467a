// One datagram of any content in the middle of a match, in synchronous mode or in real time, with
// each set of the optional keys.
#include <cstdint>

#include "constants.h"
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using vok::fuzz::Match;
  Match& match = Match::instance();
  vok::fuzz::setOptionalKeys(static_cast<unsigned>(size / 2));
  match.checkIn(vok::fuzz::INIT_ANSWER, vok::fuzz::SERVER_PARAM, vok::fuzz::PLAYER_PARAM);
  vok::SYNCH_MODE = size % 2 == 0;
  match.receive("(hear 7 referee free_kick_l)");
  match.receive("(see_global 7 ((b) -3 2.5 0 0) ((p \"Alpha\" 7 goalie) -50 0 0 0 0 0)");
  const std::string_view datagram(reinterpret_cast<const char*>(data), size);
  match.receive(datagram);
  match.receive("(think)");
  match.drain(datagram);
  match.expectGoodCycle();
  return 0;
}
