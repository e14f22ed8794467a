#include "textreport.h"

#include <iomanip>

#include "printable.h"
#include "reporttables.h"
#include "sidenumbers.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

std::string shareOf(int part, int all) {
  return std::to_string(part) + " of " + std::to_string(all);
}

/// Writes the report's sections in their order.
class Report {
 public:
  Report(const Match& match, playing_side we, std::ostream& out)
      : match_(match), all_(match.analysis), sides_{we, otherSide(we)}, out_(out) {}

  void write() {
    writeHead();
    writeSides();
    writeGoals();
    writeSetPlays();
    writeShootOut();
    writeOffences();
    for (const playing_side side : sides_) writePlayers(side);
    writeCoach(sides_[0]);
    writeHealth(sides_[0]);
  }

 private:
  /// "left" and "right" where a side has no name.
  std::string_view name(playing_side side) const {
    constexpr std::size_t SHOWN = 15;
    const std::string_view name = all_.lastScore().names[side];
    if (name.empty()) return side == SIDE_LEFT ? "left" : "right";
    return name.substr(0, SHOWN);
  }
  Printable shown(playing_side side) const { return printable(name(side)); }

  void writeHead() {
    const Score& score = all_.lastScore();
    out_ << shown(sides_[0]) << ' ' << score.goals[sides_[0]] << " : " << score.goals[sides_[1]]
         << ' ' << shown(sides_[1]);
    if (score.shootOut) {
      out_ << ", penalties " << score.penalties[sides_[0]].goals << " : "
           << score.penalties[sides_[1]].goals;
    }
    out_ << "\n"
         << all_.lastCycle() << " cycles, " << all_.possession.playCycles(Period::WHOLE)
         << " in play; " << printable(match_.source) << (match_.complete ? "" : " (not complete)")
         << "\n\n";
  }

  /// A row of the sides' table: whole match, first half, second half, extra time for each side.
  template <typename Cell>
  void writeRow(const char* title, Cell cell) {
    constexpr int TITLE = 20;
    constexpr int MATCH = 11;
    constexpr int HALVES = 19;
    out_ << std::left << std::setw(TITLE) << title << std::right;
    for (const playing_side side : sides_) {
      out_ << std::setw(MATCH) << cell(Period::WHOLE, side);
      out_ << std::setw(HALVES)
           << cell(Period::FIRST_HALF, side) + " / " + cell(Period::SECOND_HALF, side);
    }
    out_ << '\n';
  }

  std::string formation(Period period, playing_side side, Ball ball) const {
    return all_.formations.of(period, side, ball, goalieShirt(all_, side)).name;
  }

  void writeSides() {
    constexpr int TITLE = 20;
    constexpr int COLUMN = 30;
    out_ << std::setw(TITLE) << "" << std::right;
    for (const playing_side side : sides_) {
      out_ << std::setw(COLUMN - static_cast<int>(name(side).size())) << "" << shown(side);
    }
    out_ << '\n';
    for (std::size_t i = 0; i < SIDE_NUMBERS; ++i) {
      const SideNumber& number = sideNumber(i);
      writeRow(number.title,
               [&](Period p, playing_side s) { return number.shown(number.of(all_, p, s)); });
    }
    writeRow("Formation, ball",
             [&](Period p, playing_side s) { return formation(p, s, Ball::WITH); });
    writeRow("  without it",
             [&](Period p, playing_side s) { return formation(p, s, Ball::WITHOUT); });
    out_ << "Behind each number of the match those of the two halves.\n";
    if (all_.inferred()) out_ << "Touches are inferred from the movement of the ball.\n";
  }

  void writeGoals() {
    if (!all_.goals.all().empty()) out_ << "\nGoals\n";
    for (const Goal& goal : all_.goals.all()) {
      out_ << std::setw(7) << goal.cycle << "  " << shown(goal.side);
      if (goal.scorer == NONE) {
        out_ << ", nobody touched the ball";
      } else {
        out_ << (goal.own ? ", own goal of number " : " number ") << shirtOf(goal.scorer);
      }
      if (goal.recovery) {
        const Touching& at = *goal.recovery;
        out_ << ", won by " << shirtOf(at.player()) << " at " << at.cycle << " ("
             << fixed(at.place.x, 1) << ", " << fixed(at.place.y, 1) << ")";
      }
      out_ << '\n';
    }
  }

