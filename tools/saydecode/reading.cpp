#include "reading.h"

#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include "Config.h"
#include "constants.h"

namespace vok::saydecode {
namespace {

std::string numberOr(int number, int none, const char* nobody) {
  return number == none ? nobody : std::to_string(number);
}

std::string kickerOf(const CoachNews& news) {
  return news.kicker == CoachNews::NO_KICKER ? "none" : std::to_string(news.kicker);
}

/// The two named opponents, a first.
std::string opponentsOf(const CoachNews& news) {
  if (news.opponents == 0) return "none";
  return std::to_string(news.opponents / 12) + " and " + std::to_string(news.opponents % 12);
}

/// A player's world at time 0, so that no message is too old for it, with room for every type that
/// the code has.
Worldmodel freshWorld() {
  setEntry("world_maxPlayersOurTeam", "11");
  setEntry("world_maxPlayersOtherTeam", "11");
  playerParams.player_types = 63;
  Worldmodel world(nullptr);
  world.my.number = 0;
  return world;
}

/// Metres with the one decimal that travels.
void printPosition(std::ostream& out, const Vector2d& pos) {
  out << std::setw(7) << pos.x << std::setw(7) << pos.y;
}

}  // namespace

std::optional<CoachNews> readNews(AudioMsg msg) {
  if (!msg.isChkSumsValid()) return std::nullopt;
  CoachNews news{freshWorld(), 0, 0};
  Int3B kicker;
  Int3B opponents;
  if (!news.world.feedbackAudio(msg)) return std::nullopt;
  msg >> kicker >> opponents;
  if (!msg.getState()) return std::nullopt;
  news.kicker = kicker.getValue();
  news.opponents = opponents.getValue();
  return news;
}

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

void printNews(std::ostream& out, const CoachNews& news) {
  const Worldmodel& world = news.world;
  out << std::fixed << std::setprecision(1);
  out << "  goalies      ours " << numberOr(world.ourGoalieNo, -1, "unknown") << ", theirs "
      << numberOr(world.otherGoalieNo, -1, "unknown") << "\n";
  out << "  kicker       " << kickerOf(news) << "\n";
  out << "  opponents    " << opponentsOf(news) << "\n";
  out << "  ball     ";
  printPosition(out, world.ball.pos);
  out << "\n  no             ours         theirs   type\n";
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    out << "  " << std::setw(2) << n << "     ";
    printPosition(out, world.ourTeam[n].pos);
    out << " ";
    printPosition(out, world.otherTeam[n].pos);
    out << std::setw(7) << numberOr(world.otherTeam[n].type, -1, "-") << "\n";
  }
}

tools::FieldDrawing draw(const CoachNews& news, const AudioMsg& msg) {
  const Worldmodel& world = news.world;
  tools::FieldDrawing drawing;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const auto number = static_cast<unsigned>(n);
    const bool named = number == news.opponents / 12 || number == news.opponents % 12;
    const int type = world.otherTeam[n].type;
    drawing.players.push_back({world.otherTeam[n].pos, false, n, n == world.otherGoalieNo,
                               named ? tools::Ring::DASHED : tools::Ring::NONE,
                               type == -1 ? "" : "type " + std::to_string(type)});
    drawing.players.push_back({world.ourTeam[n].pos, true, n, n == world.ourGoalieNo,
                               number == news.kicker ? tools::Ring::SOLID : tools::Ring::NONE, ""});
  }
  drawing.ball = world.ball.pos;
  std::ostringstream caption;
  caption << "Time " << msg.getServerTime()
          << ". Blue: our team, attacking to the right. Ring: kicker " << kickerOf(news)
          << ". Dashed: opponents " << opponentsOf(news) << ".";
  drawing.caption = caption.str();
  return drawing;
}

}  // namespace vok::saydecode
