// The values that messages are made of, and how each is laid into characters.
#include <cmath>
#include <ostream>

#include "audiodigits.h"
#include "audiomsg.h"

namespace vok {
namespace {

/// The low bits of a whole number; 0 for a NaN and beyond a billion.
unsigned lowBits(double whole) {
  return std::fabs(whole) < 1e9 ? static_cast<unsigned>(static_cast<int>(whole)) : 0;
}

}  // namespace

// Int3B

Int3B::Int3B() {
  encode();
}

Int3B::Int3B(const char* text) {
  copyText(encoding, text);
  decode();
}

Int3B::Int3B(const unsigned& number) : value_(number) {
  encode();
}

void Int3B::encode() {
  for (unsigned k = 0; k < encoding.size(); ++k) encoding[k] = digit(digitsOf(value_, k));
}

void Int3B::decode() {
  value_ = decoded(encoding[0]) | decoded(encoding[1]) << 6 | decoded(encoding[2]) << 12;
}

// Val5B

Val5B::Val5B(const char* text) {
  copyText(encoding, text);
  decode();
}

Val5B::Val5B(double x, double y, unsigned age, WObjectState state)
    : x_(x), y_(y), age_(age), state_(state) {
  encode();
}

Val5B::Val5B(Vector2d pos, unsigned age, WObjectState state) : Val5B(pos.x, pos.y, age, state) {}

void Val5B::encode() {
  const double gridX = std::floor(10 * x_ + 1024);
  const double gridY = std::floor(10 * y_ + 1024);
  const auto inGrid = [](double n) { return n >= 0 && n <= 2047; };
  const bool known = state_ == UNSAFE || state_ == FUZZY || state_ == VISUAL;
  if (!inGrid(gridX) || !inGrid(gridY) || age_ > INVALIDAGE || !known) age_ = INVALIDAGE;
  const unsigned column = lowBits(gridX);
  const unsigned row = lowBits(gridY);
  encoding[0] = digit(column);
  encoding[1] = digit((column >> 6 & 31) | (state_ == FUZZY ? 32U : 0U));
  encoding[2] = digit(row);
  encoding[3] = digit((row >> 6 & 31) | (state_ == VISUAL ? 32U : 0U));
  encoding[4] = digit(age_);
}

void Val5B::decode() {
  const unsigned highX = decoded(encoding[1]);
  const unsigned highY = decoded(encoding[3]);
  const unsigned column = decoded(encoding[0]) | (highX & 31) << 6;
  const unsigned row = decoded(encoding[2]) | (highY & 31) << 6;
  x_ = (static_cast<double>(column) - 1024) / 10;
  y_ = (static_cast<double>(row) - 1024) / 10;
  age_ = decoded(encoding[4]);
  state_ = highX >= 32 ? FUZZY : highY >= 32 ? VISUAL : UNSAFE;
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

}  // namespace vok
