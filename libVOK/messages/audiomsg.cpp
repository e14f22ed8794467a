// The message: its header and positions, and the stream of values in its payload. The read and the
// write position are themselves characters of the header, so every read changes the text and with
// it the checksum. Each value is written or read whole or not at all: a value that does not fit, or
// a read beyond the end, clears `state_` and changes nothing else, and later values are still
// tried.
#include "audiomsg.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ostream>
#include <span>

#include "audiodigits.h"
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

/// A server parameter as a capacity, cut to the size of the buffer.
unsigned capacity(int parameter) {
  return static_cast<unsigned>(std::clamp(parameter, 0, 512));
}

}  // namespace

// Construction

AudioMsg::AudioMsg() : AudioMsg(0, 0, false) {}

AudioMsg::AudioMsg(unsigned destno, unsigned stime, bool iscoachmsg)
    : MSG_LENGTH(capacity(iscoachmsg ? SAY_COACH_MSG_SIZE : SAY_MSG_SIZE)) {
  std::fill_n(encoded.begin(), HEADER_LENGTH, digit(0));
  encoded[DESTINATION] = digit(destno | (iscoachmsg ? FLAG : 0));
  setServerTime(stime);
  createChkSums();
}

AudioMsg::AudioMsg(const char* text) {
  copyText(std::span(encoded).first(encoded.size() - 1), text);
  MSG_LENGTH = capacity(isCoachMsg() ? SAY_COACH_MSG_SIZE : SAY_MSG_SIZE);
}

AudioMsg::AudioMsg(int sender, const char* teamname, const char* text)
    : senderNo(sender), MSG_LENGTH(capacity(SAY_MSG_SIZE)) {
  copyText(std::span(encoded).first(encoded.size() - 1), text);
  copyText(std::span(teamName).first(teamName.size() - 1), teamname);
}

// Header

void AudioMsg::setPrefix(const char* prefix) {
  copyText(std::span(encoded).first(PREFIX_LENGTH), prefix);
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

// A position only moves back to its mark, never forward, so the capacity needs no check.
void AudioMsg::rollbackWrite() {
  if (writeMark > getWritePos()) writeMark = 0;
  if (writeMark >= getReadPos())
    setNumber(WRITE_POS, writeMark);
  else
    state_ = false;
}

void AudioMsg::rollbackRead() {
  if (readMark <= getReadPos())
    setNumber(READ_POS, readMark);
  else
    state_ = false;
}

// Payload

/// `setWritePos` leaves room for the terminator: the new end is below the capacity, which is at
/// most the buffer's size.
void AudioMsg::append(const char* characters, unsigned count) {
  const unsigned pos = getWritePos();
  if (!setWritePos(pos + count)) {
    state_ = false;
    return;
  }
  std::copy_n(characters, count, encoded.begin() + HEADER_LENGTH + pos);
  encoded[HEADER_LENGTH + pos + count] = '\0';
}

/// The next characters, or null when fewer are left.
const char* AudioMsg::take(unsigned count) {
  const unsigned pos = getReadPos();
  if (!setReadPos(pos + count)) {
    state_ = false;
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
    state_ = false;
    return *this;
  }
  const auto n = static_cast<unsigned>(steps);
  const std::array characters{digit(n), digit(digitsOf(n, 1))};
  append(characters.data(), 2);
  return *this;
}

/// Rounding errors may put an angle that lies between two steps into the lower one.
AudioMsg& AudioMsg::operator<<(const Angle& value) {
  const double v = Angle::mod2pi(static_cast<double>(value) + PI);
  const auto n = static_cast<unsigned>(static_cast<int>(std::floor(v * 4096 / (2 * PI))));
  const std::array characters{digit(n), digit(digitsOf(n, 1))};
  append(characters.data(), 2);
  return *this;
}

AudioMsg& AudioMsg::operator<<(const NodaChar& value) {
  const char character = digit(static_cast<unsigned char>(value));
  append(&character, 1);
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
  if (const char* characters = take(2)) {
    const int n = (decodeChar(characters[0]) + decodeChar(characters[1])) * 128;
    value = Angle(n * PI / 4096 - PI);
  }
  return *this;
}

AudioMsg& AudioMsg::operator>>(NodaChar& value) {
  if (const char* character = take(1))
    value = NodaChar(static_cast<unsigned char>(decoded(*character)));
  return *this;
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
