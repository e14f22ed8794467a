// The world in say messages. A coach's message holds the whole picture in the codec's units; a
// player's has ten characters of its own, in two numbers of three digits of the whole alphabet.
#include <numbers>

#include "constants.h"
#include "worldmodel.h"

namespace vok {

namespace {

constexpr int DIGITS = static_cast<int>(msgEncodeChars.size());
constexpr double RADIAN = 180 / std::numbers::pi;  ///< in degrees

// The quarter-metre grid of positions.
constexpr int GRID_X = 420;
constexpr int GRID_Y = 272;

// The fields of the first number, the message type lowest.
constexpr int TYPES = 10;
constexpr int MAX_STAMINA_INDEX = 4000;
constexpr int ANGLES = 180;  ///< steps of two degrees
constexpr int SPEEDS = 28;   ///< steps of 0.1 metres per cycle
constexpr int NOT_SEEN = 4;  ///< added to the age, 0..3
constexpr int AGE_CLASSES = 2 * NOT_SEEN;

// The farthest point of the field with its surroundings, for the sender's distance.
constexpr double MAX_DISTANCE = 64;
constexpr std::size_t DISTANCE_CHAR = 9;

/// Truncated into 0..max; 0 for what is no number.
int toIndex(double value, int max) {
  if (!(value > 0)) return 0;
  return value < max ? static_cast<int>(value) : max;
}

int toNearestIndex(double value, int max) {
  return toIndex(value + 0.5, max);
}

int positionIndex(const Vector2d& pos) {
  return toNearestIndex((52.5 + pos.x) * 4, GRID_X) +
         (GRID_X + 1) * toNearestIndex((34 + pos.y) * 4, GRID_Y);
}

/// False for a number beyond the grid.
bool positionOfIndex(int index, Vector2d& pos) {
  const int xi = index % (GRID_X + 1);
  const int yi = index / (GRID_X + 1);
  if (yi > GRID_Y) return false;
  pos = {xi * 0.25 - 52.5, yi * 0.25 - 34};
  return true;
}

int motionIndex(const WBall& ball) {
  // As a plain number: an Angle times a factor would be normalised.
  const double direction = Angle(ball.v.getAngle());
  const int angle = toNearestIndex((180 + direction * RADIAN) * 0.5, ANGLES - 1);
  const int speed = toNearestIndex(ball.v.getLength() * 10, SPEEDS - 1);
  const int age = toIndex(ball.age, NOT_SEEN - 1) + (ball.state == VISUAL ? 0 : NOT_SEEN);
  return angle + ANGLES * (speed + SPEEDS * age);
}

void writeNumber(char* at, int number) {
  for (int i = 0; i < 3; ++i, number /= DIGITS) {
    at[i] = msgEncodeChars[static_cast<std::size_t>(number % DIGITS)];
  }
}

int readNumber(const char* at) {
  return decodeChar(at[0]) + DIGITS * (decodeChar(at[1]) + DIGITS * decodeChar(at[2]));
}

NodaChar code(int number) {
  return {static_cast<unsigned char>(number + 1)};
}

/// What is written one too high, so that 0 is unknown; -1 when the message has ended.
int readCode(AudioMsg& aum) {
  NodaChar value(0);
  aum >> value;
  return static_cast<char>(value) - 1;
}

/// Takes a position that the coach has seen; the object stays as it is when the message has ended.
bool takePosition(AudioMsg& aum, WMovedObject& object) {
  Vector2d pos;
  aum >> pos.x >> pos.y;
  if (!aum.getState()) return false;
  object.pos = pos;
  object.age = 0;
  object.coneTime = 0;
  object.state = VISUAL;
  return true;
}

}  // namespace

AudioMsg& operator<<(AudioMsg& aum, const Worldmodel& world) {
  if (!aum.isCoachMsg()) return aum;
  aum << code(world.ourGoalieNo) << code(world.otherGoalieNo);
  aum << world.ball.pos.x << world.ball.pos.y;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    aum << world.ourTeam[n].pos.x << world.ourTeam[n].pos.y;
    aum << world.otherTeam[n].pos.x << world.otherTeam[n].pos.y;
  }
  return aum;
}

