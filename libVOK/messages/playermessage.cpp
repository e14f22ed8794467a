// Two numbers of three digits each and the distance as a single digit, in the whole alphabet, the
// lowest digit first. The first number has the type lowest; above it comes the stamina or what is
// told of the ball: direction, speed, and age. The second number is the position. Values are
// rounded to the nearest step and cut to their range, so every value can be written; a number that
// no sender writes is refused when it is read.
#include "playermessage.h"

#include "alphabet.h"
#include "constants.h"
#include "mixednumber.h"
#include "pitch.h"

namespace vok {
namespace {

constexpr int DIGITS = MixedNumber::DIGITS;
constexpr std::size_t FIRST_NUMBER = 0;
constexpr std::size_t SECOND_NUMBER = 3;
constexpr std::size_t DISTANCE_CHAR = 9;

constexpr int TYPES = 10;
constexpr int STAMINA_STEPS = 4000;
constexpr int DIRECTIONS = 180;  ///< steps of two degrees
constexpr int SPEEDS = 28;       ///< steps of 0.1 metres per cycle
constexpr int AGES = 4;
constexpr int COLUMNS = 421;  ///< of the grid of positions
constexpr int ROWS = 273;
/// The farthest point of the field with its surroundings.
constexpr double MAX_DISTANCE = 64;

/// Truncated into 0..max; 0 for what is no number.
int toIndex(double value, int max) {
  if (!(value > 0)) return 0;
  return value < max ? static_cast<int>(value) : max;
}

int toNearestIndex(double value, int max) {
  return toIndex(value + 0.5, max);
}

void putPosition(MixedNumber& number, const Vector2d& pos) {
  number.put(toNearestIndex((HALF_LENGTH + pos.x) * 4, COLUMNS - 1), COLUMNS);
  number.put(toNearestIndex((HALF_WIDTH + pos.y) * 4, ROWS - 1), ROWS);
}

bool takePosition(MixedNumber number, Vector2d& pos) {
  const int column = number.take(COLUMNS);
  const int row = number.rest();
  pos = {column * 0.25 - HALF_LENGTH, row * 0.25 - HALF_WIDTH};
  return row < ROWS;
}

void putBall(MixedNumber& number, const PlayerMessage& told) {
  // As a plain number: an Angle times a factor would be normalised.
  const double direction = Angle(told.velocity.getAngle());
  number.put(toNearestIndex((180 + toDegrees(direction)) * 0.5, DIRECTIONS - 1), DIRECTIONS);
  number.put(toNearestIndex(told.velocity.getLength() * 10, SPEEDS - 1), SPEEDS);
  number.put(toIndex(told.age, AGES - 1), AGES);
  number.put(told.seen ? 0 : 1, 2);
}

bool takeBall(MixedNumber& number, PlayerMessage& told) {
  const int degrees = 2 * number.take(DIRECTIONS) - 180;
  told.velocity.setRadAng(number.take(SPEEDS) / 10.0, toRadians(degrees));
  told.age = number.take(AGES);
  told.seen = number.rest() == 0;
  return number.rest() < 2;
}

}  // namespace

void PlayerMessage::write(char* text) const {
  MixedNumber first;
  MixedNumber second;
  first.put(type, TYPES);
  putPosition(second, pos);
  if (type == MSGTYPE_POSITION) {
    first.put(toIndex(stamina / STAMINA_MAX * STAMINA_STEPS, STAMINA_STEPS), STAMINA_STEPS + 1);
  } else {
    putBall(first, *this);
    const int distance = toNearestIndex(centreDistance * (DIGITS - 1) / MAX_DISTANCE, DIGITS - 1);
    text[DISTANCE_CHAR] = msgEncodeChars[static_cast<std::size_t>(distance)];
  }
  first.write(text + FIRST_NUMBER);
  second.write(text + SECOND_NUMBER);
}

std::optional<PlayerMessage> PlayerMessage::read(const char* text) {
  PlayerMessage told;
  MixedNumber first(text + FIRST_NUMBER);
  const int type = first.take(TYPES);
  if (type < MSGTYPE_ACTION || type > MSGTYPE_TACKLE) return std::nullopt;
  told.type = static_cast<MessageType>(type);
  if (!takePosition(MixedNumber(text + SECOND_NUMBER), told.pos)) return std::nullopt;

  if (told.type == MSGTYPE_POSITION) {
    if (first.rest() > STAMINA_STEPS) return std::nullopt;
    told.stamina = STAMINA_MAX * first.rest() / STAMINA_STEPS;
    return told;
  }
  if (!takeBall(first, told)) return std::nullopt;
  told.centreDistance = decodeChar(text[DISTANCE_CHAR]) * MAX_DISTANCE / (DIGITS - 1);
  return told;
}

}  // namespace vok
