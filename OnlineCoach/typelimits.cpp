#include "typelimits.h"

#include <algorithm>
#include <iostream>

#include "constants.h"

namespace vok {

namespace {

constexpr int GOALIE = 1;
constexpr int FIRST_FIELD_PLAYER = 2;
constexpr int LAST_PLAYER = 11;
constexpr int DEFAULT_TYPE = 0;
constexpr int UNTOLD_LIMIT = 3;  // players of a type when the server does not tell
constexpr int MAX_RETRIES = 3;

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

std::size_t fieldPlayer(int number) {
  return at(number - FIRST_FIELD_PLAYER);
}

int playersPerType() {
  return playerParams.pt_max >= 1 ? static_cast<int>(std::min(playerParams.pt_max, 11.0))
                                  : UNTOLD_LIMIT;
}

}  // namespace

void TypeLimits::Queue::push(Request request) {
  if (count_ == requests_.size()) return;
  requests_[(first_ + count_) % requests_.size()] = request;
  ++count_;
}

void TypeLimits::Queue::pop() {
  first_ = (first_ + 1) % requests_.size();
  --count_;
}

bool TypeLimits::Queue::holds(Request request) const {
  for (std::size_t i = 0; i < count_; ++i) {
    const Request& queued = requests_[(first_ + i) % requests_.size()];
    if (queued.number == request.number && queued.type == request.type) return true;
  }
  return false;
}

TypeLimits::TypeLimits(Worldmodel& world, Comm& connection)
    : world_(world),
      comm_(connection),
      types_(static_cast<int>(world.playerType.size())),
      assignment_(LAST_PLAYER - FIRST_FIELD_PLAYER + 1, world.playerType.size()),
      capacity_(world.playerType.size()) {
  target_.fill(-1);
  // The server names our own players' types without a comma.
  world_.ownChangesWithoutComma = true;
}

void TypeLimits::setUtility(int number, int type, double utility) {
  assignment_.setUtility(fieldPlayer(number), at(type), utility);
}

double TypeLimits::utility(int number, int type) const {
  return assignment_.utility(fieldPlayer(number), at(type));
}

int TypeLimits::typeOf(int number) const {
  return std::max(world_.ourTeam[number].type, DEFAULT_TYPE);
}

bool TypeLimits::isAnnounced(int type) const {
  return type == DEFAULT_TYPE || world_.playerType[at(type)].state != -1;
}

bool TypeLimits::isBeforeMatch() const {
  return world_.time == 0 && world_.playMode == PLAY_MODE_BEFORE_KICK_OFF;
}

void TypeLimits::choose(int substitutions) {
  if (types_ == 0) return;
  chosen_ = true;
  readCapacities();
  if (isBeforeMatch()) {
    chooseAll();
  } else {
    chooseChanges(substitutions);
  }
  ask();
}

void TypeLimits::readCapacities() {
  for (int t = 0; t < types_; ++t) capacity_[at(t)] = isAnnounced(t) ? playersPerType() : 0;
}

void TypeLimits::chooseAll() {
  int& goaliesType = capacity_[at(typeOf(GOALIE))];
  --goaliesType;
  assignment_.solve(capacity_);
  ++goaliesType;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    target_[at(n)] = assignment_.typeOf(fieldPlayer(n));
  }
  plan();
}

/// Puts the requests for all targets into an order that the server can follow.
void TypeLimits::plan() {
  Types state{};
  for (int n = GOALIE; n <= LAST_PLAYER; ++n) state[at(n)] = typeOf(n);
  while (planFree(state)) {
  }
  // Who waits still waits for another one. Each goes out of the way once at most.
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (waits(n, state) && isInTheWay(n, state) && !planDetour(n, state)) break;
    while (planFree(state)) {
    }
  }
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (state[at(n)] != target_[at(n)]) target_[at(n)] = -1;
  }
  // Whoever no coach has given a type gets any at the kick-off. So the default type is asked for,
  // last, when the others have left it.
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (target_[at(n)] == DEFAULT_TYPE && typeOf(n) == DEFAULT_TYPE) todo_.push({n, DEFAULT_TYPE});
    if (target_[at(n)] == typeOf(n) && typeOf(n) != DEFAULT_TYPE) target_[at(n)] = -1;
  }
}

/// Plans the changes whose types are free; `state` is what the players have by then.
bool TypeLimits::planFree(Types& state) {
  bool any = false;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    const int wanted = target_[at(n)];
    if (!waits(n, state)) continue;
    if (std::count(state.begin() + 1, state.end(), wanted) >= capacity_[at(wanted)]) continue;
    state[at(n)] = wanted;
    todo_.push({n, wanted});
    any = true;
  }
  return any;
}

bool TypeLimits::waits(int number, const Types& state) const {
  return target_[at(number)] != -1 && state[at(number)] != target_[at(number)];
}

/// True when another one waits for the player's type.
bool TypeLimits::isInTheWay(int number, const Types& state) const {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (waits(n, state) && target_[at(n)] == state[at(number)]) return true;
  }
  return false;
}

