// Heard messages: the referee, the coaches and the players.
#include <array>
#include <iostream>

#include "Parser.h"
#include "printable.h"
#include "scanner.h"

namespace vok {
namespace {

/// Characters of a coach's freeform text.
bool isFreeform(char c) {
  return isLetter(c) || isDigit(c) || std::string_view(" -.+*/?<>_").find(c) != Scanner::NO_LIMIT;
}

/// Characters of all other messages.
bool isSpeech(char c) {
  return isFreeform(c) || c == '(' || c == ')';
}

/// Characters of a speaker's name within parentheses.
bool isName(char c) {
  return isFreeform(c) || c == '"';
}

/// Reads a quoted text; the closing quote may be missing.
bool readQuoted(Scanner at, std::string_view& text) {
  return at.pattern(" \"") && at.run(isSpeech, text);
}

/// Reads a speaker's name in parentheses, without the blanks before it, and the text behind.
bool readNamedVoice(Scanner at, std::string_view& name, std::string_view& text) {
  return at.pattern("( ") && at.until(')', name) && at.pattern(") ") && readQuoted(at, text);
}

/// Reads the same where the name consists of the characters of a name only, perhaps of blanks.
bool readBlankVoice(Scanner at, std::string_view& name, std::string_view& text) {
  return at.literal('(') && at.run(isName, name) && at.pattern(") ") && readQuoted(at, text);
}

struct CoachWord {
  std::string_view word;
  CoachMsgType type;
};

constexpr auto COACH_WORDS = std::to_array<CoachWord>(
    {{"(advice", CMT_ADVICE}, {"(info", CMT_INFO}, {"(meta", CMT_META}, {"(define", CMT_DEFINE}});

}  // namespace

bool Parser::parseHear() {
  data_->sender = SENDER_SELF;
  data_->coachMsgType = CMT_NONE;
  data_->message[0] = '\0';
  data_->mode = PLAY_MODE_UNKNOWN;
  data_->penaltySide = SIDE_UNKNOWN;
  data_->sender_dir = NO_ANGLE;
  data_->sender_name[0] = '\0';
  data_->sender_num = -1;

  Scanner at(msg_);
  std::string_view speaker;
  if (!at.word(speaker)) return false;
  at.skipBlanks();

  std::string_view text;
  if (speaker.starts_with("referee")) return parseReferee(at.rest());
  if (speaker.starts_with("coach")) {
    data_->sender = SENDER_COACH;
    if (!at.run(isSpeech, text)) return false;
    copyText(text, data_->message);
    return true;
  }
  if (speaker.starts_with("self")) {
    data_->sender = SENDER_SELF;
    if (!readQuoted(at, text)) return false;
    copyText(text, data_->message);
    return true;
  }
  if (speaker.starts_with("online_coach_left") || speaker.starts_with("online_coach_right")) {
    data_->sender = SENDER_ONLINECOACH;
    return parseCoachMsg(at.rest());
  }
  return parseVoice();
}

/// Reads a call. Most calls name a play mode; a goal has the score of its side behind the name.
bool Parser::parseReferee(std::string_view text) {
  data_->sender = SENDER_REFEREE;
  std::string_view words;
  if (!Scanner(text).run(isSpeech, words)) return false;
  copyText(words, data_->message);
  const std::string_view call(data_->message.data());

  if (call.starts_with("penalty_onfield_l")) {
    data_->penaltySide = SIDE_LEFT;
  } else if (call.starts_with("penalty_onfield_r")) {
    data_->penaltySide = SIDE_RIGHT;
  } else if (!call.starts_with("penalty_foul_") && !call.starts_with("penalty_winner_") &&
             !call.starts_with("penalty_draw")) {
    data_->mode = parsePlaymode(call, side_);
  }
  if (data_->mode != PLAY_MODE_GOAL_US && data_->mode != PLAY_MODE_GOAL_THEM) return true;

  Scanner goal(call);
  char goalSide = '\0';
  return goal.literal("goal_") && goal.character(goalSide) && goal.literal('_') &&
         goal.integer(data_->score);
}

/// Reads a player's voice. What it tells of the speaker depends on the distance and on the
/// listener.
bool Parser::parseVoice() {
  std::string_view name;
  std::string_view text;
  int number = -1;
  double degrees = 0;

  Scanner at(msg_);
  if (at.pattern(" our ") && at.integer(number)) {
    data_->sender = SENDER_PLAYER_US;
    data_->sender_num = shirtNumber(number);
    return true;
  }
  if (msg_.starts_with("opp)")) {
    data_->sender = SENDER_PLAYER_THEM;
    return true;
  }

  at = Scanner(msg_);
  if (at.real(degrees)) {
    Scanner mate = at;
    Scanner opponent = at;
    if (mate.pattern(" our ") && mate.integer(number) && readQuoted(mate, text)) {
      data_->sender = SENDER_PLAYER_US;
      data_->sender_num = shirtNumber(number);
    } else if (opponent.pattern(" opp ") && readQuoted(opponent, text)) {
      data_->sender = SENDER_PLAYER_THEM;
    } else if (readQuoted(at, text)) {
      data_->sender = SENDER_DIR;
    } else {
      return false;
    }
    data_->sender_dir = Angle::mod2pi(toRadians(degrees));
    copyText(text, data_->message);
    return true;
  }

  at = Scanner(msg_);
  if (readNamedVoice(at, name, text)) {
    data_->sender = SENDER_PLAYER;
    copyText(text, data_->message);
    Scanner player(name);
    std::string_view teamName;
    if (!player.pattern("p \"") || !player.until('"', teamName)) return true;
    copyText(teamName, data_->sender_name);
    if (player.literal('"') && player.integer(number)) data_->sender_num = shirtNumber(number);
    return true;
  }
  if (!readBlankVoice(at, name, text)) return false;
  data_->sender = SENDER_PLAYER;
  copyText(name, data_->sender_name);
  copyText(text, data_->message);
  return true;
}

/// Reads an online coach's words; those in coach language are kept as text.
bool Parser::parseCoachMsg(std::string_view message) {
  data_->coachMsgType = CMT_NONE;
  Scanner at(message);
  std::string_view text;
  if (at.pattern(" (freeform \"") && at.run(isFreeform, text) && at.literal("\")")) {
    data_->coachMsgType = CMT_FREEFORM;
    copyText(text, data_->message);
    return true;
  }
  for (const CoachWord& row : COACH_WORDS) {
    if (!message.starts_with(row.word)) continue;
    data_->coachMsgType = row.type;
    copyText(message.substr(row.word.size()), data_->message);
    return true;
  }
  if (message.starts_with("(unsupported_clang)")) return true;
  std::cerr << "Parser: recvd unknown message from olcoach:\"" << printable(firstLine(message))
            << "\"\n";
  return false;
}

}  // namespace vok