bool Worldmodel::feedbackAudio(AudioMsg& audioMsg) {
  if (!audioMsg.isCoachMsg()) return false;
  bool worldFollows = false;
  audioMsg >> worldFollows;
  if (!worldFollows) return false;
  if (static_cast<long>(audioMsg.getServerTime()) < time - 1) return false;

  const int ours = readCode(audioMsg);
  if (isShirtNumber(ours) && ourGoalieNo == -1) adjustTacticalNumbers(ours);
  const int theirs = readCode(audioMsg);
  if (isShirtNumber(theirs) && otherGoalieNo == -1) setOtherGoalie(theirs);

  if (!takePosition(audioMsg, ball)) return false;
  ball.v = {};
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    if (!takePosition(audioMsg, ourTeam[n])) return false;
    if (!takePosition(audioMsg, otherTeam[n])) return false;
  }
  if (isShirtNumber(my.number)) ourTeam[my.number] = my;

  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const int type = readCode(audioMsg);
    if (!audioMsg.getState()) return false;
    otherTeam[n].type = type < static_cast<int>(playerType.size()) ? type : -1;
  }
  return true;
}

void Worldmodel::encodeAudio(MessageType msgType, char* msg, const WBall& comball) const {
  if (msgType == MSGTYPE_POSITION) {
    const int stamina = toIndex(my.stamina / STAMINA_MAX * MAX_STAMINA_INDEX, MAX_STAMINA_INDEX);
    writeNumber(msg, msgType + TYPES * stamina);
    writeNumber(msg + 3, positionIndex(my.pos));
    return;
  }
  const WBall& spoken = msgType == MSGTYPE_SIM_ACTION ? comball : ball;
  writeNumber(msg, msgType + TYPES * motionIndex(spoken));
  writeNumber(msg + 3, positionIndex(spoken.pos));
  const int distance = toNearestIndex(my.pos.getLength() * (DIGITS - 1) / MAX_DISTANCE, DIGITS - 1);
  msg[DISTANCE_CHAR] = msgEncodeChars[static_cast<std::size_t>(distance)];
}

void Worldmodel::decodeAudio(const char* msg, int sender, double senderDir) {
  if (!isShirtNumber(sender) || sender == my.number) return;
  WPlayer& speaker = ourTeam[sender];

  const int type = readNumber(msg) % TYPES;
  const int fields = readNumber(msg) / TYPES;
  Vector2d pos;
  if (!positionOfIndex(readNumber(msg + 3), pos)) return;

  if (type == MSGTYPE_POSITION) {
    if (fields > MAX_STAMINA_INDEX) return;
    speaker.stamina = STAMINA_MAX * fields / MAX_STAMINA_INDEX;
    if (speaker.age > 0) {
      speaker.pos = pos;
      speaker.age = 0;
      speaker.state = FUZZY;
      speaker.coneTime = 0;
    }
    return;
  }

  // A simulated ball is a plan, not the ball; its speaker is still where he is.
  const bool hasBall = type == MSGTYPE_ACTION || type == MSGTYPE_BALL || type == MSGTYPE_TACKLE;
  if (!hasBall && type != MSGTYPE_SIM_ACTION) return;
  const int ageClass = fields / (ANGLES * SPEEDS);
  if (ageClass >= AGE_CLASSES) return;

  const int age = ageClass % NOT_SEEN;
  if (hasBall && age < ball.age) {
    const int degrees = 2 * (fields % ANGLES) - 180;
    const int speed = fields / ANGLES % SPEEDS;
    ball.pos = pos;
    ball.v.setRadAng(speed / 10.0, degrees / RADIAN);
    ball.age = age;
    ball.state = FUZZY;
    ball.coneTime = 0;
  }
  const double centreDist = decodeChar(msg[DISTANCE_CHAR]) * MAX_DISTANCE / (DIGITS - 1);
  placeSpeaker(speaker, centreDist, senderDir);
}

void Worldmodel::placeSpeaker(WPlayer& speaker, double centreDist, double direction) const {
  if (!isShirtNumber(my.number) || !(direction > NO_ANGLE) || speaker.age == 0) return;
  Vector2d ray;
  ray.setRadAng(1, my.faceDir + direction);
  double behind = 0;
  double ahead = 0;
  if (intersectLineCircle(ray, -my.pos, centreDist, behind, ahead) != Intersect::Valid) return;
  if (behind > 0 || ahead < 0) return;  // two places possible, or none
  speaker.pos = my.pos + ray * ahead;
  speaker.age = 0;
  speaker.state = FUZZY;
  speaker.coneTime = 0;
}

}  // namespace vok
