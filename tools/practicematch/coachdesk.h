// Takes the coach's commands in a simulated match and answers them as a real server does.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "match.h"
#include "report.h"
#include "session.h"

namespace vok::practice {

/// The server's rules for freeform messages: their form, when, and how many.
class SayRules {
 public:
  /// The answer to "(say ...)"; `text` is then the message, empty when it was refused.
  std::string_view judge(std::string_view command, long time, bool playOn, std::string& text);

 private:
  int said = 0;
};

/// What a coach's message says, in field coordinates.
struct CoachMessage {
  long time = 0;
  Vector2d ball;
  std::array<int, 12> opponentTypes{};  ///< by number, -1 unknown
};

/// Nothing unless it is a coach's message that is complete and has a valid checksum.
std::optional<CoachMessage> decodeCoachMessage(const std::string& text, Side side);

class CoachDesk {
 public:
  /// `lenient` leaves out the warning about missing terminators.
  CoachDesk(Match& servedMatch, Report& matchReport, bool leniently)
      : match(servedMatch), report(matchReport), lenient(leniently) {}

  /// Appends what is to be sent in return.
  void take(const Command& command, std::vector<std::string>& answers);
  /// Keeps the truth that messages are compared with.
  void viewSent();

  /// The message that was let through since the last question; empty: none.
  std::string takeMessage() { return std::exchange(said, {}); }

  bool eyeOn() const { return eye; }
  bool left() const { return bye; }
  /// Whether "(done)" came since the last question.
  bool tookDone() { return std::exchange(done, false); }

 private:
  void say(std::string_view text, std::vector<std::string>& answers);
  void changeType(std::string_view text, std::vector<std::string>& answers);
  void compare(const std::string& text);

  Match& match;
  Report& report;
  bool lenient;
  SayRules rules;
  std::string said;
  bool eye = false;
  bool done = false;
  bool bye = false;
  std::deque<std::pair<long, Vector2d>> balls;  ///< of the last views, with their times
};

}  // namespace vok::practice
