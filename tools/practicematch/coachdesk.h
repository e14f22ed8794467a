// Takes the coach's commands in a simulated match and answers them as a real server does.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "match.h"
#include "report.h"
#include "session.h"

namespace vok::practicematch {

/// The server's rules for freeform messages: their form, when, and how many.
class SayRules {
 public:
  /// Returns the answer to "(say ...)". Sets `text` to the message, or empties it when it is
  /// refused.
  std::string_view judge(std::string_view command, long time, bool playOn, std::string& text);

 private:
  int said_ = 0;
};

class CoachDesk {
 public:
  /// `lenient` leaves out the warning about missing terminators.
  CoachDesk(Match& match, Report& report, bool lenient)
      : match_(match), report_(report), lenient_(lenient) {}

  /// Appends what is to be sent in return.
  void take(const Command& command, std::vector<std::string>& answers);
  /// Records the ball's place, with which messages are compared.
  void viewSent();

  /// The message that was accepted since the last call; empty when there was none.
  std::string takeMessage() { return std::exchange(said_, {}); }

  bool eyeOn() const { return eye_; }
  bool left() const { return bye_; }
  /// Whether "(done)" came since the last call.
  bool tookDone() { return std::exchange(done_, false); }

 private:
  void say(std::string_view text, std::vector<std::string>& answers);
  void changeType(std::string_view text, std::vector<std::string>& answers);
  void compare(const std::string& text);

  Match& match_;
  Report& report_;
  bool lenient_;
  SayRules rules_;
  std::string said_;
  bool eye_ = false;
  bool done_ = false;
  bool bye_ = false;
  std::deque<std::pair<long, Vector2d>> balls_;  ///< of the last views, with their times
};

}  // namespace vok::practicematch
