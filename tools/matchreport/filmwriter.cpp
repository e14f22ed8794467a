#include "filmwriter.h"

#include <algorithm>
#include <cmath>

namespace vok::matchreport {
namespace {

using namespace analysis;

constexpr std::string_view DIGITS =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr double GRID = 0.06;  // metres
constexpr int BASE = 64;
constexpr int OFFSET = BASE * BASE / 2;
constexpr int LARGEST_STEP_BACK = 31;
constexpr int LARGEST_STEP = 30;
constexpr int ABSENT_PLAYER = 62;
constexpr int ABSOLUTE = 63;
constexpr int STAMINA_STEPS = 30;
constexpr int NO_STAMINA = 31;
constexpr int TACKLES = 32;

int steps(double metres) {
  return static_cast<int>(std::round(
      std::clamp(metres / GRID, static_cast<double>(-OFFSET), static_cast<double>(OFFSET - 1))));
}

bool isSmall(int step) {
  return step >= -LARGEST_STEP_BACK && step <= LARGEST_STEP;
}

int turn(double degrees) {
  constexpr double FULL = 360;
  const double share = std::isfinite(degrees) ? degrees / FULL - std::floor(degrees / FULL) : 0;
  return static_cast<int>(std::round(BASE * share)) % BASE;
}

int stateOf(const FramePlayer& player, double staminaMax) {
  int state = NO_STAMINA;
  if (std::isfinite(player.stamina) && staminaMax > 0) {
    const double share = std::clamp(player.stamina / staminaMax, 0.0, 1.0);
    state = static_cast<int>(std::round(STAMINA_STEPS * share));
  }
  return state + (player.is(STATE_TACKLE) ? TACKLES : 0);
}

}  // namespace

void FilmWriter::digit(int value) {
  packed_ += DIGITS[static_cast<std::size_t>(value)];
}

void FilmWriter::place(Steps steps) {
  for (const int coordinate : {steps.x + OFFSET, steps.y + OFFSET}) {
    digit(coordinate / BASE);
    digit(coordinate % BASE);
  }
}

void FilmWriter::player(int number, const FramePlayer& shown, double staminaMax) {
  std::optional<Steps>& before = places_[number];
  if (!shown.there()) {
    before.reset();
    digit(ABSENT_PLAYER);
    return;
  }
  const Steps now = {steps(shown.pos.x), steps(shown.pos.y)};
  if (before && isSmall(now.x - before->x) && isSmall(now.y - before->y)) {
    digit(now.x - before->x + LARGEST_STEP_BACK);
    digit(now.y - before->y + LARGEST_STEP_BACK);
  } else {
    digit(ABSOLUTE);
    place(now);
  }
  before = now;
  digit(turn(shown.body));
  digit(stateOf(shown, staminaMax));
}

/// Told where a cycle does not follow the one before.
void FilmWriter::noteCycle(int cycle) {
  if (frames_ == 0 || cycle != cycle_ + 1) cycles_.emplace_back(frames_, cycle);
  cycle_ = cycle;
}

void FilmWriter::noteScore(const Score& score) {
  const std::pair goals(score.goals[SIDE_LEFT], score.goals[SIDE_RIGHT]);
  if (scored_ && goals == goals_) return;
  scored_ = true;
  goals_ = goals;
  scores_.emplace_back(frames_, goals);
}

void FilmWriter::notePlayer(int number, const FramePlayer& shown) {
  if (!shown.there()) return;
  if (shown.type != NONE && types_[number] != shown.type + 1) {
    types_[number] = shown.type + 1;
    typeChanges_.push_back({frames_, {number, shown.type}});
  }
  const std::uint32_t cards = shown.state & (STATE_YELLOW_CARD | STATE_RED_CARD);
  if ((cards & ~cards_[number]) != 0) {
    cards_[number] |= cards;
    cardChanges_.push_back({frames_, {number, (cards & STATE_RED_CARD) != 0 ? 1 : 0}});
  }
}

void FilmWriter::frame(const Frame& frame, std::string_view playMode, const Score& score,
                       const MatchRules& rules) {
  noteCycle(frame.cycle);
  noteScore(score);
  if (frames_ == 0 || mode_ != playMode) {
    mode_ = playMode;
    modes_.emplace_back(frames_, mode_);
  }
  place({steps(frame.ball.x), steps(frame.ball.y)});
  for (int i = 0; i < PLAYERS; ++i) {
    notePlayer(i, frame.players[i]);
    player(i, frame.players[i], rules.staminaMax);
  }
  ++frames_;
}

void FilmWriter::forget() {
  packed_.clear();
  cycles_.clear();
  modes_.clear();
  scores_.clear();
  typeChanges_.clear();
  cardChanges_.clear();
}

void FilmWriter::writeCode(JsonWriter& json) {
  json.key("code").beginObject();
  json.member("digits", DIGITS).member("grid", GRID).member("offset", OFFSET);
  json.member("step", LARGEST_STEP_BACK).member("absent", ABSENT_PLAYER);
  json.member("absolute", ABSOLUTE).endObject();
}

void FilmWriter::writeChanges(JsonWriter& json) const {
  json.key("cycles").beginArray();
  for (const auto& [frame, cycle] : cycles_) json.beginArray().value(frame).value(cycle).endArray();
  json.endArray().key("modes").beginArray();
  for (const auto& [frame, mode] : modes_) json.beginArray().value(frame).value(mode).endArray();
  json.endArray().key("scores").beginArray();
  for (const auto& [frame, goals] : scores_) {
    json.beginArray().value(frame).value(goals.first).value(goals.second).endArray();
  }
  json.endArray();
  for (const auto& [name, changes] :
       {std::pair("types", &typeChanges_), std::pair("cards", &cardChanges_)}) {
    json.key(name).beginArray();
    for (const auto& [frame, news] : *changes) {
      json.beginArray().value(frame).value(news.player).value(news.value).endArray();
    }
    json.endArray();
  }
}

}  // namespace vok::matchreport
