#include "typerequests.h"

#include <algorithm>
#include <iostream>

#include "constants.h"

namespace vok {

namespace {

constexpr int GOALIE = 1;
constexpr int NO_TARGET = -1;
constexpr int UNTOLD_LIMIT = 3;  // players of a type when the server does not tell
constexpr int MAX_RETRIES = 3;

std::size_t at(int type) {
  return static_cast<std::size_t>(type);
}

std::size_t fieldPlayer(int number) {
  return static_cast<std::size_t>(number - FIRST_FIELD_PLAYER);
}

int playersPerType() {
  if (!(playerParams.pt_max >= 1)) return UNTOLD_LIMIT;
  return static_cast<int>(std::min(playerParams.pt_max, 11.0));
}

}  // namespace

TypeRequests::TypeRequests(Worldmodel& world, Comm& connection)
    : world_(world),
      comm_(connection),
      types_(static_cast<int>(world.playerType.size())),
      assignment_(LAST_SHIRT - FIRST_FIELD_PLAYER + 1, world.playerType.size()),
      capacity_(world.playerType.size()) {
  target_.fill(NO_TARGET);
  world_.takeChangesWithoutComma();
}

void TypeRequests::setUtility(int number, int type, double utility) {
  assignment_.setUtility(fieldPlayer(number), at(type), utility);
}

double TypeRequests::utility(int number, int type) const {
  return assignment_.utility(fieldPlayer(number), at(type));
}

/// What a player would gain by another type.
double TypeRequests::gain(int number, int type) const {
  return utility(number, type) - utility(number, typeOf(number));
}

int TypeRequests::typeOf(int number) const {
  return std::max(world_.ourTeam[number].type, DEFAULT_TYPE);
}

bool TypeRequests::isAnnounced(int type) const {
  return type == DEFAULT_TYPE || world_.playerType[at(type)].state != -1;
}

bool TypeRequests::isBeforeMatch() const {
  return world_.time == 0 && world_.playMode == PLAY_MODE_BEFORE_KICK_OFF;
}

void TypeRequests::choose(int substitutions) {
  if (types_ == 0) return;
  chosen_ = true;
  substitutions_ = substitutions;
  for (int t = 0; t < types_; ++t) capacity_[at(t)] = isAnnounced(t) ? playersPerType() : 0;
  if (isBeforeMatch()) {
    planAll();
  } else {
    choosesAgain_ = true;
  }
  ask();
}

/// The best assignment for all field players, beside the goalie's type.
void TypeRequests::planAll() {
  int& goaliesType = capacity_[at(typeOf(GOALIE))];
  --goaliesType;
  assignment_.solve(capacity_);
  ++goaliesType;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    target_[n] = assignment_.typeOf(fieldPlayer(n));
  }
  plan();
}

/// Puts the requests for all targets into an order that the server can follow.
void TypeRequests::plan() {
  Types state;  // what the players have once the requests so far are given
  for (int n = GOALIE; n <= LAST_SHIRT; ++n) state[n] = typeOf(n);
  while (planFree(state)) {
  }
  // A player without its target waits for a type that another player has. If that one waits
  // as well, it gives its type up by a detour; a single detour each is enough.
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (waits(n, state) && isInTheWay(n, state) && !planDetour(n, state)) break;
    while (planFree(state)) {
    }
  }
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (state[n] != target_[n]) target_[n] = NO_TARGET;
  }
  // At the kick-off the server gives any free type to a player for whom no coach has asked for one.
  // So the default type is asked for as well, last, when the others have left it.
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (target_[n] != typeOf(n)) continue;
    if (target_[n] == DEFAULT_TYPE) {
      todo_.push({n, DEFAULT_TYPE});
    } else {
      target_[n] = NO_TARGET;
    }
  }
}