  void writeSetPlays() {
    constexpr std::array KINDS = {"kick_off",    "kick_in",   "free_kick", "indirect_free_kick",
                                  "corner_kick", "goal_kick", "catch"};
    out_ << "\nSet plays (taken: shots or goals / kept / lost)\n";
    for (const char* const kind : KINDS) {
      out_ << "  " << std::left << std::setw(20) << kind << std::right;
      for (const playing_side side : sides_) out_ << std::setw(29) << setPlays(kind, side);
      out_ << '\n';
    }
  }

  std::string setPlays(std::string_view kind, playing_side side) const {
    int taken = 0;
    int shots = 0;
    int kept = 0;
    for (const SetPlay& play : all_.setPlays.all()) {
      if (play.side != side || play.kindName() != kind || play.taker == NONE) continue;
      const SetPlayOutcome outcome = SetPlays::outcome(play, all_.shots);
      ++taken;
      kept += outcome == SetPlayOutcome::KEPT ? 1 : 0;
      shots += outcome == SetPlayOutcome::SHOT || outcome == SetPlayOutcome::GOAL ? 1 : 0;
    }
    if (taken == 0) return "-";
    return std::to_string(taken) + ": " + std::to_string(shots) + " / " + std::to_string(kept) +
           " / " + std::to_string(taken - shots - kept);
  }

  void writeShootOut() {
    if (!all_.shootOut.kicks().empty()) out_ << "\nPenalty shoot-out\n";
    for (const PenaltyKick& kick : all_.shootOut.kicks()) {
      const std::string_view result = resultName(kick.result);
      out_ << std::setw(7) << kick.cycle << "  " << shown(kick.side);
      if (kick.taker != NONE) out_ << " number " << shirtOf(kick.taker);
      out_ << ": " << (result.empty() ? "not decided" : result) << '\n';
    }
  }

  void writeOffences() {
    const auto& cards = all_.presences.cards();
    if (cards.empty() && all_.faults.empty() && all_.offsides.empty()) return;
    out_ << "\nOffences\n";
    for (const auto* const calls : {&all_.faults, &all_.offsides}) {
      for (const Call& call : *calls) {
        out_ << std::setw(7) << call.cycle << "  " << shown(call.side) << ": "
             << kindName(call.kind) << '\n';
      }
    }
    for (const Card& card : cards) {
      out_ << std::setw(7) << card.cycle << "  " << shown(sideOf(card.player)) << " number "
           << shirtOf(card.player) << ": " << (card.red ? "red" : "yellow") << " card\n";
    }
  }

