#include "playerport.h"

#include <algorithm>
#include <cmath>

namespace vok::practice {

namespace {

constexpr int maxMissedInRow = 3;
constexpr int maxServed = 20;  // at once: a flood must not keep the match from its next cycle
// A player that hears nothing for longer takes the server for dead.
constexpr auto sensesAtLeastEvery = std::chrono::seconds(1);
constexpr double halfView = 45;  // degrees

std::string shortNumber(double number) {
  std::string text;
  appendNumber(text, std::round(number * 100) / 100);
  return text;
}

}  // namespace

bool PlayerPort::open(int port, std::string& error) {
  return publicSocket.open(port, error) && ownSocket.open(0, error);
}

Company PlayerPort::company() {
  return {{publicSocket.descriptor(), ownSocket.descriptor()}, [this] { return serve(); }};
}

bool PlayerPort::serve() {
  bool came = false;
  sockaddr_in from{};
  for (int i = 0; i < maxServed; ++i) {
    const auto asking = publicSocket.receive(from);
    if (asking) letIn(asking->text, from);
    const auto command = ownSocket.receive(from);
    if (command) take(command->text, from);
    if (!asking && !command) break;
    came = true;
  }
  if (Clock::now() >= nextSenses) sendSenses();
  return came;
}

void PlayerPort::letIn(std::string_view text, const sockaddr_in& from) {
  const std::string_view goalieEnd = " (goalie))";
  const bool goalie = text.ends_with(goalieEnd);
  std::string init(text);
  if (goalie) init.replace(init.size() - goalieEnd.size(), goalieEnd.size(), ")");
  const auto name = initTeam(init);
  if (!name) {
    publicSocket.send(text.starts_with("(init ") ? "(error illegal_command_form)"
                                                 : "(error only_init_allowed_on_init_port)",
                      from);
    return;
  }
  const int number = freeNumber(goalie);
  if ((!team.empty() && *name != team) || number == 0 || find(from) != clients.end()) {
    publicSocket.send("(error no_more_team_or_player_or_goalie)", from);
    return;
  }
  team = *name;
  clients.push_back({from, number});
  ownSocket.send(std::string("(init ") + letter(match.settings().coachSide) + " " +
                     std::to_string(number) + " " + match.modeName() + ")",
                 from);
  for (const std::string& told : match.checkIn()) {
    if (told.starts_with("(server_param ") || told.starts_with("(player_")) {
      ownSocket.send(told, from);
    }
  }
}

/// 0 when none is.
int PlayerPort::freeNumber(bool goalie) const {
  for (int number = goalie ? 1 : 2; number <= (goalie ? 1 : 11); ++number) {
    if (std::none_of(clients.begin(), clients.end(),
                     [=](const Client& c) { return c.number == number; })) {
      return number;
    }
  }
  return 0;
}

std::vector<PlayerPort::Client>::iterator PlayerPort::find(const sockaddr_in& address) {
  return std::find_if(clients.begin(), clients.end(),
                      [&](const Client& c) { return sameAddress(c.address, address); });
}

// What a player would do is not done.
void PlayerPort::take(std::string_view text, const sockaddr_in& from) {
  const auto client = find(from);
  if (client == clients.end()) return;
  if (text == "(bye)") {
    clients.erase(client);
  } else if (text == "(done)") {
    client->answers = client->done = true;
  } else if (text.starts_with("(clang ")) {
    ownSocket.send("(ok " + std::string(text.substr(1)), from);
  }
}

void PlayerPort::sendToAll(const std::string& text) const {
  for (const Client& client : clients) ownSocket.send(text, client.address);
}

void PlayerPort::sendNews(const std::vector<std::string>& texts) const {
  for (const std::string& text : texts) {
    const bool call = text.find(" referee ") != std::string::npos;
    if (call || text.starts_with("(change_player_type ")) sendToAll(text);
  }
}

void PlayerPort::sendSenses() {
  nextSenses = Clock::now() + sensesAtLeastEvery;
  for (const Client& client : clients) {
    const Team& ours = match.state().team(match.settings().coachSide);
    const Player& p = ours[static_cast<std::size_t>(client.number - 1)];
    const double course =
        p.vel.x == 0 && p.vel.y == 0 ? 0 : normalDegrees(direction({}, p.vel) - p.body - p.neck);
    ownSocket.send("(sense_body " + std::to_string(match.time()) +
                       " (view_mode high normal) (stamina " + shortNumber(p.stamina) + " " +
                       shortNumber(p.effort) + ") (speed " + shortNumber(distance({}, p.vel)) +
                       " " + shortNumber(course) + ") (head_angle " + shortNumber(p.neck) +
                       ") (kick 0) (dash 0) (turn 0) (say 0) (turn_neck 0) (catch 0) (move 0)"
                       " (change_view 0) (arm (movable 0) (expires 0) (target 0 0) (count 0))"
                       " (focus (target none) (count 0)) (tackle (expires " +
                       std::to_string(p.tackling) + ") (count 0)))",
                   client.address);
    const std::string view = see(p);
    if (!view.empty()) ownSocket.send(view, client.address);
  }
}

/// The ball is all that a player sees; nothing when it is not before it.
std::string PlayerPort::see(const Player& p) const {
  const Vector2d ball = match.state().ball.pos;
  const double angle = normalDegrees(direction(p.pos, ball) - p.body - p.neck);
  if (std::abs(angle) > halfView) return {};
  return "(see " + std::to_string(match.time()) + " ((b) " + shortNumber(distance(p.pos, ball)) +
         " " + shortNumber(angle) + "))";
}

void PlayerPort::sendMessage(const std::string& message) const {
  if (message.empty()) return;
  const std::string voice =
      match.settings().coachSide == Side::Left ? "online_coach_left" : "online_coach_right";
  sendToAll("(hear " + std::to_string(match.time()) + " " + voice + " (freeform \"" + message +
            "\"))");
}

void PlayerPort::think() {
  for (Client& client : clients) client.done = false;
  sendToAll("(think)");
}

bool PlayerPort::allDone() const {
  return std::all_of(clients.begin(), clients.end(),
                     [](const Client& c) { return c.done || !c.answers; });
}

void PlayerPort::endCycle() {
  for (Client& client : clients)
    client.missedInRow = client.done || !client.answers ? 0 : client.missedInRow + 1;
  std::erase_if(clients, [](const Client& c) { return c.missedInRow == maxMissedInRow; });
}

}  // namespace vok::practice
