#include "playerrecording.h"

#include <sstream>

#include "recordline.h"

namespace vok::seecheck {

namespace {

void turnHalf(Vector2d& v) {
  v = -v;
}

void turnHalf(double& direction) {
  direction = Angle::mod2pi(direction + PI);
}

}  // namespace

bool PlayerRecording::read(std::istream& in, std::string& error) {
  texts.clear();
  RecordLine read;
  for (std::string line; std::getline(in, line);) {
    if (!read.read(line) || read.direction == '\0') {
      error = "line " + std::to_string(texts.size() + 1) +
              " is not \"MILLISECONDS<tab><|><tab>TEXT\" (is it still compressed?)";
      return false;
    }
    Text entry{read.sent(), std::string(read.text)};
    if (entry.sent && team.empty() && entry.text.starts_with("(init ")) {
      team = entry.text.substr(6, entry.text.find_first_of(" )", 6) - 6);
      goalie = entry.text.find("(goalie)") != std::string::npos;
    }
    if (!entry.sent && side == SIDE_UNKNOWN && entry.text.starts_with("(init ")) {
      side = entry.text.starts_with("(init r") ? SIDE_RIGHT : SIDE_LEFT;
    }
    texts.push_back(std::move(entry));
  }
  if (!team.empty() && side != SIDE_UNKNOWN) return true;
  error = in.bad() ? "cannot be read" : "it has no check-in of a player";
  return false;
}

bool Truth::read(std::istream& in, std::string& error) {
  entries_.clear();
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (line.empty() || line.front() == '#') continue;
    if (readLine(line)) continue;
    error = "line " + std::to_string(number) + " is not a state of the player, the ball and others";
    return false;
  }
  if (entries_.empty()) error = in.bad() ? "cannot be read" : "is empty";
  return !entries_.empty();
}

bool Truth::readLine(const std::string& line) {
  std::istringstream words(line);
  long cycle = 0;
  TrueState state;
  if (!(words >> cycle >> state.pos.x >> state.pos.y >> state.v.x >> state.v.y >> state.body >>
        state.neck >> state.ball.x >> state.ball.y >> state.ballV.x >> state.ballV.y)) {
    return false;
  }
  state.body = toRadians(state.body);
  state.neck = toRadians(state.neck);
  char side = '\0';
  while (words >> side) {
    int number = 0;
    TruePlayer player;
    if (!(words >> number >> player.pos.x >> player.pos.y >> player.body)) return false;
    if ((side != 'l' && side != 'r') || !isShirtNumber(number)) return false;
    player.there = true;
    player.body = toRadians(player.body);
    (side == 'l' ? state.ours : state.theirs)[number] = player;
  }
  Entry& entry = entries_[cycle];
  entry.state = state;
  ++entry.rows;
  return true;
}

void Truth::turnTo(playing_side side) {
  if (side != SIDE_RIGHT) return;
  for (auto& [cycle, entry] : entries_) {
    TrueState& state = entry.state;
    for (Vector2d* v : {&state.pos, &state.v, &state.ball, &state.ballV}) turnHalf(*v);
    turnHalf(state.body);
    std::swap(state.ours, state.theirs);
    for (Squad<TruePlayer>* team : {&state.ours, &state.theirs}) {
      for (TruePlayer& player : *team) {
        turnHalf(player.pos);
        turnHalf(player.body);
      }
    }
  }
}

const TrueState* Truth::at(long cycle) const {
  const auto found = entries_.find(cycle);
  return found == entries_.end() || found->second.rows != 1 ? nullptr : &found->second.state;
}

}  // namespace vok::seecheck
