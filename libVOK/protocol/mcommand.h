// Commands for the team's monitor: log lines, drawings, set-ups.
//
// Each is one parenthesised text, made at construction; the connection wraps it for the proxy.
// Points and lengths in metres (field frame), angles in radians, durations in cycles.
#pragma once

#include <iosfwd>
#include <string>
#include <utility>

#include "coordinates.h"

namespace vok {

class Worldmodel;

enum MStyle { MSolid = 0, MDash = 1, MDot = 2, MDashDot = 3, MDashDotDot = 4 };

struct MCommand {
  std::string encoded;
  const int duration;  ///< how many cycles the monitor keeps the item

  MCommand(int duration, std::string text) : encoded(std::move(text)), duration(duration) {}
};

std::ostream& operator<<(std::ostream& out, const MCommand& command);

struct MLog : MCommand {
  MLog(const std::string& text, int duration);
};

/// The label is the text up to its first double quote, at most 200 characters.
struct MMarker : MCommand {
  MMarker(Vector2d p, const char* text, int duration);
};

struct MDPosition : MCommand {
  MDPosition(Vector2d p, int duration);
};

struct MDCircle : MCommand {
  MDCircle(Vector2d centre, double radius, bool filled, MStyle style, int duration);
};

struct MDLine : MCommand {
  MDLine(Vector2d a, Vector2d b, MStyle style, int duration);
};

/// A line across the field at x.
struct MDVLine : MCommand {
  MDVLine(double x, MStyle style, int duration);
};

struct MDBox : MCommand {
  MDBox(Vector2d a, Vector2d b, MStyle style, int duration);
};

struct MDCorridor : MCommand {
  MDCorridor(Vector2d a, Vector2d b, double width, Angle aperture, MStyle style, int duration);
};

struct MDLabel : MCommand {
  MDLabel(Vector2d p, const std::string& text, int duration);
};

/// The whole world; defined with the world model.
struct MSnapshot : MCommand {
  explicit MSnapshot(const Worldmodel& world);
};

struct MStop : MCommand {
  MStop();
};

struct MDropBall : MCommand {
  explicit MDropBall(Vector2d p);
};

struct MFreekickUs : MCommand {
  explicit MFreekickUs(Vector2d p);
};

struct MFreekickThem : MCommand {
  explicit MFreekickThem(Vector2d p);
};

/// Our player is sent as 1, an opponent as 0.
struct MSetPlayer : MCommand {
  MSetPlayer(bool ours, int number, Vector2d p, Angle body);
};

/// An entry of the monitor's event log. The fourth text is sent in double quotes; single quotes
/// stand for those in the texts.
struct MELog : MCommand {
  MELog(int a, int b, const char* text1, const char* text2, const char* text3,
        const std::string& text4, int duration);
};

}  // namespace vok
