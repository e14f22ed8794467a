// A player that only listens: checks in as a field player, hears what the coach says, takes it into
// its world model and prints it. The skeleton of any player that is built on the library.
#include <VOK/Comm.h>
#include <VOK/Config.h>
#include <VOK/coachmessage.h>
#include <VOK/cycleloop.h>
#include <VOK/stopsignals.h>
#include <VOK/worldmodel.h>

#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <string>

namespace {

/// The keys that the library reads at the start. A team reads them, and its own, from a file:
/// `Config::readFile("agent.conf")`.
void configure() {
  // A listener needs no view: its cycle begins with the body sense.
  vok::setEntry("async_waitForSeeTime", "0");
  vok::setEntry("world_maxPlayersOurTeam", "11");
  vok::setEntry("world_maxPlayersOtherTeam", "11");
}

std::string numberOr(int number, const char* unknown) {
  return number == -1 ? unknown : std::to_string(number);
}

/// Metres with one decimal, as they travel, in our own frame: our goal is on the left, at negative
/// x.
void printPosition(const vok::Vector2d& pos) {
  std::cout << std::setw(7) << pos.x << std::setw(7) << pos.y;
}

void printNews(const vok::Worldmodel& world, unsigned sayTime, int kicker) {
  std::cout << std::fixed << std::setprecision(1) << "cycle " << world.time
            << ": the coach said in cycle " << sayTime << "\n  kicker    "
            << numberOr(kicker, "none") << "\n  goalies   ours "
            << numberOr(world.ourGoalieNo, "unknown") << ", theirs "
            << numberOr(world.otherGoalieNo, "unknown") << "\n  ball   ";
  printPosition(world.ball.pos);
  std::cout << "\n  no          ours        theirs   type\n";
  for (int n = vok::FIRST_SHIRT; n <= vok::LAST_SHIRT; ++n) {
    std::cout << std::setw(4) << n << "  ";
    if (n == world.my.number) {
      // A player knows its own position better than the coach's message tells it.
      std::cout << std::setw(14) << "myself";
    } else {
      printPosition(world.ourTeam[n].pos);
    }
    printPosition(world.otherTeam[n].pos);
    std::cout << std::setw(7) << numberOr(world.otherTeam[n].type, "-") << "\n";
  }
  std::cout << std::flush;
}

/// Takes over what was said since the last call. The world refuses what is not a coach's message or
/// came too late.
void listen(vok::Comm& comm, vok::Worldmodel& world) {
  vok::AudioMsg message;
  while (comm.getNextMsg(message)) {
    // Read before the world does: its reading moves the position that the checksum covers.
    const auto news = vok::CoachMessage::read(message);
    if (!world.feedbackAudio(message) || !news) continue;
    printNews(world, message.getServerTime(), news->kicker);
  }
}

/// Runs the match and returns why it ended.
const char* play(vok::Comm& comm) {
  vok::Worldmodel world(&comm);
  world.takeChangesWithoutComma();  // current servers announce our types so
  std::cout << "player " << comm.getMyNumber() << " of " << comm.getMyTeam() << " on the "
            << (comm.getMySide() == vok::SIDE_LEFT ? "left" : "right") << ", listening"
            << std::endl;
  while (!comm.isGameOver()) {
    comm.drainSocket();
    if (vok::isStopRequested()) return "stopped by a signal";
    const bool newCycle = vok::takeCycle(comm, world);
    listen(comm, world);
    if (newCycle) {
      // Here a player decides and sends one command for its body, such as comm.sendDash(60), which
      // clears this flag. A listener sends none and clears it itself.
      comm.async->actionNeeded = false;
      vok::endCycle(comm);
    }
    if (!comm.isServerAlive()) return "the server fell silent";
  }
  return "the match is over";
}

}  // namespace

int main(int argc, char** argv) {
  const char* host = argc > 1 ? argv[1] : "localhost";
  const int port = argc > 2 ? std::atoi(argv[2]) : 6000;
  const char* team = argc > 3 ? argv[3] : "VOK";
  if (argc > 4 || host[0] == '-' || port < 1 || port > 65535) {
    std::cerr << "usage: player_listener [HOST [PORT [TEAM]]]   (localhost 6000 VOK)\n";
    return 2;
  }

  configure();
  vok::stopOnSignals();
  // Connects for the first time, without remote control, with the coach language from 7 to 8. The
  // side matters to trainers only.
  vok::Comm comm(team, vok::CLIENT_FIELDPLAYER, host, port, 0, false, 7, 8, vok::SIDE_LEFT);
  if (!comm.isServerAlive() || comm.connect() != vok::COMM_OK) {
    std::cout << "player_listener: not let in" << std::endl;
    return 1;
  }
  const char* ending = play(comm);
  std::cout << "player_listener: " << ending << std::endl;
}
