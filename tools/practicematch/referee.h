// The referee decides play modes and the clock from where the ball went and who touched it.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "world.h"

namespace vok::practicematch {

enum class Mode {
  BeforeKickOff,
  KickOff,
  PlayOn,
  KickIn,
  CornerKick,
  GoalKick,
  FreeKick,
  IndirectFreeKick,
  Goal,
  Offside,
  FoulCharge,
  TimeOver
};

class Referee {
 public:
  /// Half time comes in the middle of `cycles`, time over at their end.
  explicit Referee(int cycles) : fullTime_(cycles) {}

  long time() const { return now_; }
  Mode mode() const { return current_; }
  /// Whose kick it is, or who scored or fouled.
  Side side() const { return currentSide_; }
  int goals(Side of) const { return score_[index(of)]; }
  bool clockStands() const;
  /// A kick of one side that all others wait for.
  bool setPlay() const;
  bool kickedOff() const { return firstKickOffDone_; }
  /// All that is sent after the end has been sent.
  bool finished() const;
  std::string modeName() const;

  /// Whether a player may touch the ball now.
  bool mayKick(const Player& p) const;
  /// The player that takes the kick of `setPlay`.
  const Player* kickTaker() const { return taker_; }
  /// Whether the taker has waited long enough for everybody to hear the coach.
  bool kickDue() const { return cyclesInMode_ >= patience_; }
  /// A player that may not touch the ball again before another did; or null.
  const Player* excluded() const { return lastTaker_; }

  // The steps of a cycle, in this order. Each appends its calls. `resume` ends a standstill
  // whose time is up; it returns whether it kicked a half off.
  bool resume(World& world, std::vector<std::string>& calls);
  void touched(World& world, const Player& p, std::vector<std::string>& calls);
  void foul(World& world, const Player& fouler, std::vector<std::string>& calls);
  /// After the world's step: the clock runs, the ball's place is judged.
  void judge(World& world, std::vector<std::string>& calls);

  /// Places in a kick-off formation, for a kick-off of the given side.
  static void lineUp(World& world, Side kicker);
  /// Whether a point lies beyond the last but one defender and the ball, in the opponents' half.
  static bool offsidePlace(const World& world, Side attacker, Vector2d place);

 private:
  void call(const std::string& name, std::vector<std::string>& calls) const;
  void change(Mode mode, Side side, World& world, std::vector<std::string>& calls);
  void startSetPlay(World& world);
  void restart(Mode mode, Side side, Vector2d spot, World& world, std::vector<std::string>& calls);
  void stop(Mode mode, Side fouling, Vector2d spot, World& world, std::vector<std::string>& calls);
  void judgeOffside(World& world, std::vector<std::string>& calls);
  void judgeBall(World& world, std::vector<std::string>& calls);
  void ballBehindGoalLine(World& world, std::vector<std::string>& calls);
  bool halfOver(World& world, std::vector<std::string>& calls);

  int fullTime_;
  long now_ = 0;
  Mode current_ = Mode::BeforeKickOff;
  Side currentSide_ = Side::Left;
  int cyclesInMode_ = 0;
  int patience_ = 0;
  bool firstKickOffDone_ = false;
  std::array<int, 2> score_{};
  const Player* taker_ = nullptr;
  const Player* lastTaker_ = nullptr;
  Side lastTouch_ = Side::Left;
  Vector2d foulSpot_;
  Squad<bool> offside_;  ///< by number: stood offside at the last touch of its side
};

}  // namespace vok::practicematch
