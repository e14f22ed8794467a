// A server that answers the coach's requests for player types, step by step as the characters of
// the input say: by the rules, wrongly or not at all. The first four characters choose the optional
// keys and the limits. As long as the server keeps to the rules, the coach's picture of its
// players' types must be the server's.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

#include "Config.h"
#include "harness.h"

namespace {

using namespace vok;
using fuzz::Match;
using fuzz::require;
using fuzz::TypeRequest;

constexpr unsigned WITHIN_LIMITS = 2;   // of the optional keys: the one that makes the requests
constexpr int UNTOLD_LIMIT = 3;         // players of a type when no limit is told
constexpr int ROUNDS_TO_SETTLE = 100;   // in which all requests must have been made
constexpr std::size_t MAX_STEPS = 200;  // more would only take longer

/// Refusals, each by its step.
constexpr struct {
  char step;
  const char* text;
} REFUSALS[] = {
    {'F', "(warning max_of_that_type_on_field)"},
    {'L', "(warning no_left_of_that_type)"},
    {'R', "(error out_of_range_player_type)"},
    {'N', "(warning no_such_player)"},
    {'P', "(warning cannot_sub_while_playon)"},
    {'S', "(warning no_subs_left)"},
    {'O', "(warning cannot_sub_while_penalty_shootouts)"},
};

/// Answers to other commands, which change nothing for the requests.
constexpr const char* OTHER_ANSWERS[] = {
    "(ok say)",
    "(ok eye on)",
    "(ok check_ball 12 in_field)",
    "(ok start)",
    "(ok team_names (team l Alpha) (team r Beta))",
    "(ok change_player_type)",
    "(error illegal_command_form)",
    "(error unknown_command)",
    "(warning message_not_null_terminated)",
    "(warning compression_ineffective)",
};

constexpr struct {
  char step;
  const char* call;
} CALLS[] = {{'p', "play_on"}, {'i', "kick_in_l"}, {'h', "half_time"}, {'z', "penalty_setup_l"}};

class Server {
 public:
  explicit Server(std::string_view head);

  /// Does what the first characters of the input say; returns how many.
  std::size_t step(std::string_view input);

  /// Goes on by the rules, or by its standing refusal, until the coach has no more to ask.
  void settle();

 private:
  static void wish();
  static std::string playerType(int id);
  void view();
  void call(const char* mode);
  void send(const std::string& text) { match_.receive(text); }
  std::size_t sendLine(std::string_view input);
  std::size_t changeUnasked(std::string_view input);
  void comeOrGo(int number);
  void loseRequest();
  void grantHalf(bool isAnnounced);
  void refuse(const char* text);
  bool answerNext();
  const char* refusal(const TypeRequest& request) const;
  void change(const TypeRequest& request, bool isAnnounced, bool isAnswered);
  bool isFree(int type, int number) const;
  bool hasBegun() const { return mode_ != "before_kick_off"; }