/// Players in a ring want each other's types: one makes room by way of a free type.
bool TypeLimits::planDetour(int number, Types& state) {
  for (int t = 0; t < types_; ++t) {
    if (std::count(state.begin() + 1, state.end(), t) >= capacity_[at(t)]) continue;
    state[at(number)] = t;
    todo_.push({number, t});
    return true;
  }
  return false;
}

/// The most useful changes one by one, since few are allowed.
void TypeLimits::chooseChanges(int substitutions) {
  for (; substitutions > 0; --substitutions) {
    Request best;
    double gain = 0;
    for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
      if (target_[at(n)] != -1) continue;
      for (int t = 0; t < types_; ++t) {
        const double more = utility(n, t) - utility(n, typeOf(n));
        if (!(more > gain) || !hasRoom(t, n)) continue;
        gain = more;
        best = {n, t};
      }
    }
    if (gain <= 0) return;
    request(best.number, best.type);
  }
}

void TypeLimits::request(int number, int type) {
  target_[at(number)] = type;
  todo_.push({number, type});
}

void TypeLimits::ask() {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (!absent_[at(n)] || world_.ourTeam[n].age != 0) continue;
    absent_[at(n)] = false;
    todo_.push({n, target_[at(n)]});
  }
  for (; !todo_.empty(); todo_.pop()) {
    const Request& next = todo_.front();
    comm_.sendChangePlayer(next.number, next.type);
    pending_.push(next);
    ++asked_;
  }
}

void TypeLimits::takeAnswers() {
  for (; !comm_.answers.empty(); comm_.answers.pop()) {
    const Answer& answer = comm_.answers.front();
    if (answer.kind == AnswerKind::TYPE_GIVEN) {
      given(answer);
    } else if (!pending_.empty()) {
      refused(answer.kind);
    }
  }
  if (!chosen_ || reported_) return;
  const bool waitsForServer =
      !pending_.empty() || std::find(absent_.begin(), absent_.end(), true) != absent_.end();
  if (todo_.empty() && (!waitsForServer || world_.playMode == PLAY_MODE_PLAY_ON)) report();
}

void TypeLimits::given(const Answer& answer) {
  const Request request{answer.number, answer.type};
  if (!pending_.holds(request)) return;
  while (pending_.front().number != request.number || pending_.front().type != request.type) {
    endUnanswered();
  }
  pending_.pop();
  ++granted_;
  if (target_[at(request.number)] != request.type) return;  // a detour
  target_[at(request.number)] = -1;

  WPlayer& player = world_.ourTeam[request.number];
  if (player.type == request.type) return;
  player.setType(world_.playerType[at(request.type)]);
  player.type = request.type;
}

/// The answer to the first request is lost; but the change may have been announced.
void TypeLimits::endUnanswered() {
  const Request request = pending_.front();
  pending_.pop();
  ++(typeOf(request.number) == request.type ? granted_ : lost_);
  if (target_[at(request.number)] == request.type) target_[at(request.number)] = -1;
}

void TypeLimits::refused(AnswerKind reason) {
  const Request request = pending_.front();
  pending_.pop();
  ++denied_;
  const int number = request.number;
  if (target_[at(number)] != request.type) return;  // a detour; the way on is still to be answered

  const bool again = ++retries_[at(number)] <= MAX_RETRIES;
  if (!again) target_[at(number)] = -1;
  switch (reason) {
    case AnswerKind::NO_SUCH_PLAYER:
      absent_[at(number)] = again;
      return;
    case AnswerKind::IN_PLAY:
      if (again) todo_.push(request);
      return;
    case AnswerKind::NO_SUBSTITUTION_LEFT:
    case AnswerKind::IN_SHOOTOUT:
      target_[at(number)] = -1;
      todo_.clear();
      return;
    default:
      capacity_[at(request.type)] = 0;
      askForNextBest(number);
  }
}

void TypeLimits::askForNextBest(int number) {
  target_[at(number)] = -1;
  const int next = bestLeft(number);
  if (next == -1 || next == typeOf(number)) return;
  // In the match a change has to be worth the substitution.
  if (!isBeforeMatch() && !(utility(number, next) > utility(number, typeOf(number)))) return;
  request(number, next);
}

int TypeLimits::bestLeft(int number) const {
  int best = -1;
  for (int t = 0; t < types_; ++t) {
    if (!hasRoom(t, number)) continue;
    if (best == -1 || utility(number, t) > utility(number, best)) best = t;
  }
  return best;
}

/// Room for one more beside all but one player, as they will be when all requests are answered.
bool TypeLimits::hasRoom(int type, int except) const {
  int wearers = 0;
  for (int n = GOALIE; n <= LAST_PLAYER; ++n) {
    if (n == except) continue;
    const int has = target_[at(n)] != -1 ? target_[at(n)] : typeOf(n);
    if (has == type) ++wearers;
  }
  return wearers < capacity_[at(type)];
}

void TypeLimits::report() {
  reported_ = true;
  std::cerr << "Coach: player types: " << asked_ << " asked, " << granted_ << " given, " << denied_
            << " refused";
  const int silent = lost_ + pending_.size();
  if (silent > 0) std::cerr << ", " << silent << " without an answer";
  std::cerr << "\n";
}

}  // namespace vok
