// Any body senses, under a player whose place is known. The first line is its check-in, "l 7
// play_on"; each further line is one sense: a character whose code tells the cycles that have
// passed, and whether a good view comes behind the sense, then the values in the order of the
// server.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "harness.h"
#include "senses.h"

namespace {

using namespace vok::fuzz;

constexpr std::string_view FORM =
    " (view_mode % %) (stamina % %) (speed % %) (head_angle %) (kick %) (dash %) (turn %) (say %)"
    " (turn_neck %) (catch %) (move %) (change_view %) (arm (movable %) (expires %) (target % %)"
    " (count %)) (focus (target %) (count %)) (tackle (expires %) (count %)))";

/// A text up to the next blank, taken off; "0" at the end.
std::string_view takeValue(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  if (line.empty()) return "0";
  const std::string_view value = line.substr(0, line.find(' '));
  line.remove_prefix(value.size());
  return value;
}

std::string bodySense(long time, std::string_view values) {
  std::string text = "(sense_body " + std::to_string(time);
  for (const char c : FORM) {
    if (c == '%') {
      text += takeValue(values);
    } else {
      text += c;
    }
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto texts = lines({reinterpret_cast<const char*>(data), size});
  if (texts.empty() || !checkInPlayer(texts[0])) return 0;
  Match& match = Match::instance();
  long time = 0;
  match.receive(goodBodySense(time));
  match.receive(goodView(time));
  for (std::size_t i = 1; i < texts.size(); ++i) {
    const Step step = takeStep(texts[i]);
    time += step.cycles;
    match.receive(bodySense(time, step.rest));
    if (step.isPlain) match.receive(goodView(time));
  }
  match.expectGoodCycle();
  return 0;
}
