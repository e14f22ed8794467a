// Any relative views and voices, under a player whose body sense is good. The first line is its
// check-in, "l 7 play_on". Each further line begins with a character whose code tells the cycles
// that have passed, and whether the body sense comes before the view. Behind it stand the objects
// of a view, "f c|10 -5,b|3 20 0.1 2"; or behind an 'h' the rest of a hear message; or behind a 'c'
// characters for the places of a coach's message.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "audiomgr.h"
#include "coachmessage.h"
#include "harness.h"
#include "senses.h"

namespace {

using namespace vok;
using namespace vok::fuzz;

/// "NAME|NUMBERS,NAME|NUMBERS" with the parentheses of the server.
std::string view(long time, std::string_view objects) {
  std::string text = "(see " + std::to_string(time);
  while (!objects.empty()) {
    const std::string_view object = objects.substr(0, objects.find(','));
    objects.remove_prefix(std::min(object.size() + 1, objects.size()));
    const std::string_view name = object.substr(0, object.find('|'));
    const std::string_view numbers = object.substr(std::min(name.size() + 1, object.size()));
    text.append(" ((").append(name).append(") ").append(numbers).append(")");
  }
  return text + ")";
}

Vector2d takePlace(std::string_view& characters) {
  Vector2d place;
  for (double* value : {&place.x, &place.y}) {
    if (characters.empty()) return place;
    *value = characters[0] - 'P';
    characters.remove_prefix(1);
  }
  return place;
}

std::string coachMessage(long time, std::string_view characters) {
  CoachMessage told;
  told.ball = takePlace(characters);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) told.ourTeam[n] = takePlace(characters);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) told.otherTeam[n] = takePlace(characters);
  AudioMsg message(0, static_cast<unsigned>(time), true);
  told.write(message);
  AudioMgr(0, true, AudioMsg::DEFAULT_MSG_PREFIX, 1).SpeakTo(message);
  return "(hear " + std::to_string(time) + " online_coach_left (freeform \"" +
         message.getEncoding() + "\"))";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto texts = lines({reinterpret_cast<const char*>(data), size});
  if (texts.empty() || !checkInPlayer(texts[0])) return 0;
  Match& match = Match::instance();
  long time = 0;
  for (std::size_t i = 1; i < texts.size(); ++i) {
    const Step step = takeStep(texts[i]);
    time += step.cycles;
    if (step.isPlain) match.receive(goodBodySense(time));
    const char kind = step.rest.empty() ? ' ' : step.rest[0];
    if (kind == 'h') {
      match.receive("(hear " + std::to_string(time) + " " + std::string(step.rest.substr(1)) + ")");
    } else if (kind == 'c') {
      match.receive(coachMessage(time, step.rest.substr(1)));
    } else {
      match.receive(view(time, step.rest));
    }
  }
  match.expectGoodCycle();
  return 0;
}
