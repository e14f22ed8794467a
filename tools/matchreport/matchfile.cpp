#include "matchfile.h"

#include "matchlog.h"

namespace vok::matchreport {
namespace {

using analysis::Told;

std::string teamAndGoals(const analysis::Score& score, playing_side side) {
  const std::string& name = score.names[side];
  std::string text = (name.empty() ? "null" : name) + "_" + std::to_string(score.goals[side]);
  if (score.shootOut) text += "_" + std::to_string(score.penalties[side].goals);
  return text;
}

/// As the server names a match's files.
std::string keyOf(const std::string& date, const analysis::Score& score) {
  return (date.empty() ? "undated" : date) + " " + teamAndGoals(score, SIDE_LEFT) + "-vs-" +
         teamAndGoals(score, SIDE_RIGHT);
}

void take(gamelogs::MatchLog& log, Match& match, const EachFrame& eachFrame) {
  analysis::Call mode;
  bool started = false;
  for (Told told = log.next(); told != Told::END; told = log.next()) {
    if (!started) match.analysis.start(log.rules());
    started = true;
    if (told == Told::SCORE) match.analysis.score(log.score());
    if (told == Told::CALL) match.analysis.call(mode = log.call());
    if (told != Told::FRAME) continue;
    match.analysis.frame(log.frame());
    if (eachFrame) eachFrame(log.frame(), mode.name(), match);
  }
  if (!started) match.analysis.start(log.rules());
  match.analysis.end();
}

void takeTextLog(const std::string& name, Match& match) {
  auto clients = std::make_unique<ClientLog>();
  std::string problem;
  if (clients->read(name, match.analysis, problem)) {
    problem = clients->remark();
    match.clients = std::move(clients);
  }
  if (!problem.empty()) match.textLogProblem = name + " " + problem;
}

}  // namespace

std::unique_ptr<Match> readMatch(const Source& source, const EachFrame& eachFrame) {
  auto match = std::make_unique<Match>();
  match->source = source.name;
  match->error = source.problem;
  if (!match->isRead()) return match;
  const auto log = gamelogs::openMatchLog(source.name, match->error);
  if (!log) return match;
  take(*log, *match, eachFrame);
  match->complete = log->complete();
  match->remark = log->remark();
  match->date = log->date();
  match->key = keyOf(match->date, match->analysis.lastScore());
  if (!source.textLog.empty()) takeTextLog(source.textLog, *match);
  return match;
}

}  // namespace vok::matchreport
