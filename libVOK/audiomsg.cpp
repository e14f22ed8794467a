#include "audiomsg.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <ostream>

#include "constants.h"
#include "ensure.h"

namespace vok {
namespace {

// Places of the header's fields.
constexpr unsigned SOURCE = 3;
constexpr unsigned DESTINATION = 4;
constexpr unsigned CHKSUM = 5;
constexpr unsigned SERVER_TIME = 7;
constexpr unsigned READ_POS = 10;
constexpr unsigned WRITE_POS = 12;

constexpr unsigned PREFIX_LENGTH = 3;
constexpr unsigned FLAG = 16;  ///< left side in the source, coach in the destination
constexpr unsigned MAX_PLAYER = 11;

constexpr unsigned digitsOf(unsigned number, unsigned place) {
  return (number >> (6 * place)) & 63;
}

/// The character of the lowest six bits.
char digit(unsigned number) {
  return msgEncodeChars[number & 63];
}

using DecodeTable = std::array<signed char, 256>;

constexpr DecodeTable decodeTable() {
  DecodeTable table{};
  for (std::size_t i = 0; i < msgEncodeChars.size(); ++i)
    table[static_cast<unsigned char>(msgEncodeChars[i])] = static_cast<signed char>(i);
  return table;
}

constexpr DecodeTable msgDecodeChars = decodeTable();

unsigned decoded(char c) {
  return static_cast<unsigned>(decodeChar(c));
}

/// Copies up to the terminator or the end of the room; what is left of it is NUL.
template <std::size_t N>
void copyText(std::array<char, N>& into, const char* text, std::size_t room = N) {
  std::size_t n = 0;
  while (n < room && text[n] != '\0') ++n;
  std::copy_n(text, n, into.begin());
  std::fill(into.begin() + static_cast<std::ptrdiff_t>(n), into.end(), '\0');
}

/// The parameter as a capacity that `AudioMsg` has room for.
unsigned capacity(int parameter) {
  return static_cast<unsigned>(std::clamp(parameter, 0, 512));
}

/// The low bits of a whole number of any size; 0 for one that is no number.
unsigned lowBits(double whole) {
  return std::fabs(whole) < 1e9 ? static_cast<unsigned>(static_cast<int>(whole)) : 0;
}

}  // namespace

int decodeChar(char c) {
  return msgDecodeChars[static_cast<unsigned char>(c)];
}

// Int3B

Int3B::Int3B() {
  encode();
}

Int3B::Int3B(const char* text) {
  copyText(encoding, text);
  decode();
}

Int3B::Int3B(const unsigned& number) : value(number) {
  encode();
}

void Int3B::encode() {
  for (unsigned k = 0; k < encoding.size(); ++k) encoding[k] = digit(digitsOf(value, k));
}

void Int3B::decode() {
  value = decoded(encoding[0]) | decoded(encoding[1]) << 6 | decoded(encoding[2]) << 12;
}

// Val5B

Val5B::Val5B(const char* text) {
  copyText(encoding, text);
  decode();
}

Val5B::Val5B(double newX, double newY, unsigned newAge, WObjectState newState)
    : x(newX), y(newY), age(newAge), state(newState) {
  encode();
}

Val5B::Val5B(Vector2d pos, unsigned newAge, WObjectState newState)
    : Val5B(pos.x, pos.y, newAge, newState) {}

void Val5B::encode() {
  const double gridX = std::floor(10 * x + 1024);
  const double gridY = std::floor(10 * y + 1024);
  const auto inGrid = [](double n) { return n >= 0 && n <= 2047; };
  const bool known = state == UNSAFE || state == FUZZY || state == VISUAL;
  if (!inGrid(gridX) || !inGrid(gridY) || age > INVALIDAGE || !known) age = INVALIDAGE;
  const unsigned column = lowBits(gridX);
  const unsigned row = lowBits(gridY);
  encoding[0] = digit(column);
  encoding[1] = digit((column >> 6 & 31) | (state == FUZZY ? 32U : 0U));
  encoding[2] = digit(row);
  encoding[3] = digit((row >> 6 & 31) | (state == VISUAL ? 32U : 0U));
  encoding[4] = digit(age);
}

void Val5B::decode() {
  const unsigned highX = decoded(encoding[1]);
  const unsigned highY = decoded(encoding[3]);
  const unsigned column = decoded(encoding[0]) | (highX & 31) << 6;
  const unsigned row = decoded(encoding[2]) | (highY & 31) << 6;
  x = (static_cast<double>(column) - 1024) / 10;
  y = (static_cast<double>(row) - 1024) / 10;
  age = decoded(encoding[4]);
  state = highX >= 32 ? FUZZY : highY >= 32 ? VISUAL : UNSAFE;
}

// AudioMsg: construction

AudioMsg::AudioMsg() : AudioMsg(0, 0, false) {}

AudioMsg::AudioMsg(unsigned destno, unsigned stime, bool iscoachmsg)
    : MSG_LENGTH(capacity(iscoachmsg ? SAY_COACH_MSG_SIZE : SAY_MSG_SIZE)) {
  std::fill_n(encoded.begin(), HEADER_LENGTH, digit(0));
  encoded[DESTINATION] = digit(destno | (iscoachmsg ? FLAG : 0));
  setServerTime(stime);
  createChkSums();
}

AudioMsg::AudioMsg(const char* text) {
  copyText(encoded, text, encoded.size() - 1);
  MSG_LENGTH = capacity(isCoachMsg() ? SAY_COACH_MSG_SIZE : SAY_MSG_SIZE);
}

AudioMsg::AudioMsg(int sender, const char* teamname, const char* text)
    : senderNo(sender), MSG_LENGTH(capacity(SAY_MSG_SIZE)) {
  copyText(encoded, text, encoded.size() - 1);
  copyText(teamName, teamname, teamName.size() - 1);
}

// Header

void AudioMsg::setPrefix(const char* prefix) {
  std::array<char, PREFIX_LENGTH> characters{};
  copyText(characters, prefix);
  std::copy(characters.begin(), characters.end(), encoded.begin());
}

bool AudioMsg::verifyPrefix(const char* prefix) const {
  return std::strncmp(encoded.data(), prefix, PREFIX_LENGTH) == 0;
}

void AudioMsg::setSourceAndSideIsLeft(unsigned playerno, bool isLeft) {
  ensure(playerno <= 11, "audiomsg");
  encoded[SOURCE] = digit(playerno | (isLeft ? FLAG : 0));
}

void AudioMsg::setDestination(unsigned playerno) {
  ensure(playerno <= 11, "audiomsg");
  encoded[DESTINATION] = digit((playerno & 15) | (isCoachMsg() ? FLAG : 0));
}

void AudioMsg::setServerTime(unsigned servertime) {
  std::copy_n(Int3B(servertime).getEncoding(), 3, encoded.begin() + SERVER_TIME);
}

unsigned AudioMsg::getSource() const {
  return decoded(encoded[SOURCE]) & 15;
}

bool AudioMsg::getSideIsLeft() const {
  return (decoded(encoded[SOURCE]) & FLAG) != 0;
}

unsigned AudioMsg::getDestination() const {
  return decoded(encoded[DESTINATION]) & 15;
}

bool AudioMsg::isCoachMsg() const {
  return (decoded(encoded[DESTINATION]) & FLAG) != 0;
}

unsigned AudioMsg::getServerTime() const {
  return Int3B(&encoded[SERVER_TIME]).getValue();
}

unsigned AudioMsg::chksum() const {
  int sum = 0;
  for (unsigned i = 0; i < encoded.size() && encoded[i] != '\0'; ++i)
    if (i != CHKSUM && i != CHKSUM + 1) sum += decodeChar(encoded[i]);
  return static_cast<unsigned>(sum) & 0xFFF;
}

void AudioMsg::createChkSums() {
  setNumber(CHKSUM, chksum());
}

bool AudioMsg::isChkSumsValid() const {
  const unsigned sum = chksum();
  return encoded[CHKSUM] == digit(sum) && encoded[CHKSUM + 1] == digit(digitsOf(sum, 1));
}

// Positions

/// Two characters of the header, lowest digit first.
void AudioMsg::setNumber(unsigned at, unsigned number) {
  encoded[at] = digit(number);
  encoded[at + 1] = digit(digitsOf(number, 1));
}

unsigned AudioMsg::number(unsigned at) const {
  return (decoded(encoded[at]) | decoded(encoded[at + 1]) << 6) & 0xFFF;
}

unsigned AudioMsg::getWritePos() const {
  return number(WRITE_POS);
}

unsigned AudioMsg::getReadPos() const {
  return number(READ_POS);
}

bool AudioMsg::setWritePos(unsigned pos) {
  if (pos >= MSG_LENGTH || pos + HEADER_LENGTH >= MSG_LENGTH) return false;
  setNumber(WRITE_POS, pos);
  return true;
}

bool AudioMsg::setReadPos(unsigned pos) {
  if (pos >= MSG_LENGTH || pos + HEADER_LENGTH >= MSG_LENGTH) return false;
  if (pos > getWritePos()) return false;
  setNumber(READ_POS, pos);
  return true;
}

void AudioMsg::rewindWrite() {
  setNumber(WRITE_POS, 0);
  setNumber(READ_POS, 0);
  writeMark = 0;
  readMark = 0;
  encoded[HEADER_LENGTH] = '\0';
}

void AudioMsg::rewindRead() {
  readMark = 0;
  setNumber(READ_POS, 0);
}

// A mark beyond its position is not gone to, so going back needs no look at the capacity.
void AudioMsg::rollbackWrite() {
  if (writeMark > getWritePos()) writeMark = 0;
  if (writeMark >= getReadPos())
    setNumber(WRITE_POS, writeMark);
  else
    state = false;
}

void AudioMsg::rollbackRead() {
  if (readMark <= getReadPos())
    setNumber(READ_POS, readMark);
  else
    state = false;
}

// Payload

/// `setWritePos` leaves room for the terminator: the new end is below the capacity, which is at
/// most the buffer's size.
void AudioMsg::append(const char* characters, unsigned count) {
  const unsigned pos = getWritePos();
  if (!setWritePos(pos + count)) {
    state = false;
    return;
  }
  std::copy_n(characters, count, encoded.begin() + HEADER_LENGTH + pos);
  encoded[HEADER_LENGTH + pos + count] = '\0';
}

/// The next characters, null when there are not as many.
const char* AudioMsg::take(unsigned count) {
  const unsigned pos = getReadPos();
  if (!setReadPos(pos + count)) {
    state = false;
    return nullptr;
  }
  return &encoded[HEADER_LENGTH + pos];
}

AudioMsg& AudioMsg::operator<<(const Int3B& value) {
  append(value.getEncoding(), 3);
  return *this;
}

AudioMsg& AudioMsg::operator<<(const Val5B& value) {
  append(value.getEncoding(), 5);
  return *this;
}

AudioMsg& AudioMsg::operator<<(bool value) {
  const char character = digit(value ? 1 : 0);
  append(&character, 1);
  return *this;
}

AudioMsg& AudioMsg::operator<<(char value) {
  const unsigned code = static_cast<unsigned char>(value);
  const std::array characters{digit(code), digit(digitsOf(code, 1))};
  append(characters.data(), 2);
  return *this;
}

AudioMsg& AudioMsg::operator<<(double value) {
  const double steps = std::floor(10 * value + 2048);
  if (!(steps >= 0 && steps <= 4095)) {
    state = false;
    return *this;
  }
  const auto n = static_cast<unsigned>(steps);
  const std::array characters{digit(n), digit(digitsOf(n, 1))};
  append(characters.data(), 2);
  return *this;
}

/// Rounding may put an angle on the border of two steps into the lower one.
AudioMsg& AudioMsg::operator<<(const Angle& value) {
  constexpr double pi = std::numbers::pi;
  const double v = Angle::mod2pi(static_cast<double>(value) + pi);
  const auto n = static_cast<unsigned>(static_cast<int>(std::floor(v * 4096 / (2 * pi))));
  const std::array characters{digit(n), digit(digitsOf(n, 1))};
  append(characters.data(), 2);
  return *this;
}

AudioMsg& AudioMsg::operator<<(const NodaChar& value) {
  const char character = digit(static_cast<unsigned char>(value));
  append(&character, 1);
  return *this;
}

AudioMsg& AudioMsg::operator<<(const int* types) {
  for (unsigned n = 1; n <= MAX_PLAYER; ++n)
    *this << NodaChar(static_cast<unsigned char>(static_cast<unsigned>(types[n]) + 1));
  return *this;
}

AudioMsg& AudioMsg::operator>>(Int3B& value) {
  if (const char* characters = take(3)) value = Int3B(characters);
  return *this;
}

AudioMsg& AudioMsg::operator>>(Val5B& value) {
  if (const char* characters = take(5)) value = Val5B(characters);
  return *this;
}

AudioMsg& AudioMsg::operator>>(bool& value) {
  if (const char* character = take(1)) value = decodeChar(*character) != 0;
  return *this;
}

AudioMsg& AudioMsg::operator>>(char& value) {
  if (const char* characters = take(2))
    value = static_cast<char>(decoded(characters[0]) | (decoded(characters[1]) & 3) << 6);
  return *this;
}

AudioMsg& AudioMsg::operator>>(double& value) {
  if (const char* characters = take(2)) {
    const unsigned n = decoded(characters[0]) | decoded(characters[1]) << 6;
    value = (static_cast<double>(n) - 2048) / 10;
  }
  return *this;
}

AudioMsg& AudioMsg::operator>>(Angle& value) {
  constexpr double pi = std::numbers::pi;
  if (const char* characters = take(2)) {
    const int n = (decodeChar(characters[0]) + decodeChar(characters[1])) * 128;
    value = Angle(n * pi / 4096 - pi);
  }
  return *this;
}

AudioMsg& AudioMsg::operator>>(NodaChar& value) {
  if (const char* character = take(1))
    value = NodaChar(static_cast<unsigned char>(decoded(*character)));
  return *this;
}

// Printed forms

std::ostream& operator<<(std::ostream& out, const Int3B& value) {
  return out << "(Int3B " << value.getValue() << ")";
}

std::ostream& operator<<(std::ostream& out, const Val5B& value) {
  if (!value.isValid()) return out << "(Val5B invalid)";
  const WObjectState state = value.getState();
  return out << "(Val5B (" << value.getX() << "," << value.getY() << ")(age " << value.getAge()
             << ")(state "
             << (state == FUZZY    ? "FUZZY"
                 : state == VISUAL ? "VISUAL"
                                   : "UNSAFE")
             << "))";
}

std::ostream& operator<<(std::ostream& out, const NodaChar& value) {
  return out << static_cast<char>(value);
}

std::ostream& operator<<(std::ostream& out, const AudioMsg& message) {
  out << (message.isChkSumsValid() ? "(AudioMsg " : "(AudioMsg-invalid ");
  out << " (" << message.getSource() << (message.getSideIsLeft() ? "l" : "r") << " -> "
      << message.getDestination() << ")(t= " << message.getServerTime() << ")";
  if (message.isCoachMsg()) out << "(coachmsg)";
  return out << "(Size= " << message.getSize() << " unread= " << message.getReadLeft()
             << (message.getState() ? " OK ))" : " FAIL ))");
}

}  // namespace vok
