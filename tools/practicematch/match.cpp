#include "match.h"

#include <cmath>
#include <utility>

namespace vok::practicematch {

namespace {

constexpr int MAX_SUBSTITUTIONS = 3;
// How many opponents get a type before the coach checks in, and before the kick-off.
constexpr int EARLY_TYPES = 4;
constexpr int TYPES_BEFORE_KICK_OFF = 8;

}  // namespace

// Each part has its own random numbers, so that one more message does not change where the ball
// goes.
Match::Match(MatchSettings settings)
    : set_(std::move(settings)),
      world_(set_.types, Dice(set_.seed)),
      referee_(set_.cycles),
      players_(Dice(set_.seed + 0x1000000)),
      voiceDice_(set_.seed + 0x2000000),
      otherCoachDice_(set_.seed + 0x3000000) {
  Referee::lineUp(world_, Side::Left);
  std::vector<std::string> unheard;
  for (int i = 0; i < EARLY_TYPES; ++i) otherCoachChanges(unheard);
}

void Match::meet(const std::string& coachTeam) {
  set_.coachTeam = coachTeam;
  set_.otherTeam = coachTeam == "Opponents" ? "Others" : "Opponents";
}

std::vector<std::string> Match::checkIn() const {
  std::vector<std::string> texts;
  texts.push_back(std::string("(init ") + letter(set_.coachSide) + " ok)");
  texts.push_back(serverParamText(set_.cycles / 2, set_.synch, set_.port));
  texts.push_back(playerParamText(set_.types, set_.ptMax, set_.seed));
  for (std::size_t id = 0; id < world_.types.size(); ++id) {
    texts.push_back(playerTypeText(static_cast<int>(id), world_.types[id]));
  }
  for (const Team& team : world_.teams) {
    for (const Player& p : team) {
      if (p.type != 0) texts.push_back(announcement(p));
    }
  }
  for (const Team& team : world_.teams) {
    for (const Player& p : team) {
      texts.push_back("(clang (ver (p \"" + name(p.side) + "\" " + std::to_string(p.number) +
                      (p.goalie() ? " goalie" : "") + ") 7 8))");
    }
  }
  return texts;
}

void Match::cycle(std::vector<std::string>& texts) {
  texts.clear();
  voices(texts);
  otherCoach(texts);
  const bool startsPlay = referee_.mode() == Mode::BeforeKickOff;
  std::vector<std::string> calls;
  const bool kickOff = referee_.resume(world_, calls);
  if (kickOff && time() == 0) {
    giveFreeTypes(Side::Left, texts);
    giveFreeTypes(Side::Right, texts);
  }
  texts.insert(texts.end(), calls.begin(), calls.end());

  if (startsPlay) {
    players_.lookAround(world_);
  } else if (referee_.mode() != Mode::TimeOver) {
    players_.act(world_, referee_, texts);
    world_.step();
    referee_.judge(world_, texts);
  }
  texts.emplace_back();
  view(texts.back());
}

void Match::voices(std::vector<std::string>& texts) {
  if (referee_.mode() == Mode::BeforeKickOff || referee_.mode() == Mode::TimeOver) return;
  if (!voiceDice_.chance(0.09)) return;
  const Side side = voiceDice_.chance(0.5) ? Side::Left : Side::Right;
  const int number = voiceDice_.whole(FIRST_SHIRT, LAST_SHIRT);
  std::string text = "(hear " + std::to_string(time()) + " (p \"" + name(side) + "\" " +
                     std::to_string(number) + (number == 1 ? " goalie" : "") + ") \"p";
  text += std::to_string(number) + letter(side) + std::to_string(time() % 1000) + "\")";
  texts.push_back(std::move(text));
}

std::string Match::announcement(const Player& p) const {
  std::string text = "(change_player_type " + std::to_string(p.number);
  if (p.side == set_.coachSide) text += " " + std::to_string(p.type);
  return text + ")";
}

bool Match::typeFree(Side side, int type, const Player* except) const {
  int users = 0;
  for (const Player& p : world_.team(side)) {
    if (&p != except && p.type == type) ++users;
  }
  return type == 0 || users < set_.ptMax;
}

std::string_view Match::refusal(Side side, int number, int type) const {
  if (type < 0 || type >= set_.types) return "(error out_of_range_player_type)";
  if (!isShirtNumber(number)) return "(warning no_such_player)";
  const bool before = !referee_.kickedOff();
  if (!before && playOn()) return "(warning cannot_sub_while_playon)";
  if (!before && substitutions_[index(side)] >= MAX_SUBSTITUTIONS) return "(warning no_subs_left)";
  const Player& p = world_.team(side)[number];
  if (typeFree(side, type, &p)) return {};
  return before ? "(warning max_of_that_type_on_field)" : "(warning no_left_of_that_type)";
}

void Match::changeType(int number, int type, std::vector<std::string>& answers) {
  const std::string_view refused = refusal(set_.coachSide, number, type);
  if (!refused.empty()) {
    answers.emplace_back(refused);
    return;
  }
  Player& p = world_.team(set_.coachSide)[number];
  world_.setType(p, type);
  p.typeChosen = true;
  if (referee_.kickedOff()) ++substitutions_[index(set_.coachSide)];
  answers.push_back(announcement(p));
  answers.push_back("(ok" + announcement(p).replace(0, 1, " "));
}

// The other team's coach changes most types before the kick-off and one in each quarter of the
// match but the first.
void Match::otherCoach(std::vector<std::string>& texts) {
  if (!referee_.kickedOff()) {
    int chosen = 0;
    for (const Player& p : world_.team(other(set_.coachSide))) chosen += p.typeChosen ? 1 : 0;
    if (chosen < TYPES_BEFORE_KICK_OFF && otherCoachDice_.chance(0.1)) otherCoachChanges(texts);
    return;
  }
  const int done = substitutions_[index(other(set_.coachSide))];
  if (playOn() || referee_.mode() == Mode::TimeOver || time() * 4 < set_.cycles * (done + 1L))
    return;
  if (done < MAX_SUBSTITUTIONS) otherCoachChanges(texts);
}

// Gives the highest free type to a player without a chosen type, or after the kick-off to any.
bool Match::otherCoachChanges(std::vector<std::string>& texts) {
  const Side side = other(set_.coachSide);
  Player* p = nullptr;
  if (!referee_.kickedOff()) {
    for (Player& candidate : world_.team(side)) {
      if (p == nullptr && !candidate.goalie() && !candidate.typeChosen) p = &candidate;
    }
  } else {
    p = &world_.team(side)[otherCoachDice_.whole(FIRST_SHIRT + 1, LAST_SHIRT)];
  }
  if (p == nullptr) return false;
  for (int type = set_.types - 1; type > 0; --type) {
    if (type == p->type || !refusal(side, p->number, type).empty()) continue;
    world_.setType(*p, type);
    p->typeChosen = true;
    if (referee_.kickedOff()) ++substitutions_[index(side)];
    texts.push_back(announcement(*p));
    return true;
  }
  return false;
}

void Match::giveFreeTypes(Side side, std::vector<std::string>& texts) {
  int type = 1;
  for (Player& p : world_.team(side)) {
    if (p.goalie() || p.typeChosen) continue;
    while (type < set_.types && !typeFree(side, type, &p)) ++type;
    if (type == set_.types) return;
    world_.setType(p, type);
    texts.push_back(announcement(p));
  }
}

void Match::view(std::string& text) const {
  text = "(see_global " + std::to_string(time()) + " ((g r) ";
  appendNumber(text, HALF_LENGTH);
  text += " 0) ((g l) ";
  appendNumber(text, -HALF_LENGTH);
  text += " 0) ((b)";
  const Mover& ball = world_.ball;
  for (const double number : {ball.pos.x, ball.pos.y, ball.vel.x, ball.vel.y}) {
    text += ' ';
    appendNumber(text, number);
  }
  text += ')';
  for (const Team& team : world_.teams) {
    for (const Player& p : team) appendPlayer(text, p);
  }
  text += ')';
}

void Match::appendPlayer(std::string& text, const Player& p) const {
  text += " ((p \"" + name(p.side) + "\" " + std::to_string(p.number);
  text += p.goalie() ? " goalie)" : ")";
  for (const double number : {p.pos.x, p.pos.y, p.vel.x, p.vel.y}) {
    text += ' ';
    appendNumber(text, number);
  }
  for (const double angle : {p.body, p.neck}) text += ' ' + std::to_string(std::lround(angle));
  if (p.pointing > 0) text += ' ' + std::to_string(std::lround(p.pointAngle));
  if (p.tackling > 0) text += " t";
  text += ')';
}

}  // namespace vok::practicematch
