#include "textlog.h"

#include <algorithm>
#include <array>

#include "pitch.h"
#include "scanner.h"

namespace vok::gamelogs {
namespace {

/// "TEAM_7" or "TEAM_Coach"; a team's name may have underscores.
bool readSender(std::string_view sender, TextLogLine& line) {
  const std::size_t underscore = sender.rfind('_');
  if (underscore == std::string_view::npos) return false;
  line.team = sender.substr(0, underscore);
  const std::string_view who = sender.substr(underscore + 1);
  line.coach = who == "Coach";
  if (line.coach) return true;
  Scanner in(who);
  return in.integer(line.shirt) && isShirtNumber(line.shirt) && in.rest().empty();
}

bool isWordCharacter(char c) {
  return isLetter(c) || isDigit(c) || c == '_';
}

bool isBodyCommand(std::string_view name) {
  static constexpr std::array<std::string_view, 6> NAMES = {"dash",  "turn", "kick",
                                                            "catch", "move", "tackle"};
  return std::find(NAMES.begin(), NAMES.end(), name) != NAMES.end();
}

}  // namespace

bool TextLog::open(const std::string& name, std::string& error) {
  *this = TextLog();
  if (!window_.open(name)) {
    error = window_.problem();
    return false;
  }
  TextLogLine first;
  while (window_.text().find('\n') == std::string_view::npos && window_.more()) {
  }
  if (readTextLogLine(window_.text().substr(0, window_.text().find('\n')), first)) return true;
  error = "is no text log of a server";
  return false;
}

bool TextLog::next(TextLogLine& line) {
  std::string_view text;
  bool cut = false;
  while (window_.line(text, cut)) {
    ++line_;
    if (readTextLogLine(text, line)) return true;
    if (cut) {
      cut_ = true;
    } else if (refused_++ == 0) {
      firstRefused_ = line_;
    }
  }
  cut_ = cut_ || !window_.problem().empty();
  return false;
}

std::string TextLog::remark() const {
  return damageRemark(refused_, firstRefused_, line_, cut_);
}

bool readTextLogLine(std::string_view text, TextLogLine& line) {
  line = {};
  Scanner in(text);
  if (!in.integer(line.cycle) || !in.literal(',') || !in.integer(line.standing)) return false;
  if (!in.literal('\t') || line.cycle < 0 || line.standing < 0) return false;
  if (in.literal("Recv ")) {
    const std::size_t colon = in.rest().find(": ");
    if (colon == std::string_view::npos) return false;
    // Who has no number yet is no player.
    if (!readSender(in.rest().substr(0, colon), line)) line.team = {};
    in.advance(colon + 2);
  }
  line.text = in.rest();
  return true;
}

int bodyCommands(std::string_view text) {
  int commands = 0;
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') {  // up to the next one; without one the rest is no text
      const std::size_t end = text.find('"', i + 1);
      if (end != std::string_view::npos) i = end;
    } else if (text[i] == ')') {
      depth = std::max(0, depth - 1);
    } else if (text[i] == '(' && ++depth == 1) {
      Scanner in(text.substr(i + 1));
      std::string_view name;
      in.skipBlanks();
      if (in.run(isWordCharacter, name) && isBodyCommand(name)) ++commands;
    }
  }
  return commands;
}

}  // namespace vok::gamelogs
