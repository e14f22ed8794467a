// A simulated match: the texts of its check-in and of each cycle, for the coach of one team.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "players.h"
#include "referee.h"
#include "world.h"

namespace vok::practicematch {

struct MatchSettings {
  int cycles = 6000;
  std::uint64_t seed = 2;  ///< a match with every set play of both sides
  Side coachSide = Side::Left;
  bool synch = true;
  int types = 18;
  int ptMax = 1;
  int port = 6002;
  std::string coachTeam;
  std::string otherTeam;
};

class Match {
 public:
  explicit Match(MatchSettings settings);

  /// Sets the names of the coach's team, which may not be known at first, and of the other one.
  void meet(const std::string& coachTeam);
  /// All texts that a coach gets when it checks in.
  std::vector<std::string> checkIn() const;
  /// Plays one cycle. Afterwards `texts` holds what is to be sent, in this order: calls, then the
  /// view.
  void cycle(std::vector<std::string>& texts);
  void view(std::string& text) const;
  bool finished() const { return referee_.finished(); }

  /// Changes a type for the coach. Appends the announcement and the answer, or the refusal.
  void changeType(int number, int type, std::vector<std::string>& answers);

  long time() const { return referee_.time(); }
  bool playOn() const { return referee_.mode() == Mode::PlayOn; }
  std::string modeName() const { return referee_.modeName(); }
  int goals(Side side) const { return referee_.goals(side); }
  const MatchSettings& settings() const { return set_; }
  const World& state() const { return world_; }
  const std::string& name(Side side) const {
    return side == set_.coachSide ? set_.coachTeam : set_.otherTeam;
  }

 private:
  std::string_view refusal(Side side, int number, int type) const;
  bool typeFree(Side side, int type, const Player* except) const;
  std::string announcement(const Player& p) const;
  void otherCoach(std::vector<std::string>& texts);
  bool otherCoachChanges(std::vector<std::string>& texts);
  void giveFreeTypes(Side side, std::vector<std::string>& texts);
  void voices(std::vector<std::string>& texts);
  void appendPlayer(std::string& text, const Player& p) const;

  MatchSettings set_;
  World world_;
  Referee referee_;
  Players players_;
  Dice voiceDice_;
  Dice otherCoachDice_;
  std::array<int, 2> substitutions_{};
};

}  // namespace vok::practicematch
