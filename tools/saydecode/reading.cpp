#include "reading.h"

#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include "pitch.h"

namespace vok::saydecode {
namespace {

std::string numberOr(int number, const char* none) {
  return number == -1 ? none : std::to_string(number);
}

std::string kickerOf(const CoachMessage& told) {
  return numberOr(told.kicker, "none");
}

std::string opponentsOf(const CoachMessage& told) {
  if (told.lastDefender == 0 && told.secondLastDefender == 0) return "none";
  return std::to_string(told.lastDefender) + " and " + std::to_string(told.secondLastDefender);
}

/// Metres with the one decimal that travels.
void printPosition(std::ostream& out, const Vector2d& pos) {
  out << std::setw(7) << pos.x << std::setw(7) << pos.y;
}

}  // namespace

void printHeader(std::ostream& out, const AudioMsg& msg) {
  const unsigned destination = msg.getDestination();
  out << "  kind         " << (msg.isCoachMsg() ? "coach" : "player") << ", " << msg.getSize()
      << " characters\n"
      << "  prefix       " << std::string(msg.getEncoding(), 3) << "\n"
      << "  sender       " << msg.getSource() << (msg.getSideIsLeft() ? " left" : " right") << "\n"
      << "  destination  " << (destination == 0 ? "all" : std::to_string(destination)) << "\n"
      << "  checksum     " << (msg.isChkSumsValid() ? "holds" : "does not hold") << "\n"
      << "  time         " << msg.getServerTime() << "\n";
}

void printNews(std::ostream& out, const CoachMessage& told) {
  out << std::fixed << std::setprecision(1);
  out << "  goalies      ours " << numberOr(told.ourGoalie, "unknown") << ", theirs "
      << numberOr(told.otherGoalie, "unknown") << "\n";
  out << "  kicker       " << kickerOf(told) << "\n";
  out << "  opponents    " << opponentsOf(told) << "\n";
  out << "  ball     ";
  printPosition(out, told.ball);
  out << "\n  no             ours         theirs   type\n";
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    out << "  " << std::setw(2) << n << "     ";
    printPosition(out, told.ourTeam[n]);
    out << " ";
    printPosition(out, told.otherTeam[n]);
    out << std::setw(7) << numberOr(told.otherTypes[n], "-") << "\n";
  }
}

tools::FieldDrawing draw(const CoachMessage& told, const AudioMsg& msg) {
  tools::FieldDrawing drawing;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const bool named = n == told.lastDefender || n == told.secondLastDefender;
    const int type = told.otherTypes[n];
    drawing.players.push_back({told.otherTeam[n], false, n, n == told.otherGoalie,
                               named ? tools::Outline::DASHED : tools::Outline::NONE,
                               type == -1 ? "" : "type " + std::to_string(type)});
    drawing.players.push_back({told.ourTeam[n], true, n, n == told.ourGoalie,
                               n == told.kicker ? tools::Outline::SOLID : tools::Outline::NONE,
                               ""});
  }
  drawing.ball = told.ball;
  std::ostringstream caption;
  caption << "Time " << msg.getServerTime()
          << ". Blue: our team, attacking to the right. Ring: kicker " << kickerOf(told)
          << ". Dashed: opponents " << opponentsOf(told) << ".";
  drawing.caption = caption.str();
  return drawing;
}

}  // namespace vok::saydecode
