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
  if (count == requests.size()) return;
  requests[(first + count) % requests.size()] = request;
  ++count;
}

void TypeLimits::Queue::pop() {
  first = (first + 1) % requests.size();
  --count;
}

bool TypeLimits::Queue::holds(Request request) const {
  for (std::size_t i = 0; i < count; ++i) {
    const Request& queued = requests[(first + i) % requests.size()];
    if (queued.number == request.number && queued.type == request.type) return true;
  }
  return false;
}

TypeLimits::TypeLimits(Worldmodel& coachedWorld, Comm& connection)
    : world(coachedWorld),
      comm(connection),
      types(static_cast<int>(coachedWorld.playerType.size())),
      assignment(LAST_PLAYER - FIRST_FIELD_PLAYER + 1, coachedWorld.playerType.size()),
      capacity(coachedWorld.playerType.size()) {
  target.fill(-1);
  // The server names our own players' types without a comma.
  world.ownChangesWithoutComma = true;
}

void TypeLimits::setUtility(int number, int type, double utility) {
  assignment.setUtility(fieldPlayer(number), at(type), utility);
}

double TypeLimits::utility(int number, int type) const {
  return assignment.utility(fieldPlayer(number), at(type));
}

int TypeLimits::typeOf(int number) const {
  return std::max(world.ourTeam[at(number)].type, DEFAULT_TYPE);
}

bool TypeLimits::isAnnounced(int type) const {
  return type == DEFAULT_TYPE || world.playerType[at(type)].state != -1;
}

bool TypeLimits::isBeforeMatch() const {
  return world.time == 0 && world.playMode == PLAY_MODE_BEFORE_KICK_OFF;
}

void TypeLimits::choose(int substitutions) {
  if (types == 0) return;
  chosen = true;
  readCapacities();
  if (isBeforeMatch()) {
    chooseAll();
  } else {
    chooseChanges(substitutions);
  }
  ask();
}

void TypeLimits::readCapacities() {
  for (int t = 0; t < types; ++t) capacity[at(t)] = isAnnounced(t) ? playersPerType() : 0;
}

void TypeLimits::chooseAll() {
  int& goaliesType = capacity[at(typeOf(GOALIE))];
  --goaliesType;
  assignment.solve(capacity);
  ++goaliesType;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    target[at(n)] = assignment.typeOf(fieldPlayer(n));
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
    if (state[at(n)] != target[at(n)]) target[at(n)] = -1;
  }
  // Whoever no coach has given a type gets any at the kick-off. So the default type is asked for,
  // last, when the others have left it.
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (target[at(n)] == DEFAULT_TYPE && typeOf(n) == DEFAULT_TYPE) todo.push({n, DEFAULT_TYPE});
    if (target[at(n)] == typeOf(n) && typeOf(n) != DEFAULT_TYPE) target[at(n)] = -1;
  }
}

/// Plans the changes whose types are free; `state` is what the players have by then.
bool TypeLimits::planFree(Types& state) {
  bool any = false;
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    const int wanted = target[at(n)];
    if (!waits(n, state)) continue;
    if (std::count(state.begin() + 1, state.end(), wanted) >= capacity[at(wanted)]) continue;
    state[at(n)] = wanted;
    todo.push({n, wanted});
    any = true;
  }
  return any;
}

bool TypeLimits::waits(int number, const Types& state) const {
  return target[at(number)] != -1 && state[at(number)] != target[at(number)];
}

/// True when another one waits for the player's type.
bool TypeLimits::isInTheWay(int number, const Types& state) const {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (waits(n, state) && target[at(n)] == state[at(number)]) return true;
  }
  return false;
}

