#include "coachdesk.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <optional>

#include "coachmessage.h"

namespace vok::practicematch {

namespace {

constexpr std::size_t MAX_MESSAGE = 128;
constexpr int MESSAGES_PER_GRANT = 128;
constexpr long GRANT_PERIOD = 6000;
// While play is on, messages are let through in the first 20 of every 600 cycles, from 600 on.
constexpr long WAIT_PERIOD = 600;
constexpr long SEND_PERIOD = 20;
constexpr std::size_t VIEWS_KEPT = 64;

/// What the simulator server lets through. The alphabet of messages is smaller.
bool messageCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
         std::string_view(" ().+-*/?<>_").find(c) != std::string_view::npos;
}

/// The whole numbers in a text, or nothing when it holds anything else.
std::optional<std::vector<int>> wholeNumbers(std::string_view text) {
  std::vector<int> numbers;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.empty()) return numbers;
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (!text.empty() && text.front() != ' ') return std::nullopt;
    numbers.push_back(number);
  }
}

/// "(word ...)" gives the word; empty when the text has no parentheses.
std::string_view commandWord(std::string_view text) {
  if (text.size() < 2 || text.front() != '(' || text.back() != ')') return {};
  return text.substr(1, text.find_first_of(" ()", 1) - 1);
}

/// "(error reason)" or "(warning reason)" gives the reason.
std::string reasonOf(std::string_view refusal) {
  const std::size_t begin = refusal.find(' ') + 1;
  return std::string(refusal.substr(begin, refusal.size() - begin - 1));
}

}  // namespace

std::string_view SayRules::judge(std::string_view command, long time, bool playOn,
                                 std::string& text) {
  const std::string_view head = "(say (freeform \"";
  const std::string_view tail = "\"))";
  text.clear();
  if (!command.starts_with(head) || command.size() < head.size() + tail.size() ||
      !command.ends_with(tail)) {
    return "(error could_not_parse_say)";
  }
  const std::string_view message =
      command.substr(head.size(), command.size() - head.size() - tail.size());
  if (message.empty() || message.size() > MAX_MESSAGE ||
      !std::all_of(message.begin(), message.end(), messageCharacter)) {
    return "(error could_not_parse_say)";
  }
  const bool windowOpen = time > WAIT_PERIOD && time % WAIT_PERIOD < SEND_PERIOD;
  if (playOn && !windowOpen) return "(error cannot_say_freeform_while_playon)";
  if (said_ >= MESSAGES_PER_GRANT * (1 + time / GRANT_PERIOD)) {
    return "(error said_too_many_freeform_messages)";
  }
  ++said_;
  text = message;
  return "(ok say)";
}

void CoachDesk::take(const Command& command, std::vector<std::string>& answers) {
  const std::string_view text = command.text;
  const std::string_view word = commandWord(text);
  if (!command.terminated) ++report_.unterminated;

  if (text == "(done)" || text == "(bye)") {
    ++report_.commands[std::string(word)];
    (text == "(done)" ? done_ : bye_) = true;
    return;
  }
  if (!command.terminated && !lenient_)
    answers.emplace_back("(warning message_not_null_terminated)");
  if (word.empty()) {
    ++report_.commands["without form"];
    answers.emplace_back("(error illegal_command_form)");
  } else if (text == "(eye on)" || text == "(eye off)") {
    ++report_.commands["eye"];
    eye_ = text == "(eye on)";
    answers.push_back("(ok " + std::string(text.substr(1)));
  } else if (word == "say") {
    ++report_.commands["say"];
    say(text, answers);
  } else if (word == "change_player_type") {
    ++report_.commands["change_player_type"];
    changeType(text.substr(word.size() + 1, text.size() - word.size() - 2), answers);
  } else {
    ++report_.commands["unknown"];
    answers.emplace_back("(error unknown_command)");
  }
}

void CoachDesk::changeType(std::string_view text, std::vector<std::string>& answers) {
  const auto numbers = wholeNumbers(text);
  if (!numbers || numbers->size() != 2) {
    answers.emplace_back("(error illegal_command_form)");
    return;
  }
  ++report_.typesAsked;
  match_.changeType((*numbers)[0], (*numbers)[1], answers);
  if (answers.back().starts_with("(ok ")) {
    ++report_.typesGiven;
  } else {
    ++report_.typesRefused[reasonOf(answers.back())];
  }
}

void CoachDesk::say(std::string_view text, std::vector<std::string>& answers) {
  std::string message;
  const std::string_view answer = rules_.judge(text, match_.time(), match_.playOn(), message);
  answers.emplace_back(answer);
  if (message.empty()) {
    ++report_.messagesRefused[reasonOf(answer)];
    return;
  }
  ++report_.messagesAccepted;
  said_ = message;
  compare(message);
}

void CoachDesk::compare(const std::string& text) {
  const AudioMsg message(text.c_str());
  const auto told = CoachMessage::read(message);
  if (!told) return;
  const Side side = match_.settings().coachSide;
  const Vector2d ball = forward(side) * told->ball;
  ++report_.messagesDecoded;
  report_.lastTypes = told->otherTypes;
  report_.lastTypesRight = report_.lastTypesUnknown = 0;
  for (const Player& p : match_.state().team(other(side))) {
    const int type = told->otherTypes[p.number];
    if (type == p.type) ++report_.lastTypesRight;
    if (type == -1) ++report_.lastTypesUnknown;
  }

  // Messages have positions in steps of 0.1 m, and the numbers of a view are rounded, too.
  constexpr double TOLERANCE = 0.1 + 1e-4;
  const bool right = std::any_of(balls_.begin(), balls_.end(), [&](const auto& view) {
    const Vector2d error = view.second - ball;
    return view.first == static_cast<long>(message.getServerTime()) &&
           std::abs(error.x) <= TOLERANCE && std::abs(error.y) <= TOLERANCE;
  });
  if (right) ++report_.ballsRight;
}

void CoachDesk::viewSent() {
  balls_.emplace_back(match_.time(), match_.state().ball.pos);
  if (balls_.size() > VIEWS_KEPT) balls_.pop_front();
}

}  // namespace vok::practicematch
