#include "clientlog.h"

#include <algorithm>
#include <limits>

#include "scanner.h"

namespace vok::matchreport {
namespace {

using analysis::MatchAnalysis;
using gamelogs::TextLogLine;

/// The text of the say command in a coach's text; empty without one.
std::string_view saidIn(std::string_view text) {
  static constexpr std::string_view HEAD = "(say (freeform \"";
  const std::size_t begin = text.find(HEAD);
  if (begin == std::string_view::npos) return {};
  const std::string_view said = text.substr(begin + HEAD.size());
  return said.substr(0, said.find('"'));
}

playing_side sideOf(std::string_view team, const MatchAnalysis& match) {
  for (const playing_side side : analysis::BOTH_SIDES) {
    if (!team.empty() && team == match.lastScore().names[side]) return side;
  }
  return SIDE_UNKNOWN;
}

}  // namespace

bool ClientLog::read(const std::string& name, const MatchAnalysis& match, std::string& error) {
  gamelogs::TextLog log;
  if (!log.open(name, error)) return false;
  source_ = name;
  commands_ = analysis::BodyCommands(match.rules());
  const int end = match.shootOut.begun() ? match.shootOut.kicks().front().cycle
                                         : std::numeric_limits<int>::max();
  for (TextLogLine line; log.next(line);) {
    const playing_side side = sideOf(line.team, match);
    if (side != SIDE_UNKNOWN && line.cycle < end) take(line, side, match);
  }
  remark_ = log.remark();
  return true;
}

void ClientLog::take(const TextLogLine& line, playing_side side, const MatchAnalysis& match) {
  if (!line.coach) {
    const int count = gamelogs::bodyCommands(line.text);
    const int player = analysis::playerOf(side, line.shirt);
    if (count > 0) commands_.commands(player, line.cycle, line.standing, count);
    return;
  }
  const std::string said(saidIn(line.text));
  if (!said.empty() && said_.size() < MAX_KEPT) {
    said_.push_back({line.cycle, side, said, CoachMessage::read(AudioMsg(said.c_str()))});
  }
  takeRequest(line, side, match);
}

void ClientLog::takeRequest(const TextLogLine& line, playing_side side,
                            const MatchAnalysis& match) {
  Scanner in(line.text);
  TypeRequest request{line.cycle, side, 0, 0, false};
  if (!in.literal("(change_player_type ") || !in.integer(request.shirt)) return;
  if (!isShirtNumber(request.shirt) || !in.integer(request.type)) return;
  const auto& types = match.presences.types(analysis::playerOf(side, request.shirt));
  request.granted = std::any_of(types.begin(), types.end(), [&](const analysis::TypeFrom& type) {
    return type.cycle >= request.cycle && type.type == request.type;
  });
  if (requests_.size() < MAX_KEPT) requests_.push_back(request);
}

}  // namespace vok::matchreport