  void writePlayers(playing_side side) {
    out_ << '\n'
         << shown(side)
         << "\n  no  touches  passes compl.  dribbl.  recov.  tackles  metres  stamina  type\n";
    for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) writePlayer(playerOf(side, shirt));
  }

  void writePlayer(int player) {
    const ActionCounts& actions = all_.actions.of(Period::WHOLE, player);
    const PassCounts& passes = all_.passes.of(Period::WHOLE, player);
    const std::vector<TypeFrom>& types = all_.presences.types(player);
    out_ << std::setw(4) << shirtOf(player) << std::setw(9) << actions.touches << std::setw(15)
         << shareOf(passes.completed, passes.tried()) << std::setw(9)
         << all_.dribbles.of(Period::WHOLE, player) << std::setw(8)
         << all_.recoveries.of(Period::WHOLE, player) << std::setw(9)
         << shareOf(actions.tacklesWon, actions.tacklesTried) << std::setw(8)
         << fixed(all_.distances.of(Period::WHOLE, player), 0) << std::setw(9)
         << fixed(all_.staminas.of(Period::WHOLE, player).left, 0) << "  ";
    for (const TypeFrom& type : types) out_ << (&type == types.data() ? "" : ",") << type.type;
    out_ << '\n';
  }

  /// What our own coach said and asked for, as the text log tells.
  void writeCoach(playing_side side) {
    if (!match_.clients) return;
    out_ << "\nCoach of " << shown(side) << '\n';
    bool silent = true;
    for (const TypeRequest& request : match_.clients->requests()) {
      if (request.side != side) continue;
      silent = false;
      out_ << std::setw(7) << request.cycle << "  asks for type " << request.type << " for number "
           << request.shirt << (request.granted ? "" : ", in vain") << '\n';
    }
    for (const CoachSaid& said : match_.clients->said()) {
      if (said.side != side) continue;
      silent = false;
      out_ << std::setw(7) << said.cycle << "  " << contentOf(said) << '\n';
    }
    if (silent) out_ << "  Neither messages nor requests.\n";
  }

  static std::string contentOf(const CoachSaid& said) {
    if (!said.told) return "says something in another code";
    const CoachMessage& told = *said.told;
    std::string text = "types";
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      text += told.otherTypes[n] == -1 ? " -" : " " + std::to_string(told.otherTypes[n]);
    }
    if (told.kicker != -1) text += "; kicker " + std::to_string(told.kicker);
    if (told.lastDefender != 0) {
      text += "; opponents " + std::to_string(told.lastDefender) + ", " +
              std::to_string(told.secondLastDefender);
    }
    return text;
  }

  /// What went wrong with our own programs.
  void writeHealth(playing_side side) {
    bool healthy = true;
    out_ << "\nHealth of " << shown(side) << '\n';
    for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
      const int player = playerOf(side, shirt);
      const std::string found = complaints(player);
      if (found.empty()) continue;
      healthy = false;
      out_ << std::setw(4) << shirt << "  " << found << '\n';
    }
    if (healthy) out_ << "  Nothing to complain about.\n";
  }

  std::string complaints(int player) const {
    const Presence& presence = all_.presences.of(Period::WHOLE, player);
    if (!presence.ever) return "was never on the field";
    std::string text;
    std::size_t column = 6;  // behind the number
    const auto add = [&](const std::string& more) {
      constexpr std::size_t WIDTH = 79;
      const bool fits = column + 2 + more.size() <= WIDTH;
      if (!text.empty()) text += fits ? "; " : ";\n      ";
      column = (text.empty() || !fits ? 6 : column + 2) + more.size();
      text += more;
    };
    for (const Span& span : presence.away) {
      add("away from " + std::to_string(span.first) + " to " + std::to_string(span.last));
    }
    if (presence.span.last < all_.lastCycle()) {
      add("left after " + std::to_string(presence.span.last));
    }
    for (const Span& span : all_.silences.of(player)) {
      add("silent from " + std::to_string(span.first) + " to " + std::to_string(span.last));
    }
    const auto addCount = [&add](int count, const char* one, const char* several) {
      if (count > 0) add(std::to_string(count) + " " + (count == 1 ? one : several));
    };
    if (match_.clients) {
      const BodyCommands& commands = match_.clients->commands();
      addCount(commands.holes(Period::WHOLE, player), "hole", "holes");
      addCount(commands.doubles(Period::WHOLE, player), "double", "doubles");
    }
    const int low = all_.staminas.of(Period::WHOLE, player).lowCycles;
    addCount(low, "cycle with too little stamina", "cycles with too little stamina");
    const StaminaTable& stamina = all_.staminas.of(Period::WHOLE, player);
    if (stamina.leastRecovery < 1) add("recovery fell to " + fixed(stamina.leastRecovery, 3));
    if (stamina.capacity <= 0) add("no capacity left");
    const ActionCounts& actions = all_.actions.of(Period::WHOLE, player);
    addCount(actions.kickFaults, "kick fault", "kick faults");
    addCount(actions.tacklesTried - actions.tacklesWon, "tackle that hit nothing",
             "tackles that hit nothing");
    return text;
  }

  const Match& match_;
  const MatchAnalysis& all_;
  std::array<playing_side, SIDES> sides_;
  std::ostream& out_;
};

}  // namespace

void writeTextReport(const Match& match, playing_side we, std::ostream& out) {
  Report(match, we, out).write();
}

}  // namespace vok::matchreport
