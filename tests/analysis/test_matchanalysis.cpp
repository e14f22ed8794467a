// The definitions of the events, case by case, on short scripted matches.
#include "matchanalysis.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vok::analysis {
namespace {

/// "l7" as a player of the 22.
int who(const std::string& name) {
  return playerOf(name[0] == 'l' ? SIDE_LEFT : SIDE_RIGHT, std::stoi(name.substr(1)));
}
std::string name(int player) {
  if (player == NONE) return "nobody";
  return (sideOf(player) == SIDE_LEFT ? "l" : "r") + std::to_string(shirtOf(player));
}

/// Plays a script: frames "T X Y" with what happens in them, in front of a semicolon. A player's
/// name is a kick, with "+" a catch, with "!" a tackle that works, with "?" one that does not; a
/// name with "_" or "play_on" is announced with the frame. The ball's velocity is its way in the
/// frame, and all players stand in their own halves, the goalies number 1.
class Script {
 public:
  explicit Script(const std::string& text) {
    match_.start(MatchRules());
    for (int i = 0; i < PLAYERS; ++i) {
      const double side = sideOf(i) == SIDE_LEFT ? -1 : 1;
      frame_.players[i].state = shirtOf(i) == 1 ? STATE_ON_FIELD | STATE_GOALIE : STATE_ON_FIELD;
      frame_.players[i].counts.fill(0);
      frame_.players[i].pos = {side * 4 * shirtOf(i), 2.0 * (shirtOf(i) % 5)};
    }
    std::istringstream frames(text);
    for (std::string frame; std::getline(frames, frame, ';');) play(frame);
    match_.end();
  }

  /// All that was found, in a fixed order.
  std::string facts() const {
    std::ostringstream out;
    for (const playing_side side : BOTH_SIDES) {
      const int cycles = match_.possession.cycles(Period::WHOLE, side);
      if (cycles > 0) out << (side == SIDE_LEFT ? "l" : "r") << " holds " << cycles << "; ";
    }
    for (int i = 0; i < PLAYERS; ++i) {
      const PassCounts& p = match_.passes.of(Period::WHOLE, i);
      if (p.tried() > 0) {
        out << name(i) << " passes " << p.completed << p.intercepted << p.out << "; ";
      }
      if (match_.dribbles.of(Period::WHOLE, i) > 0) out << name(i) << " dribbles; ";
      if (match_.recoveries.of(Period::WHOLE, i) > 0) out << name(i) << " recovers; ";
      const ActionCounts& a = match_.actions.of(Period::WHOLE, i);
      if (a.tacklesTried > 0)
        out << name(i) << " tackles " << a.tacklesTried << a.tacklesWon << "; ";
    }
    constexpr std::array OUTCOMES = {"goal", "saved", "blocked", "off", "other"};
    for (const Shot& shot : match_.shots.all()) {
      const auto outcome = static_cast<std::size_t>(Shots::outcome(shot, match_.goalies()));
      out << name(shot.player) << " shoots " << OUTCOMES[outcome] << (shot.onTarget ? "!; " : "; ");
    }
    for (const Goal& goal : match_.goals.all()) {
      out << name(goal.scorer) << (goal.own ? " own goal" : " scores") << " way " << goal.touchings
          << (goal.setPlay == NONE ? "" : " from set play") << "; ";
    }
    constexpr std::array FATES = {"not taken", "goal", "shot", "lost", "kept"};
    for (const SetPlay& play : match_.setPlays.all()) {
      const auto fate = static_cast<std::size_t>(SetPlays::outcome(play, match_.shots));
      out << play.kindName() << " " << name(play.taker) << " " << name(play.second) << " "
          << FATES[fate] << "; ";
    }
    for (const PenaltyKick& kick : match_.shootOut.kicks()) {
      constexpr std::array RESULTS = {"unknown", "goal", "miss"};
      out << "kick " << name(kick.taker) << " " << RESULTS[static_cast<std::size_t>(kick.result)]
          << "; ";
    }
    return out.str();
  }