/// Plans the requests whose types are free by then; false when there is none.
bool TypeRequests::planFree(Types& state) {
  bool any = false;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (!waits(n, state) || !isFree(target_[n], state)) continue;
    state[n] = target_[n];
    todo_.push({n, target_[n]});
    any = true;
  }
  return any;
}

bool TypeRequests::isFree(int type, const Types& state) const {
  return std::count(state.begin(), state.end(), type) < capacity_[at(type)];
}

bool TypeRequests::waits(int number, const Types& state) const {
  return target_[number] != NO_TARGET && state[number] != target_[number];
}

/// True when another one waits for the player's type.
bool TypeRequests::isInTheWay(int number, const Types& state) const {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (waits(n, state) && target_[n] == state[number]) return true;
  }
  return false;
}

/// Plans the request for any free type; false when there is none.
bool TypeRequests::planDetour(int number, Types& state) {
  for (int t = 0; t < types_; ++t) {
    if (!isFree(t, state)) continue;
    state[number] = t;
    todo_.push({number, t});
    return true;
  }
  return false;
}

/// Drops what is not out, and requests the changes that gain most, one substitution each.
void TypeRequests::chooseChanges() {
  choosesAgain_ = false;
  todo_.clear();
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (!absent_[n] && !isOut(n, target_[n])) target_[n] = NO_TARGET;
  }
  for (int left = substitutions_ - substitutionsOut(); left > 0; --left) {
    Request best;
    double most = 0;
    for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
      if (target_[n] != NO_TARGET || retries_[n] > MAX_RETRIES) continue;
      for (int t = 0; t < types_; ++t) {
        if (!(gain(n, t) > most) || !hasRoom(t, n)) continue;
        most = gain(n, t);
        best = {n, t};
      }
    }
    if (most <= 0) return;
    request(best.number, best.type);
  }
}

int TypeRequests::substitutionsOut() const {
  int count = 0;
  for (std::size_t i = 0; i < out_.size(); ++i) count += out_[i].inMatch ? 1 : 0;
  return count;
}

void TypeRequests::request(int number, int type) {
  target_[number] = type;
  todo_.push({number, type});
}

void TypeRequests::ask() {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    if (!absent_[n] || world_.ourTeam[n].age != 0) continue;
    absent_[n] = false;
    todo_.push({n, target_[n]});
  }
  const bool inMatch = !isBeforeMatch();
  if (inMatch && (choosesAgain_ || !todo_.empty())) chooseChanges();
  for (; !todo_.empty(); todo_.pop()) {
    todo_.front().inMatch = inMatch;
    send(todo_.front());
  }
}

void TypeRequests::send(const Request& request) {
  bool isFirst = true;
  for (std::size_t i = 0; i < out_.size(); ++i)
    isFirst = isFirst && out_[i].number != request.number;
  if (isFirst) confirmed_[request.number] = world_.ourTypeChanges[request.number];
  comm_.sendChangePlayer(request.number, request.type);
  out_.push(request);
  ++asked_;
}

void TypeRequests::takeAnswers() {
  for (; !comm_.answers.empty(); comm_.answers.pop()) {
    const Answer& answer = comm_.answers.front();
    if (answer.kind == AnswerKind::TYPE_GIVEN) {
      given(answer);
    } else if (!out_.empty()) {
      refused(answer.kind);
    }
  }
  if (chosen_ && !reported_ && isDone()) report();
}

bool TypeRequests::isOut(int number, int type) const {
  for (std::size_t i = 0; i < out_.size(); ++i) {
    if (out_[i].isFor(number, type)) return true;
  }
  return false;
}

void TypeRequests::given(const Answer& answer) {
  if (!isOut(answer.number, answer.type)) return;
  while (!out_.front().isFor(answer.number, answer.type)) endUnanswered();
  const auto [number, type, inMatch] = out_.front();
  out_.pop();
  countGranted(inMatch);
  if (target_[number] == type) target_[number] = NO_TARGET;  // else a detour

  // The announcement comes before the answer, and another change may have followed it.
  if (confirmed_[number] < world_.ourTypeChanges[number]) {
    ++confirmed_[number];
  } else if (world_.ourTeam[number].type != type) {
    world_.setOurType(number, type);
  }
}

