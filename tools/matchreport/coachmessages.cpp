#include "coachmessages.h"

#include <algorithm>

#include "audiomsg.h"
#include "textwindow.h"

namespace vok::matchreport {
namespace {

/// The text between the first quotes behind "(say "; empty without one.
std::string_view saidIn(std::string_view line) {
  const std::size_t say = line.find("(say ");
  if (say == std::string_view::npos) return {};
  const std::size_t begin = line.find('"', say);
  if (begin == std::string_view::npos) return {};
  const std::size_t end = line.find('"', begin + 1);
  return end == std::string_view::npos ? std::string_view()
                                       : line.substr(begin + 1, end - begin - 1);
}

void turn(CoachMessage& said) {
  said.ball = -said.ball;
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    said.ourTeam[shirt] = -said.ourTeam[shirt];
    said.otherTeam[shirt] = -said.otherTeam[shirt];
  }
}

}  // namespace

std::vector<HeardMessage> coachMessages(const std::string& file) {
  constexpr std::size_t LONGEST = 511;
  std::vector<HeardMessage> messages;
  gamelogs::TextWindow window;
  if (!window.open(file)) return messages;
  std::string_view line;
  for (bool cut = false; window.line(line, cut);) {
    const std::string_view text = saidIn(line);
    if (text.size() < AudioMsg::HEADER_LENGTH || text.size() > LONGEST) continue;
    const AudioMsg message(std::string(text).c_str());
    const auto said = CoachMessage::read(message);
    if (!said) continue;
    const playing_side side = message.getSideIsLeft() ? SIDE_LEFT : SIDE_RIGHT;
    HeardMessage heard{static_cast<int>(message.getServerTime()), side, *said};
    if (side == SIDE_RIGHT) turn(heard.said);
    messages.push_back(heard);
  }
  const auto isEarlier = [](const HeardMessage& a, const HeardMessage& b) {
    return a.cycle != b.cycle ? a.cycle < b.cycle : a.side < b.side;
  };
  const auto isSame = [](const HeardMessage& a, const HeardMessage& b) {
    return a.cycle == b.cycle && a.side == b.side;
  };
  std::stable_sort(messages.begin(), messages.end(), isEarlier);
  messages.erase(std::unique(messages.begin(), messages.end(), isSame), messages.end());
  return messages;
}

}  // namespace vok::matchreport
