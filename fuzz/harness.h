// What the fuzzers share: how they complain, and a coach that plays without a server, or a player
// in its place.
//
// A fuzzer is one file with LLVMFuzzerTestOneInput. It calls `require` for what must hold beyond
// that nothing crashes, so that a broken promise looks like a crash to libFuzzer.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/param_keeper.h"
#include "textlink.h"
#include "vokcoach.h"

namespace vok::fuzz {

/// The coach's team.
inline constexpr const char* TEAM = "Alpha";

/// Ends the process like a crash, with a line on standard error, when something does not hold.
void require(bool holds, const char* what);

/// From now on what is written to std::cerr is formatted and dropped.
void silence();

/// The lines of an input. Not more than a hundred: they would only take longer.
std::vector<std::string_view> lines(std::string_view text);

/// What a server with seven player types says at a check-in.
extern const char* const INIT_ANSWER;
extern const char* const SERVER_PARAM;
extern const char* const PLAYER_PARAM;
/// The announcement of one of the types; the greater the id, the faster.
std::string playerType(int id);

/// Switches the configuration's optional keys from the next check-in on: each is on when its bit of
/// `mask` is set.
void setOptionalKeys(unsigned mask);

/// A change of a player's type that the coach has asked for.
struct TypeRequest {
  int number = 0;
  int type = 0;
};

/// A coach, the answers to its check-in and the datagrams of its match. One a process, since there
/// can be one connection only. `checkIn` begins a match with a new coach, so that nothing is left
/// of earlier matches. Before the first one the shipped configuration is read.
class Match {
 public:
  static Match& instance();

  /// Checks in with the three answers given, which come through the link: as a field player when
  /// the first gives it a number, else as the coach. False when they are not taken; then there is
  /// no match.
  bool checkIn(std::string_view init, std::string_view server, std::string_view player);

  /// Routes one datagram, runs the cycle that it may have begun, and looks at what has become of
  /// the world and at what the coach has sent.
  void receive(std::string_view datagram);

  /// The same by way of the drain.
  void drain(std::string_view datagram);

  /// The next good view, or what a player is told, is taken over exactly and, in synchronous mode,
  /// answered.
  void expectGoodCycle();

  /// The oldest request for a type that was not taken yet.
  std::optional<TypeRequest> takeRequest();

  /// Only in a coach's match.
  const VokCoach& itsCoach() const { return *coach_; }

  /// Whether a coach plays, and no player.
  bool isCoach() const { return coach_ != nullptr; }

 private:
  /// What plays in a coach's place.
  struct Player {
    explicit Player(Link& link);

    Comm comm;
    std::unique_ptr<Worldmodel> world;         ///< null when the check-in failed
    std::unique_ptr<TacticalModule> tactical;  ///< null as well
    GoalShotEval shots;
    PassEval passes{&shots};
    bool heard = false;  ///< it took the latest message of its coach
  };

  Match();
  Comm& comm() const { return isCoach() ? *coach_->comm : player_->comm; }
  const std::unique_ptr<Worldmodel>& world() const {
    return isCoach() ? coach_->world : player_->world;
  }
  void endMatch();
  void runCycle();
  void runPlayersCycle();
  void act();
  /// Everything that a player asks its modules, and that the answers make sense.
  void decide();
  void checkWorld() const;
  void checkPlans() const;
  void checkPlayersSight() const;
  void checkView(long time) const;
  void expectGoodSenses(long time);
  void expectGoodMessage(long time);
  void expectAnswer(int before);
  void takeCommands();
  void checkCommand(std::string_view command);

  const test::ParamKeeper parameters_;
  TextLink link_;
  // One of the two is there after the first check-in.
  std::unique_ptr<VokCoach> coach_;
  std::unique_ptr<Player> player_;
  int answers_ = 0;  ///< how often "(done)" was sent since the last check-in
  std::deque<TypeRequest> requests_;
};

}  // namespace vok::fuzz
