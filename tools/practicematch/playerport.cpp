#include "playerport.h"

#include <algorithm>
#include <cmath>

namespace vok::practicematch {

namespace {

constexpr int MAX_MISSED_IN_ROW = 3;
constexpr int MAX_SERVED = 20;  // datagrams at once: a flood must not delay the next cycle
// A player that hears nothing for longer assumes that the server is dead.
constexpr auto SENSES_AT_LEAST_EVERY = std::chrono::seconds(1);
constexpr double HALF_VIEW = 45;  // degrees

std::string shortNumber(double number) {
  std::string text;
  appendNumber(text, std::round(number * 100) / 100);
  return text;
}

}  // namespace

bool PlayerPort::open(int port, std::string& error) {
  return publicSocket_.open(port, error) && ownSocket_.open(0, error);
}

Company PlayerPort::company() {
  return {{publicSocket_.descriptor(), ownSocket_.descriptor()}, [this] { return serve(); }};
}

bool PlayerPort::serve() {
  bool came = false;
  sockaddr_in from{};
  for (int i = 0; i < MAX_SERVED; ++i) {
    const auto asking = publicSocket_.receive(from);
    if (asking) letIn(asking->text, from);
    const auto command = ownSocket_.receive(from);
    if (command) take(command->text, from);
    if (!asking && !command) break;
    came = true;
  }
  if (Clock::now() >= nextSenses_) sendSenses();
  return came;
}

void PlayerPort::letIn(std::string_view text, const sockaddr_in& from) {
  const std::string_view goalieEnd = " (goalie))";
  const bool goalie = text.ends_with(goalieEnd);
  std::string init(text);
  if (goalie) init.replace(init.size() - goalieEnd.size(), goalieEnd.size(), ")");
  const auto name = initTeam(init);
  if (!name) {
    publicSocket_.send(text.starts_with("(init ") ? "(error illegal_command_form)"
                                                  : "(error only_init_allowed_on_init_port)",
                       from);
    return;
  }
  const int number = freeNumber(goalie);
  if ((!team_.empty() && *name != team_) || number == 0 || find(from) != clients_.end()) {
    publicSocket_.send("(error no_more_team_or_player_or_goalie)", from);
    return;
  }
  team_ = *name;
  clients_.push_back({from, number});
  ownSocket_.send(std::string("(init ") + letter(match_.settings().coachSide) + " " +
                      std::to_string(number) + " " + match_.modeName() + ")",
                  from);
  for (const std::string& told : match_.checkIn()) {
    if (told.starts_with("(server_param ") || told.starts_with("(player_")) {
      ownSocket_.send(told, from);
    }
  }
}

/// The lowest free shirt number, or 0 when there is none.
int PlayerPort::freeNumber(bool goalie) const {
  for (int number = goalie ? 1 : 2; number <= (goalie ? 1 : LAST_SHIRT); ++number) {
    if (std::none_of(clients_.begin(), clients_.end(),
                     [=](const Client& c) { return c.number == number; })) {
      return number;
    }
  }
  return 0;
}

std::vector<PlayerPort::Client>::iterator PlayerPort::find(const sockaddr_in& address) {
  return std::find_if(clients_.begin(), clients_.end(),
                      [&](const Client& c) { return sameAddress(c.address, address); });
}

// Commands that would move a player are ignored.
void PlayerPort::take(std::string_view text, const sockaddr_in& from) {
  const auto client = find(from);
  if (client == clients_.end()) return;
  if (text == "(bye)") {
    clients_.erase(client);
  } else if (text == "(done)") {
    client->answers = client->done = true;
  } else if (text.starts_with("(clang ")) {
    ownSocket_.send("(ok " + std::string(text.substr(1)), from);
  }
}

void PlayerPort::sendToAll(const std::string& text) const {
  for (const Client& client : clients_) ownSocket_.send(text, client.address);
}

void PlayerPort::sendNews(const std::vector<std::string>& texts) const {
  for (const std::string& text : texts) {
    const bool call = text.find(" referee ") != std::string::npos;
    if (call || text.starts_with("(change_player_type ")) sendToAll(text);
  }
}

void PlayerPort::sendSenses() {
  nextSenses_ = Clock::now() + SENSES_AT_LEAST_EVERY;
  for (const Client& client : clients_) {
    const Team& ours = match_.state().team(match_.settings().coachSide);
    const Player& p = ours[client.number];
    const double course =
        p.vel.x == 0 && p.vel.y == 0 ? 0 : normalDegrees(direction({}, p.vel) - p.body - p.neck);
    ownSocket_.send("(sense_body " + std::to_string(match_.time()) +
                        " (view_mode high normal) (stamina " + shortNumber(p.stamina) + " " +
                        shortNumber(p.effort) + ") (speed " + shortNumber(distance({}, p.vel)) +
                        " " + shortNumber(course) + ") (head_angle " + shortNumber(p.neck) +
                        ") (kick 0) (dash 0) (turn 0) (say 0) (turn_neck 0) (catch 0) (move 0)"
                        " (change_view 0) (arm (movable 0) (expires 0) (target 0 0) (count 0))"
                        " (focus (target none) (count 0)) (tackle (expires " +
                        std::to_string(p.tackling) + ") (count 0)))",
                    client.address);
    const std::string view = see(p);
    if (!view.empty()) ownSocket_.send(view, client.address);
  }
}

/// A player sees only the ball. Empty when the ball is outside its view.
std::string PlayerPort::see(const Player& p) const {
  const Vector2d ball = match_.state().ball.pos;
  const double angle = normalDegrees(direction(p.pos, ball) - p.body - p.neck);
  if (std::abs(angle) > HALF_VIEW) return {};
  return "(see " + std::to_string(match_.time()) + " ((b) " + shortNumber(distance(p.pos, ball)) +
         " " + shortNumber(angle) + "))";
}

void PlayerPort::sendMessage(const std::string& message) const {
  if (message.empty()) return;
  const std::string voice =
      match_.settings().coachSide == Side::Left ? "online_coach_left" : "online_coach_right";
  sendToAll("(hear " + std::to_string(match_.time()) + " " + voice + " (freeform \"" + message +
            "\"))");
}

void PlayerPort::think() {
  for (Client& client : clients_) client.done = false;
  sendToAll("(think)");
}

bool PlayerPort::allDone() const {
  return std::all_of(clients_.begin(), clients_.end(),
                     [](const Client& c) { return c.done || !c.answers; });
}

void PlayerPort::endCycle() {
  for (Client& client : clients_)
    client.missedInRow = client.done || !client.answers ? 0 : client.missedInRow + 1;
  std::erase_if(clients_, [](const Client& c) { return c.missedInRow == MAX_MISSED_IN_ROW; });
}

}  // namespace vok::practicematch