/// Players in a ring want each other's types: one makes room by way of a free type.
bool TypeLimits::planDetour(int number, Types& state) {
  for (int t = 0; t < types; ++t) {
    if (std::count(state.begin() + 1, state.end(), t) >= capacity[at(t)]) continue;
    state[at(number)] = t;
    todo.push({number, t});
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
      if (target[at(n)] != -1) continue;
      for (int t = 0; t < types; ++t) {
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
  target[at(number)] = type;
  todo.push({number, type});
}

void TypeLimits::ask() {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_PLAYER; ++n) {
    if (!absent[at(n)] || world.ourTeam[at(n)].age != 0) continue;
    absent[at(n)] = false;
    todo.push({n, target[at(n)]});
  }
  for (; !todo.empty(); todo.pop()) {
    const Request& next = todo.front();
    comm.sendChangePlayer(next.number, next.type);
    pending.push(next);
    ++asked;
  }
}

void TypeLimits::takeAnswers() {
  TypeAnswer answer;
  while (comm.typeAnswers.next(answer)) {
    if (answer.kind == TypeAnswerKind::GIVEN) {
      given(answer);
    } else if (!pending.empty()) {
      refused(answer.kind);
    }
  }
  if (!chosen || reported) return;
  const bool waitsForServer =
      !pending.empty() || std::find(absent.begin(), absent.end(), true) != absent.end();
  if (todo.empty() && (!waitsForServer || world.playMode == PLAY_MODE_PLAY_ON)) report();
}

void TypeLimits::given(const TypeAnswer& answer) {
  const Request request{answer.number, answer.type};
  if (!pending.holds(request)) return;
  while (pending.front().number != request.number || pending.front().type != request.type) {
    endUnanswered();
  }
  pending.pop();
  ++granted;
  if (target[at(request.number)] != request.type) return;  // a detour
  target[at(request.number)] = -1;

  WPlayer& player = world.ourTeam[at(request.number)];
  if (player.type == request.type) return;
  player.setType(world.playerType[at(request.type)]);
  player.type = request.type;
}

/// The answer to the first request is lost; but the change may have been announced.
void TypeLimits::endUnanswered() {
  const Request request = pending.front();
  pending.pop();
  ++(typeOf(request.number) == request.type ? granted : lost);
  if (target[at(request.number)] == request.type) target[at(request.number)] = -1;
}

void TypeLimits::refused(TypeAnswerKind reason) {
  const Request request = pending.front();
  pending.pop();
  ++denied;
  const int number = request.number;
  if (target[at(number)] != request.type) return;  // a detour; the way on is still to be answered

  const bool again = ++retries[at(number)] <= MAX_RETRIES;
  if (!again) target[at(number)] = -1;
  switch (reason) {
    case TypeAnswerKind::NO_SUCH_PLAYER:
      absent[at(number)] = again;
      return;
    case TypeAnswerKind::IN_PLAY:
      if (again) todo.push(request);
      return;
    case TypeAnswerKind::NO_SUBSTITUTION_LEFT:
      target[at(number)] = -1;
      todo.clear();
      return;
    default:
      capacity[at(request.type)] = 0;
      askForNextBest(number);
  }
}

void TypeLimits::askForNextBest(int number) {
  target[at(number)] = -1;
  const int next = bestLeft(number);
  if (next == -1 || next == typeOf(number)) return;
  // In the match a change has to be worth the substitution.
  if (!isBeforeMatch() && !(utility(number, next) > utility(number, typeOf(number)))) return;
  request(number, next);
}

int TypeLimits::bestLeft(int number) const {
  int best = -1;
  for (int t = 0; t < types; ++t) {
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
    const int has = target[at(n)] != -1 ? target[at(n)] : typeOf(n);
    if (has == type) ++wearers;
  }
  return wearers < capacity[at(type)];
}

void TypeLimits::report() {
  reported = true;
  std::cerr << "Coach: player types: " << asked << " asked, " << granted << " given, " << denied
            << " refused";
  const int silent = lost + pending.size();
  if (silent > 0) std::cerr << ", " << silent << " without an answer";
  std::cerr << "\n";
}

}  // namespace vok
