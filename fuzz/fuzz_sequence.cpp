// A match of any datagrams, one a line. When the first line is an answer to the init, the first
// three are the check-in, of a player when it gives a number. A first character that opens no
// datagram tells by its bits which optional keys are on, as 'C' the first two.
#include <cstdint>

#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using vok::fuzz::Match;
  Match& match = Match::instance();
  std::string_view input(reinterpret_cast<const char*>(data), size);
  unsigned keys = 0;
  if (!input.empty() && input[0] != '(') {
    keys = static_cast<unsigned char>(input[0]);
    input.remove_prefix(1);
  }
  vok::fuzz::setOptionalKeys(keys);
  const auto texts = vok::fuzz::lines(input);
  const bool hasCheckIn = texts.size() >= 3 && texts[0].starts_with("(init");
  const bool checkedIn = hasCheckIn ? match.checkIn(texts[0], texts[1], texts[2])
                                    : match.checkIn(vok::fuzz::INIT_ANSWER, vok::fuzz::SERVER_PARAM,
                                                    vok::fuzz::PLAYER_PARAM);
  if (!checkedIn) return 0;
  for (std::size_t i = hasCheckIn ? 3 : 0; i < texts.size(); ++i) match.receive(texts[i]);
  match.expectGoodCycle();
  return 0;
}
