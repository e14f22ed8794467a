// What a coach's loop counts of a match: cycles, and how long the server waited for answers.
#pragma once

#include <algorithm>
#include <chrono>

namespace vok {

class CycleCount {
 public:
  using Clock = std::chrono::steady_clock;

  /// A cycle was run, or the match ended, at this server time. The times since the last one in
  /// which neither happened were missed. Calls while the clock stands count once, and those before
  /// the first cycle, whose time is 0, do not.
  void follow(long time) {
    if (time <= time_) return;
    ++followed_;
    missed_ += time - time_ - 1;
    time_ = time;
  }

  /// Whether a "(think)" waits for its answer; to be told before and after each step of the loop.
  /// Reads the clock when that has changed.
  void setThinking(bool thinking) {
    if (thinking == thinking_) return;
    thinking_ = thinking;
    const auto now = Clock::now();
    if (!thinking) longestAnswer_ = std::max(longestAnswer_, now - thinkingSince_);
    thinkingSince_ = now;
  }

  long followed() const { return followed_; }
  long missed() const { return missed_; }
  /// The longest time from "(think)" to "(done)"; zero when none was answered.
  Clock::duration longestAnswer() const { return longestAnswer_; }

 private:
  long time_ = 0;
  long followed_ = 0;
  long missed_ = 0;
  bool thinking_ = false;
  Clock::time_point thinkingSince_;
  Clock::duration longestAnswer_{0};
};

}  // namespace vok
