#include "loghead.h"

#include <algorithm>

#include "scanner.h"

namespace vok::gamelogs {
namespace {

/// A value ends at the parenthesis that closes its item; a text in quotes may hold others.
bool readValue(Scanner& in, std::string_view& value) {
  const std::string_view text = in.rest();
  std::size_t end = 0;
  if (!text.empty() && text.front() == '"') {
    end = 1;
    while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
  }
  end = text.find(')', std::min(end, text.size()));
  if (end == std::string_view::npos) return false;
  value = text.substr(0, end);
  in.advance(end + 1);
  return true;
}

}  // namespace

std::string_view ParameterList::value(std::string_view name) const {
  for (const auto& [key, text] : items) {
    if (key == name) return text;
  }
  return {};
}

void ParameterList::number(std::string_view name, double& target) const {
  Scanner(value(name)).real(target);
}

void ParameterList::number(std::string_view name, int& target) const {
  Scanner(value(name)).integer(target);
}

bool ParameterList::read(std::string_view line, std::string_view head) {
  Scanner in(line);
  if (!in.literal('(') || !in.literal(head)) return false;
  ParameterList list;
  while (in.skipBlanks().literal('(')) {
    std::string_view name;
    std::string_view value;
    if (!in.run([](char c) { return !isBlank(c) && c != '(' && c != ')'; }, name)) return false;
    if (!readValue(in.skipBlanks(), value)) return false;
    list.items.emplace_back(name, value);
  }
  if (!in.literal(')')) return false;
  items = std::move(list.items);
  return true;
}

void ParameterList::write(std::string_view head, std::string& to) const {
  to.append("(").append(head).append(" ");
  for (const auto& [name, text] : items) {
    to.append("(").append(name).append(" ").append(text).append(")");
  }
  to.append(")\n");
}

analysis::MatchRules LogHead::rules() const {
  analysis::MatchRules rules;
  server.number("half_time", rules.halfTime);
  server.number("simulator_step", rules.simulatorStep);
  server.number("goal_width", rules.goalWidth);
  server.number("ball_decay", rules.ballDecay);
  server.number("ball_rand", rules.ballRand);
  server.number("player_rand", rules.playerRand);
  server.number("ball_size", rules.ballSize);
  server.number("stamina_max", rules.staminaMax);
  server.number("effort_dec_thr", rules.effortDecThr);
  server.number("tackle_dist", rules.tackleDist);
  server.number("tackle_back_dist", rules.tackleBackDist);
  server.number("tackle_width", rules.tackleWidth);
  server.number("catchable_area_l", rules.catchableAreaLength);
  server.number("catchable_area_w", rules.catchableAreaWidth);
  for (const ParameterList& list : types) {
    analysis::TypeRules& type = rules.types.emplace_back();
    list.number("id", type.id);
    list.number("player_size", type.playerSize);
    list.number("kickable_margin", type.kickableMargin);
  }
  return rules;
}

}  // namespace vok::gamelogs
