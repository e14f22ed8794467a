#include "pagetext.h"

#include <array>
#include <charconv>
#include <cmath>

#include "reporttables.h"

namespace vok::matchreport {

using namespace analysis;

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain =
        c >= ' ' && c <= '~' && c != '<' && c != '>' && c != '&' && c != '"' && c != '\'';
    constexpr unsigned char FIRST_LATIN = 0xa0;
    if (isPlain) {
      result += c;
    } else if (byte < ' ' || (byte > '~' && byte < FIRST_LATIN)) {
      result += '?';
    } else {
      result.append("&#").append(std::to_string(byte)).append(";");
    }
  }
  return result;
}

std::string shown(double value, int decimals) {
  constexpr double LARGEST = 1e9;
  if (!std::isfinite(value)) return "\u2013";
  std::array<char, 32> digits{};
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                  std::fmin(std::fmax(value, -LARGEST), LARGEST),
                                  std::chars_format::fixed, decimals)
                        .ptr;
  std::string text(digits.data(), end);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string percentage(double share, int decimals) {
  constexpr double PERCENT = 100;
  return shown(PERCENT * share, decimals);
}

std::string teamName(const MatchAnalysis& match, playing_side side) {
  const std::string& name = match.lastScore().names[side];
  if (name.empty()) return side == SIDE_LEFT ? "left" : "right";
  return escaped(name);
}

std::string teamWithSpot(const MatchAnalysis& match, playing_side side) {
  return std::string("<span class='swatch ") + classOf(side) + "'></span> " + teamName(match, side);
}

std::string sceneLink(int cycle, int from) {
  return "<a href='#t=" + std::to_string(std::max(from, 0)) + "'>" + std::to_string(cycle) + "</a>";
}

void beginPicture(std::string& out, const std::string& title, std::string_view viewBox) {
  out += "<figure><h3>" + title + "</h3><svg viewBox='";
  out.append(viewBox).append("' role='img'>");
}

void beginField(std::string& out, const std::string& title) {
  beginPicture(out, title, "-55 -36 110 72");
  out += "<use href='#field'/>";
}

void endPicture(std::string& out, std::string_view legend) {
  out += "</svg>";
  if (!legend.empty()) out.append("<figcaption>").append(legend).append("</figcaption>");
  out += "</figure>\n";
}

void drawPlayer(std::string& out, const Vector2d& pos, int player, double radius) {
  const char* const look = classOf(sideOf(player));
  out += "<circle class='" + std::string(look) + "' cx='" + shown(pos.x) + "' cy='" + shown(pos.y) +
         "' r='" + shown(radius) + "'/><text class='" + look + "' x='" + shown(pos.x) + "' y='" +
         shown(pos.y + 0.9) + "'>" + std::to_string(shirtOf(player)) + "</text>";
}

}  // namespace vok::matchreport