  Match& match_ = Match::instance();
  int limit_;
  int types_;
  int substitutions_;
  Squad<int> type_;
  Squad<bool> present_;
  std::string mode_ = "before_kick_off";
  long time_ = 0;
  std::size_t otherAnswer_ = 0;
  const char* lastRefusal_ = REFUSALS[0].text;
  const char* standingRefusal_ = nullptr;  ///< what every request gets; null when the rules decide
  bool hasView_ = false;
  bool keepsRules_ = true;     ///< so far
  bool announcesAll_ = true;   ///< each change has come with its request, announcement and answer
  bool isUndisturbed_ = true;  ///< nothing that the coach could not foresee has happened
};

int number(char c) {
  return (c - '0') & 0x7f;
}

Server::Server(std::string_view head)
    : limit_(number(head[1]) % 4),
      types_(7 + number(head[2]) % 12),
      substitutions_(number(head[3]) % 5) {
  wish();
  present_.fill(true);
  fuzz::setOptionalKeys(static_cast<unsigned>(number(head[0])) | WITHIN_LIMITS);
  const std::string limit = limit_ == 0 ? "" : "(pt_max " + std::to_string(limit_) + ")";
  require(match_.checkIn(fuzz::INIT_ANSWER, fuzz::SERVER_PARAM,
                         "(player_param (player_types " + std::to_string(types_) + ")" + limit +
                             "(subs_max " + std::to_string(substitutions_) + "))"),
          "the check-in is taken");
  if (limit_ == 0) limit_ = UNTOLD_LIMIT;
  // With fewer places than players, some must keep the default type beyond its limit.
  isUndisturbed_ = types_ * limit_ >= LAST_SHIRT;
  for (int type = 0; type < types_; ++type) send(playerType(type));
}

/// Each player wants another type, so that requests get into each other's way.
void Server::wish() {
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    const std::string key = "player" + std::to_string(n) + "_extra_stamina_effort_";
    setEntry((key + "weight").c_str(), "5");
    setEntry((key + "delta").c_str(), std::to_string(8 * n).c_str());
  }
}

/// Extra stamina grows with the number, what else the coach looks at does not.
std::string Server::playerType(int id) {
  return "(player_type (id " + std::to_string(id) + ")(player_speed_max 1.05)(stamina_inc_max " +
         std::to_string(40 + 7 * id % 18) + ")(player_decay 0." +
         std::to_string(400 + 5 * id % 18) + ")(inertia_moment 5)(dash_power_rate 0.00" +
         std::to_string(60 + 11 * id % 18) + ")(player_size 0.3)(kickable_margin 0." +
         std::to_string(70 + 13 * id % 18) + ")(kick_rand 0.1)(extra_stamina " +
         std::to_string(6 * id) + ")(effort_max 1)(effort_min 0.6))";
}

/// One cycle, which the coach answers.
void Server::view() {
  hasView_ = true;
  if (hasBegun()) ++time_;
  time_ = std::max(time_, match_.itsCoach().world->time);
  std::string text = "(see_global " + std::to_string(time_) + " ((b) 0 0 0 0)";
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (present_[n]) text += " ((p \"Alpha\" " + std::to_string(n) + ") -9 0 0 0 0 0)";
  }
  send(text + ")");
  send("(think)");
}

void Server::call(const char* mode) {
  mode_ = mode;
  isUndisturbed_ = false;
  send("(hear " + std::to_string(time_) + " referee " + mode + ")");
}

bool Server::isFree(int type, int number) const {
  int owners = 0;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (n != number && type_[n] == type) ++owners;
  }
  return owners < limit_;
}

const char* Server::refusal(const TypeRequest& request) const {
  if (mode_ == "play_on") return "(warning cannot_sub_while_playon)";
  if (mode_.starts_with("penalty")) return "(warning cannot_sub_while_penalty_shootouts)";
  if (!present_[request.number]) return "(warning no_such_player)";
  if (hasBegun() && substitutions_ == 0) return "(warning no_subs_left)";
  if (isFree(request.type, request.number)) return nullptr;
  return hasBegun() ? "(warning no_left_of_that_type)" : "(warning max_of_that_type_on_field)";
}

void Server::change(const TypeRequest& request, bool isAnnounced, bool isAnswered) {
  type_[request.number] = request.type;
  const std::string what =
      "change_player_type " + std::to_string(request.number) + " " + std::to_string(request.type);
  if (isAnnounced) send("(" + what + ")");
  if (isAnswered) send("(ok " + what + ")");
}

/// False when there is no request.
bool Server::answerNext() {
  const auto request = match_.takeRequest();
  if (!request) return false;
  if (standingRefusal_ != nullptr) {
    send(standingRefusal_);
  } else if (const char* reason = refusal(*request)) {
    require(!isUndisturbed_, "what is asked for is free, as far as the coach can know");
    send(reason);
  } else {
    if (hasBegun()) --substitutions_;
    change(*request, true, true);
  }
  return true;
}

