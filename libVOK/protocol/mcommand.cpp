#include "mcommand.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <sstream>
#include <string_view>

namespace vok {
namespace {

constexpr std::size_t MAX_LABEL = 200;
constexpr int ONCE = 1;  ///< duration of what is no drawing

struct Point {
  Vector2d p;
};

std::ostream& operator<<(std::ostream& out, const Point& point) {
  return out << "( " << point.p.x << ", " << point.p.y << " )";
}

/// One command: the name, then each item behind a blank.
template <typename... Items>
std::string compose(const char* name, const Items&... items) {
  std::ostringstream out;
  out << "(" << name;
  ((out << " " << items), ...);
  out << ")";
  return out.str();
}

/// Here the items stand without blanks around the quotes.
std::string marker(Vector2d p, std::string_view text, int duration) {
  const std::string_view label = text.substr(0, std::min(text.find('"'), MAX_LABEL));
  std::ostringstream out;
  out << "(mark " << duration << " " << Point{p} << '"' << label << "\" )";
  return out.str();
}

/// The text without double quotes, which would end the quoted one of an event.
std::string withoutQuotes(std::string text) {
  std::replace(text.begin(), text.end(), '"', '\'');
  return text;
}

/// "(elog", the two numbers, three words and the last text in quotes.
std::string event(int a, int b, const char* text1, const char* text2, const char* text3,
                  const std::string& text4) {
  std::array<char, 32> numbers{};
  std::snprintf(numbers.data(), numbers.size(), "%2d %3d", a, b);
  std::string text = std::string("(elog") + numbers.data();
  for (const char* word : {text1, text2, text3}) text += " " + withoutQuotes(word);
  return text + " \"" + withoutQuotes(text4) + "\")";
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const MCommand& command) {
  return out << command.encoded;
}

MLog::MLog(const std::string& text, int duration) : MCommand(duration, "(log " + text + ")") {}

MMarker::MMarker(Vector2d p, const char* text, int duration)
    : MCommand(duration, marker(p, text, duration)) {}

MDPosition::MDPosition(Vector2d p, int duration)
    : MCommand(duration, compose("pos", duration, Point{p})) {}

MDCircle::MDCircle(Vector2d centre, double radius, bool filled, MStyle style, int duration)
    : MCommand(duration, compose("cir", duration, Point{centre}, radius, filled, int{style})) {}

MDLine::MDLine(Vector2d a, Vector2d b, MStyle style, int duration)
    : MCommand(duration, compose("line", duration, Point{a}, Point{b}, int{style})) {}

MDVLine::MDVLine(double x, MStyle style, int duration)
    : MCommand(duration, compose("vline", duration, x, int{style})) {}

MDBox::MDBox(Vector2d a, Vector2d b, MStyle style, int duration)
    : MCommand(duration, compose("box", duration, Point{a}, Point{b}, int{style})) {}

MDCorridor::MDCorridor(Vector2d a, Vector2d b, double width, Angle aperture, MStyle style,
                       int duration)
    : MCommand(duration, compose("corr", duration, Point{a}, Point{b}, width,
                                 static_cast<double>(aperture), int{style})) {}

MDLabel::MDLabel(Vector2d p, const std::string& text, int duration)
    : MCommand(duration, compose("lab", duration, Point{p}, text)) {}

MStop::MStop() : MCommand(ONCE, compose("stop")) {}

MDropBall::MDropBall(Vector2d p) : MCommand(ONCE, compose("drball", ONCE, Point{p})) {}

MFreekickUs::MFreekickUs(Vector2d p) : MCommand(ONCE, compose("fkus", ONCE, Point{p})) {}

MFreekickThem::MFreekickThem(Vector2d p) : MCommand(ONCE, compose("fkth", ONCE, Point{p})) {}

MSetPlayer::MSetPlayer(bool ours, int number, Vector2d p, Angle body)
    : MCommand(ONCE, compose("setpl", ONCE, number, ours, Point{p}, static_cast<double>(body))) {}

MELog::MELog(int a, int b, const char* text1, const char* text2, const char* text3,
             const std::string& text4, int duration)
    : MCommand(duration, event(a, b, text1, text2, text3, text4)) {}

}  // namespace vok
