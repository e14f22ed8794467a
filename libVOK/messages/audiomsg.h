// The say-message codec: what coach and players tell each other, character by character.
//
// A message is a header of 14 characters and a payload, all in an alphabet of 64 characters, six
// bits each; a number of several characters has its lowest digit first. The read and write
// positions live in the header characters themselves.
#pragma once

#include <array>
#include <iosfwd>

#include "alphabet.h"
#include "coordinates.h"
#include "objectstate.h"

namespace vok {

/// An unsigned integer in three characters; its low 18 bits travel.
class Int3B {
 public:
  Int3B();
  explicit Int3B(const char* text);
  Int3B(const unsigned& number);

  unsigned getValue() const { return value_; }
  const char* getEncoding() const { return encoding.data(); }
  operator int() const { return static_cast<int>(value_); }

 private:
  void encode();
  void decode();

  unsigned value_ = 0;
  std::array<char, 3> encoding{};
};

/// A position (metres, field frame, steps of 0.1) with age (cycles) and state in five characters.
class Val5B {
 public:
  static constexpr unsigned INVALIDAGE = 63;

  Val5B() = default;
  explicit Val5B(const char* text);
  Val5B(double x, double y, unsigned age, WObjectState state);
  Val5B(Vector2d pos, unsigned age, WObjectState state);

  double getX() const { return x_; }
  double getY() const { return y_; }
  unsigned getAge() const { return age_; }
  WObjectState getState() const { return state_; }
  const char* getEncoding() const { return encoding.data(); }
  operator Vector2d() const { return {x_, y_}; }
  bool isValid() const { return age_ < INVALIDAGE; }

 private:
  void encode();
  void decode();

  double x_ = 0;
  double y_ = 0;
  unsigned age_ = 0;
  WObjectState state_ = UNSAFE;
  std::array<char, 5> encoding{};
};

/// A value of six bits (0 to 63) in one character; a larger one becomes 0.
class NodaChar {
 public:
  NodaChar(unsigned char value) : val(value > 63 ? 0 : value) {}
  operator char() const { return static_cast<char>(val); }

 private:
  unsigned char val;
};

/// One message, a value without references to the text it was made from. Values are appended and
/// read as a stream. An operation that does not fit clears the state and changes nothing else, so
/// test `getState` after a group of them. Check the checksum before reading, since it covers the
/// read position.
class AudioMsg {
 public:
  static constexpr unsigned HEADER_LENGTH = 14;
  static constexpr const char* DEFAULT_MSG_PREFIX = "vok";

  AudioMsg();
  AudioMsg(unsigned destno, unsigned stime, bool iscoachmsg);
  /// A received text of unknown sender.
  explicit AudioMsg(const char* text);
  /// A received text whose sender the server named; its capacity is always that of a player's.
  AudioMsg(int sender, const char* teamname, const char* text);

  void setPrefix(const char* prefix);
  bool verifyPrefix(const char* prefix) const;
  void setSourceAndSideIsLeft(unsigned playerno, bool isLeft);
  void setDestination(unsigned playerno);
  void setServerTime(unsigned servertime);
  unsigned getSource() const;
  bool getSideIsLeft() const;
  unsigned getDestination() const;
  bool isCoachMsg() const;
  unsigned getServerTime() const;

  void createChkSums();
  bool isChkSumsValid() const;
  const char* getEncoding() const { return encoded.data(); }

  unsigned getWritePos() const;
  unsigned getReadPos() const;
  bool setWritePos(unsigned pos);
  bool setReadPos(unsigned pos);
  /// Characters of the whole message.
  unsigned getSize() const { return getWritePos() + HEADER_LENGTH; }
  unsigned getReadLeft() const { return getWritePos() - getReadPos(); }
  /// Capacity behind the write position, the header not subtracted.
  unsigned getWriteLeft() const { return MSG_LENGTH - getWritePos(); }

  /// Empties the payload.
  void rewindWrite();
  void rewindRead();
  void markWrite() { writeMark = getWritePos(); }
  /// Goes back to the mark, but writes no new terminator there.
  void rollbackWrite();
  void markRead() { readMark = getReadPos(); }
  void rollbackRead();

  bool getState() const { return state_; }
  void clearState() { state_ = true; }

  AudioMsg& operator<<(const Int3B& value);
  AudioMsg& operator<<(const Val5B& value);
  AudioMsg& operator<<(bool value);
  AudioMsg& operator<<(char value);
  AudioMsg& operator<<(double value);
  AudioMsg& operator<<(const Angle& value);
  AudioMsg& operator<<(const NodaChar& value);
  /// The opponents' types, entries 1..11, -1 for an unknown one. Defined in coachmessage.cpp,
  /// beside its reader.
  AudioMsg& operator<<(const int* types);
  AudioMsg& operator<<(int* types) { return *this << static_cast<const int*>(types); }
  /// Any other pointer would be converted to a bool.
  AudioMsg& operator<<(const void*) = delete;

  AudioMsg& operator>>(Int3B& value);
  AudioMsg& operator>>(Val5B& value);
  AudioMsg& operator>>(bool& value);
  AudioMsg& operator>>(char& value);
  AudioMsg& operator>>(double& value);
  /// Adds the two digits instead of combining them, so it is exact for multiples of pi/32 only. The
  /// players read angles in this way.
  AudioMsg& operator>>(Angle& value);
  AudioMsg& operator>>(NodaChar& value);

  // The sender as the server reported it; empty and -1 when it did not.
  std::array<char, 40> teamName{};
  int senderNo = -1;

 private:
  unsigned chksum() const;
  void setNumber(unsigned at, unsigned number);
  unsigned number(unsigned at) const;
  void append(const char* characters, unsigned count);
  const char* take(unsigned count);

  std::array<char, 512> encoded{};
  bool state_ = true;
  unsigned MSG_LENGTH = 0;
  unsigned readMark = 0;
  unsigned writeMark = 0;
};

std::ostream& operator<<(std::ostream& out, const Int3B& value);
std::ostream& operator<<(std::ostream& out, const Val5B& value);
std::ostream& operator<<(std::ostream& out, const NodaChar& value);
std::ostream& operator<<(std::ostream& out, const AudioMsg& message);

}  // namespace vok
