#include "csvoutput.h"

#include <filesystem>
#include <string_view>

#include "events.h"
#include "reporttables.h"

namespace vok::matchreport {
namespace {

using namespace analysis;

struct Header {
  const char* file;
  std::string_view columns;
};

constexpr std::array HEADERS = {
    Header{"tracking.csv", TrackingRows::COLUMNS},
    Header{"events.csv",
           "match,cycle,period,event,kind,side,number,x,y,to_side,to_number,to_x,to_y,outcome\n"},
    Header{"players.csv",
           "match,period,side,number,touches,distance,passes_completed,passes_intercepted,"
           "passes_out,dribbles,recoveries,catches,tackles_tried,tackles_won,stamina_half_time,"
           "stamina_end,stamina_minimum,low_cycles,effort,recovery,capacity,type,first,last,"
           "kick_faults,holes,doubles\n"},
    Header{"sides.csv",
           "match,period,side,team,score,possession_cycles,possession,touches,passes_completed,"
           "passes_intercepted,passes_out,shots,shots_on_target,shot_goals,distance,entries,"
           "dribbles,recoveries,catches,tackles_tried,tackles_won,"
           "formation_with_ball,separation_with_ball,length_with_ball,width_with_ball,"
           "hull_area_with_ball,x_with_ball,y_with_ball,last_line_with_ball,"
           "formation_without_ball,separation_without_ball,length_without_ball,"
           "width_without_ball,hull_area_without_ball,x_without_ball,y_without_ball,"
           "last_line_without_ball\n"},
    Header{
        "matches.csv",
        "match,date,left,right,left_score,right_score,left_penalties,right_penalties,"
        "left_penalty_misses,right_penalty_misses,cycles,play_cycles,complete,inferred,source\n"},
};

void addPasses(CsvRow& row, const PassCounts& passes) {
  row.number(passes.completed).number(passes.intercepted).number(passes.out);
}

void addShape(CsvRow& row, const MatchAnalysis& match, Period period, playing_side side,
              Ball ball) {
  const int goalie = goalieShirt(match, side);
  const Formation formation = match.formations.of(period, side, ball, goalie);
  const Shape shape = match.shapes.of(period, side, ball, goalie);
  row.text(formation.name).real(formation.separation);
  row.real(shape.length).real(shape.width).real(shape.hullArea).real(shape.x).real(shape.y);
  row.real(shape.lastLine);
}

void addWho(CsvRow& row, int player) {
  if (player == NONE) {
    row.none().none();
  } else {
    row.text(sideLetter(sideOf(player))).number(shirtOf(player));
  }
}

void addPlace(CsvRow& row, const std::optional<Vector2d>& place) {
  row.real(place ? place->x : ABSENT).real(place ? place->y : ABSENT);
}

}  // namespace

bool CsvOutput::open(const std::string& folder) {
  folder_ = folder;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  for (std::size_t i = 0; i < files_.size(); ++i) {
    files_[i].open(folder + "/" + HEADERS[i].file);
    files_[i] << HEADERS[i].columns;
    if (!files_[i]) return false;
  }
  return true;
}

MatchTaker CsvOutput::match() {
  auto tracking = std::make_shared<TrackingRows>(folder_);
  return {[tracking](const Frame& frame, std::string_view mode, const Match&) {
            tracking->frame(frame, mode);
          },
          [this, tracking](const Match& match) { write(match, *tracking); }};
}

bool CsvOutput::end() {
  for (std::ofstream& file : files_) failed_ = failed_ || file.flush().fail();
  return !failed_;
}

void CsvOutput::write(const Match& match, TrackingRows& tracking) {
  CsvRow key;
  key_ = key.text(match.key).written();
  failed_ = !tracking.copyTo(files_[TRACKING], key_) || failed_;
  writeMatch(match);
  for (const Period period : ALL_PERIODS) {
    if (!hasPeriod(match.analysis, period)) continue;
    for (const playing_side side : BOTH_SIDES) writeSide(match, period, side);
  }
  put(SIDES);
  for (const Period period : ALL_PERIODS) {
    if (!hasPeriod(match.analysis, period)) continue;
    for (int i = 0; i < analysis::PLAYERS; ++i) writePlayer(match, period, i);
  }
  put(PLAYERS);
  writeEvents(match);
}

void CsvOutput::writeMatch(const Match& match) {
  const MatchAnalysis& all = match.analysis;
  const Score& score = all.lastScore();
  rows_.values(key_).text(match.date).text(score.names[SIDE_LEFT]).text(score.names[SIDE_RIGHT]);
  rows_.number(score.goals[SIDE_LEFT]).number(score.goals[SIDE_RIGHT]);
  const Penalties none{NONE, NONE};
  const Penalties& left = score.shootOut ? score.penalties[SIDE_LEFT] : none;
  const Penalties& right = score.shootOut ? score.penalties[SIDE_RIGHT] : none;
  rows_.numberOrNone(left.goals).numberOrNone(right.goals);
  rows_.numberOrNone(left.misses).numberOrNone(right.misses);
  rows_.number(all.cycles(Period::WHOLE)).number(all.possession.playCycles(Period::WHOLE));
  rows_.truth(match.complete).truth(all.inferred()).text(match.source).end();
  put(MATCHES);
}

void CsvOutput::writeSide(const Match& match, Period period, playing_side side) {
  const MatchAnalysis& all = match.analysis;
  const SideCounts counts = sideCounts(all, period, side);
  rows_.values(key_).text(periodName(period)).text(sideLetter(side));
  rows_.text(all.lastScore().names[side]).number(goalsIn(all, period, side));
  rows_.number(all.possession.cycles(period, side)).real(all.possession.share(period, side));
  rows_.number(counts.actions.touches);
  addPasses(rows_, counts.passes);
  rows_.number(counts.shots.total).number(counts.shots.onTarget).number(counts.shots.goals);
  rows_.real(all.distances.of(period, side)).number(all.entries.of(period, side));
  rows_.number(counts.dribbles).number(counts.recoveries).number(counts.actions.catches);
  rows_.number(counts.actions.tacklesTried).number(counts.actions.tacklesWon);
  for (const Ball ball : BOTH_BALLS) addShape(rows_, all, period, side, ball);
  rows_.end();
}

void CsvOutput::writePlayer(const Match& match, Period period, int player) {
  const MatchAnalysis& all = match.analysis;
  const ActionCounts& actions = all.actions.of(period, player);
  rows_.values(key_).text(periodName(period));
  addWho(rows_, player);
  rows_.number(actions.touches).real(all.distances.of(period, player));
  addPasses(rows_, all.passes.of(period, player));
  rows_.number(all.dribbles.of(period, player)).number(all.recoveries.of(period, player));
  rows_.number(actions.catches).number(actions.tacklesTried).number(actions.tacklesWon);
  const StaminaTable& stamina = all.staminas.of(period, player);
  const bool isLater = period == Period::SECOND_HALF || period == Period::EXTRA_TIME;
  rows_.real(isLater ? ABSENT : all.staminas.of(Period::FIRST_HALF, player).left);
  rows_.real(stamina.left).real(stamina.least);
  rows_.numberOrNone(isAbsent(stamina.left) ? NONE : stamina.lowCycles);
  rows_.real(stamina.leastEffort).real(stamina.leastRecovery).real(stamina.capacity);
  const auto& types = all.presences.types(player);
  rows_.numberOrNone(types.empty() ? NONE : types.back().type);
  const Presence& presence = all.presences.of(period, player);
  rows_.numberOrNone(presence.ever ? presence.span.first : NONE);
  rows_.numberOrNone(presence.ever ? presence.span.last : NONE);
  rows_.numberOrNone(all.inferred() ? NONE : actions.kickFaults);
  const BodyCommands* const commands = match.clients ? &match.clients->commands() : nullptr;
  rows_.numberOrNone(commands ? commands->holes(period, player) : NONE);
  rows_.numberOrNone(commands ? commands->doubles(period, player) : NONE).end();
}

void CsvOutput::writeEvents(const Match& match) {
  for (const Event& event : eventsOf(match.analysis)) {
    rows_.values(key_).number(event.cycle);
    rows_.text(periodName(periodOf(event.cycle, match.analysis.rules())));
    rows_.text(event.name).text(event.kind);
    rows_.text(event.side == SIDE_UNKNOWN ? "" : sideLetter(event.side));
    rows_.numberOrNone(event.player == NONE ? NONE : shirtOf(event.player));
    addPlace(rows_, event.place);
    addWho(rows_, event.to);
    addPlace(rows_, event.toPlace);
    rows_.text(event.outcome).end();
  }
  put(EVENTS);
}

void CsvOutput::put(Table table) {
  files_[table] << rows_.written();
  rows_.clear();
}

}  // namespace vok::matchreport