 private:
  void play(const std::string& text) {
    std::istringstream words(text);
    const Vector2d before = frame_.ball;
    words >> frame_.cycle >> frame_.ball.x >> frame_.ball.y;
    frame_.ballVel = frame_.ball - before;
    for (FramePlayer& player : frame_.players.of) player.state &= ~std::uint32_t{STATE_CATCH};
    for (std::string word; words >> word;) {
      if (word.find('_') != std::string::npos) {
        match_.call(Call::named(word, frame_.cycle));
        continue;
      }
      FramePlayer& player = frame_.players[who(word)];
      const char how = word.back();
      if (how == '+') player.state |= STATE_CATCH;
      if (how == '!') player.state |= STATE_TACKLE;
      if (how == '?') player.state |= STATE_TACKLE | STATE_TACKLE_FAULT;
      if (how != '+') ++player.counts[how == '!' || how == '?' ? COUNT_TACKLE : COUNT_KICK];
    }
    match_.frame(frame_);
  }

  MatchAnalysis match_;
  Frame frame_;
};

TEST(MatchAnalysis, NamesTheLinesOfAFormation) {
  struct Case {
    std::vector<double> x;
    const char* name;
    double separation;
  };
  const Case cases[] = {
      {{-30, -29, -28, -30, -10, -11, -12, 10, 11, 12}, "4-3-3", 16},
      {{-30, -29, -28, -30, -20, -10, -11, 10, 11, 12}, "4-1-2-3", 8},
      {{-30, -29, -28, -30, -24, -22, -21, -10, -9, -8}, "4-3-3", 4},
      {{-30, -25, -20, -15, -10, -5, 0, 5, 10, 15}, "unclear", 5},
      {{-30, -29, -28, -30, -26.5, -25, -24, -22.6, -22, -21}, "unclear", 1.4},
      {{-30, -29, -28, -10, -9, 10, 11}, "unclear", ABSENT},
  };
  for (const Case& c : cases) {
    Formation formation;
    for (const double x : c.x) formation.places.push_back({0, {x, 0}});
    nameLines(formation);
    EXPECT_EQ(formation.name, c.name) << c.x[4];
    if (isAbsent(c.separation)) {
      EXPECT_TRUE(isAbsent(formation.separation));
    } else {
      EXPECT_NEAR(formation.separation, c.separation, 1e-9) << c.x[4];
    }
  }
  std::array<Vector2d, 6> square = {Vector2d(0, 0), {2, 2}, {1, 1}, {2, 0}, {0, 2}, {1, 0}};
  EXPECT_EQ(hullArea(square.data(), square.size()), 4);
}

TEST(MatchAnalysis, FindsEventsAsTheyAreDefined) {
  struct Case {
    const char* script;
    const char* facts;
  };
  const std::string start = "1 0 0 play_on; 2 0 0; ";
  const Case cases[] = {
      // A pass counts from the place before the frame of the touching.
      {"3 3 0 l7; 4 6 0; 5 6 3 l8", "l holds 3; l7 passes 100; "},
      {"3 1 0 l7; 4 1.9 0; 5 6 3 r8", "l holds 2; r holds 1; r8 recovers; "},
      {"3 3 0 l7; 4 6 0; 5 6 3 r8 l9; 6 8 3 l8", "l holds 3; "},
      {"3 3 0 l7; 4 6 0; 5 6 3 l7", "l holds 3; l7 dribbles; "},
      {"3 3 9 l7; 4 3 34 kick_in_r; 4 3 34; 5 3 30 l9",
       "l holds 1; l7 passes 001; "
       "kick_in nobody nobody not taken; "},
      {"3 3 9 l7; 4 3 34 kick_in_l; 5 3 30 l9 play_on; 6 3 20 l9",
       "l holds 3; "
       "l9 dribbles; kick_in l9 l9 kept; "},
      {"3 3 9 l7; 4 3 9 offside_l; 4 3 9 r2", "l holds 1; l7 passes 001; "},
      // A standing touch, and one behind a gap, make no touching.
      {"3 3 0 l7; 3 3 0 foul_charge_r r4; 4 6 0 free_kick_l; 5 8 0 l2 play_on",
       "l holds 2; free_kick l2 nobody kept; "},
      {"3 3 0 l7; 5 6 0 r8; 6 9 0 l9", "l holds 3; l7 passes 100; "},
      {"3 3 0 l7!; 4 6 0 l8?; 5 9 0 r3",
       "l holds 2; r holds 1; l7 passes 010; l7 tackles 11; l8 tackles 10; r3 recovers; "},
      // Shots: from at most 40 m, at least 0.5 m long where they cross, up to 2 m beside the goal.
      {"3 40 0; 4 42 0 l9; 5 44 0 r1+ free_kick_r",
       "l holds 1; r1 recovers; l9 shoots saved!; "
       "catch nobody nobody not taken; "},
      {"3 40 0; 4 42 0 l9; 5 44 0 r5", "l holds 1; r holds 1; r5 recovers; l9 shoots blocked!; "},
      {"3 40 0; 4 42 0 l9; 5 44 0 l8", "l holds 2; l9 shoots other!; l8 shoots other!; "},
      {"3 40 8; 4 42 8 l9; 5 44 8 r1", "l holds 1; r holds 1; r1 recovers; l9 shoots off; "},
      {"3 40 9.1; 4 42 9.1 l9", "l holds 1; "},
      {"3 12 0; 4 15 0 l9", "l holds 1; "},
      {"3 51 0; 4 51.4 0 l9", "l holds 1; "},
      {"3 -40 0; 4 -42 0 r9", "r holds 1; r9 shoots other!; "},
      // Goals: the last touching, a shot off an opponent, an own goal, nobody's.
      {"3 40 0; 4 48 0 l9; 5 53 0 goal_l", "l holds 1; l9 shoots goal!; l9 scores way 1; "},
      {"3 40 0; 4 48 9.5 l9; 5 53 0 goal_l", "l holds 1; l9 shoots goal!; l9 scores way 1; "},
      {"3 40 0; 4 48 0 l9; 5 49 0 r5; 6 53 0 goal_l",
       "l holds 1; r holds 1; r5 recovers; l9 shoots goal!; l9 scores way 2; "},
      {"3 40 0; 4 30 0 l9; 5 49 0 r5; 6 53 0 goal_l",
       "l holds 1; r holds 1; l9 passes 010; r5 recovers; r5 own goal way 2; "},
      {"3 40 0; 6 53 0 goal_l", "nobody scores way 0; "},
      // Set plays.
      {"3 40 34 corner_kick_l; 4 45 20 l7 play_on; 5 48 5 l9; 6 53 1 goal_l",
       "l holds 2; l7 shoots other!; l9 shoots goal!; l9 scores way 2 from set play; "
       "corner_kick l7 l9 shot; "},
      {"3 0 34 kick_in_l; 4 0 30 l7 play_on; 5 0 25; 6 1 25 r3",
       "l holds 2; r holds 1; l7 passes 010; r3 recovers; kick_in l7 r3 lost; "},
      {"3 0 34 kick_in_l; 4 0 30 l7 play_on; 5 0 25; 104 1 25; 105 2 25 r3",
       "l holds 3; r holds 1; l7 passes 010; r3 recovers; kick_in l7 r3 kept; "},
      {"3 0 34 kick_in_l; 4 0 30 r7 play_on", "r holds 1; kick_in nobody nobody not taken; "},
      // The shoot-out ends everything else.
      {"3 3 0 l7; 4 0 0 penalty_setup_l; 5 0 0; 6 4 0 r1+; 7 4 0 penalty_miss_l; "
       "8 0 0 l4 penalty_setup_r; 9 0 0 penalty_score_r",
       "l holds 1; kick l4 miss; kick nobody goal; "},
  };
  for (const Case& c : cases) EXPECT_EQ(Script(start + c.script).facts(), c.facts) << c.script;
}

}  // namespace
}  // namespace vok::analysis
