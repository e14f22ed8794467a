// The server's formats read by sscanf: the slow and obvious readers that the scanner and the parser
// are held against. For texts below 300 characters.
#pragma once

#include <tuple>
#include <vector>

#include "Parser.h"

namespace vok::test {

/// Radians of an angle of the view in degrees.
double radians(double degrees);

/// 1..11, or -1.
int shirt(int number);

/// The list of a global view; `isFinite` tells whether all its numbers are.
bool scanView(const char* at, SensorData& view, bool& isFinite);

/// What a hear message says behind its time.
struct Heard {
  int sender = SENDER_SELF;
  char text[300] = "";
  char name[300] = "";
  int number = -1;
  int score = 0;
  double direction = NO_ANGLE;
};

/// A hear message behind its time.
bool scanHeard(const char* at, Heard& heard);

/// The items of a parameter message: tries all rows in order, again and again.
void scanParams(const char* at, const std::vector<Token>& rows);

// What is compared of the objects.

inline auto motion(const ExactObject& o) {
  return std::tuple(o.valid, o.x, o.y, o.x_vel, o.y_vel);
}

inline auto person(const ExactPlayer& p) {
  return std::tuple(p.team, p.number, p.goalie, p.face_dir, p.body_dir, p.pointto_dir, p.tackle);
}

}  // namespace vok::test