std::size_t Server::step(std::string_view input) {
  const char c = input[0];
  if (c == '(') return sendLine(input);
  if (c == 'c' || c == 'G') return changeUnasked(input);
  if ('0' <= c && c <= '9') comeOrGo(FIRST_FIELD_PLAYER + c - '0');
  if (c == 'v') view();
  if (c == 'a') answerNext();
  while (c == 'A' && answerNext()) {
  }
  if (c == 'l') loseRequest();
  if (c == 'm' || c == 'n') grantHalf(c == 'm');
  if (c == 'd') send(OTHER_ANSWERS[otherAnswer_++ % std::size(OTHER_ANSWERS)]);
  if (c == 'o') send("(change_player_type 7)");
  for (const auto& row : CALLS) {
    if (row.step == c) call(row.call);
  }
  if (c == 'E') standingRefusal_ = lastRefusal_;
  for (const auto& row : REFUSALS) {
    if (row.step == c) refuse(row.text);
  }
  return 1;
}

/// A datagram as it stands, up to the end of its line.
std::size_t Server::sendLine(std::string_view input) {
  const std::string_view line = input.substr(0, input.find('\n'));
  keepsRules_ = isUndisturbed_ = false;
  match_.receive(line);
  return line.size();
}

/// 'c': the server changes a player by itself, within its limits. 'G': it says that it has given
/// what nobody may have asked for.
std::size_t Server::changeUnasked(std::string_view input) {
  constexpr std::size_t LENGTH = 3;
  if (input.size() < LENGTH) return input.size();
  const TypeRequest given{1 + number(input[1]) % LAST_SHIRT, number(input[2]) % types_};
  announcesAll_ = false;
  if (hasView_) isUndisturbed_ = false;  // else the coach knows it when it chooses
  if (input[0] == 'G') {
    keepsRules_ = isUndisturbed_ = false;
    change(given, false, true);
  } else if (isFree(given.type, given.number)) {
    change(given, true, false);
  }
  return LENGTH;
}

void Server::comeOrGo(int number) {
  present_[number] = !present_[number];
  isUndisturbed_ = false;
}

void Server::loseRequest() {
  match_.takeRequest();
  announcesAll_ = isUndisturbed_ = false;
}

/// Grants the next request; either the answer or the announcement is lost.
void Server::grantHalf(bool isAnnounced) {
  const auto request = match_.takeRequest();
  if (!request || refusal(*request) != nullptr) return;
  // The coach may take what was lost before, or another change, for the announcement.
  if (!isAnnounced && !announcesAll_) keepsRules_ = false;
  announcesAll_ = isUndisturbed_ = false;
  if (hasBegun()) --substitutions_;
  change(*request, isAnnounced, !isAnnounced);
}

void Server::refuse(const char* text) {
  keepsRules_ = isUndisturbed_ = false;
  lastRefusal_ = text;
  send(text);
}

void Server::settle() {
  present_.fill(true);
  bool isAsked = true;
  for (int round = 0; isAsked; ++round) {
    require(round < ROUNDS_TO_SETTLE, "the requests come to an end");
    view();
    isAsked = answerNext();
    while (answerNext()) {
    }
  }
  view();
  if (!keepsRules_) return;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n)
    require(match_.itsCoach().plType[n] == type_[n], "the coach knows what its players have");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t HEAD = 4;
  if (size < HEAD) return 0;
  std::string_view input(reinterpret_cast<const char*>(data), size);
  Server server(input.substr(0, HEAD));
  input.remove_prefix(HEAD);
  for (std::size_t steps = 0; !input.empty() && steps < MAX_STEPS; ++steps)
    input.remove_prefix(server.step(input));
  server.settle();
  Match::instance().expectGoodCycle();
  return 0;
}