/// The answer to the first request is lost; but the change may have been announced.
void TypeRequests::endUnanswered() {
  const auto [number, type, inMatch] = out_.front();
  out_.pop();
  if (typeOf(number) == type) {
    countGranted(inMatch);
  } else {
    ++lost_;
  }
  if (target_[number] == type) target_[number] = NO_TARGET;
}

void TypeRequests::countGranted(bool inMatch) {
  ++granted_;
  if (inMatch) --substitutions_;
}

void TypeRequests::refused(AnswerKind reason) {
  const auto [number, type, inMatch] = out_.front();
  out_.pop();
  ++denied_;
  if (target_[number] != type) return;  // a detour; the way on is still to be answered

  switch (reason) {
    case AnswerKind::NO_SUCH_PLAYER:
      absent_[number] = ++retries_[number] <= MAX_RETRIES;
      if (!absent_[number]) target_[number] = NO_TARGET;
      return;
    case AnswerKind::IN_PLAY:
      ++retries_[number];
      target_[number] = NO_TARGET;
      choosesAgain_ = true;
      return;
    case AnswerKind::NO_SUBSTITUTION_LEFT:
    case AnswerKind::IN_SHOOTOUT:
      target_[number] = NO_TARGET;
      substitutions_ = 0;
      return;
    default:
      capacity_[at(type)] = 0;
      target_[number] = NO_TARGET;
      if (isBeforeMatch()) {
        requestNextBest(number);
      } else {
        choosesAgain_ = true;
      }
  }
}

void TypeRequests::requestNextBest(int number) {
  const int best = bestType(number, NO_TARGET);
  if (best != NO_TARGET && best != typeOf(number)) request(number, best);
}

/// The best type but one that has room for a player.
int TypeRequests::bestType(int number, int except) const {
  int best = NO_TARGET;
  for (int t = 0; t < types_; ++t) {
    if (t == except || !hasRoom(t, number)) continue;
    if (best == NO_TARGET || utility(number, t) > utility(number, best)) best = t;
  }
  return best;
}

void TypeRequests::replace(int number) {
  const bool isWaiting = target_[number] != NO_TARGET || retries_[number] > MAX_RETRIES;
  if (!chosen_ || isBeforeMatch() || isWaiting || substitutions_ <= substitutionsOut()) return;
  const int type = bestType(number, typeOf(number));
  if (type == NO_TARGET) return;
  target_[number] = type;
  send({number, type, true});
}

/// Room for one more beside all but one player, as they will be when all requests are answered.
bool TypeRequests::hasRoom(int type, int except) const {
  int owners = 0;
  for (int n = GOALIE; n <= LAST_SHIRT; ++n) {
    if (n == except) continue;
    const int has = target_[n] != NO_TARGET ? target_[n] : typeOf(n);
    if (has == type) ++owners;
  }
  return owners < capacity_[at(type)];
}

/// In play nothing more comes: what is still without an answer then will stay so.
bool TypeRequests::isDone() const {
  if (!todo_.empty() || choosesAgain_) return false;
  const bool waitsForServer =
      !out_.empty() || std::find(absent_.begin(), absent_.end(), true) != absent_.end();
  return !waitsForServer || world_.playMode == PLAY_MODE_PLAY_ON;
}

void TypeRequests::report() {
  reported_ = true;
  std::cerr << "Coach: player types: ";
  writeCounts(std::cerr);
  std::cerr << "\n";
}

void TypeRequests::writeCounts(std::ostream& out) const {
  out << asked_ << " asked, " << granted_ << " given, " << denied_ << " refused";
  const int silent = lost_ + static_cast<int>(out_.size());
  if (silent > 0) out << ", " << silent << " without an answer";
}

}  // namespace vok
