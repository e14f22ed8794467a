// The program: one player of the team, for one match.
#include <VOK/Config.h>
#include <VOK/constants.h>
#include <VOK/stopsignals.h>
#include <getopt.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "player.h"

namespace {

// Exit statuses; start-team lets a player that was cut off come back.
constexpr int MATCH_OVER = 0;
constexpr int WRONG_OPTION = 1;
constexpr int CUT_OFF = 2;
constexpr int REFUSED = 3;
constexpr int NO_ANSWER = 4;
constexpr int NO_FILE = 5;
constexpr int NO_CONFIGURATION = 255;

struct Options {
  const char* team = "VOK";
  const char* host = "localhost";
  const char* configuration = "agent.conf";
  int port = vok::PORT;
  bool goalie = false;
  int reconnect = 0;
  const char* pictures = nullptr;
};

/// A number within the bounds, or -1.
int number(const char* text, int least, int greatest) {
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  return end != text && *end == '\0' && least <= value && value <= greatest
             ? static_cast<int>(value)
             : -1;
}

bool parseOptions(int argc, char** argv, Options& options) {
  for (int option = 0; (option = getopt(argc, argv, "t:h:p:f:gr:w:")) != -1;) {
    switch (option) {
      case 't':
        options.team = optarg;
        break;
      case 'h':
        options.host = optarg;
        break;
      case 'p':
        options.port = number(optarg, 1, 65535);
        break;
      case 'f':
        options.configuration = optarg;
        break;
      case 'g':
        options.goalie = true;
        break;
      case 'r':
        options.reconnect = number(optarg, vok::FIRST_SHIRT, vok::LAST_SHIRT);
        break;
      case 'w':
        options.pictures = optarg;
        break;
      default:
        return false;
    }
  }
  return optind == argc && options.port != -1 && options.reconnect != -1;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parseOptions(argc, argv, options)) {
    std::cerr << "usage: player [-t TEAM] [-h HOST] [-p PORT] [-f FILE] [-g] [-r NUMBER]\n"
                 "              [-w FILE]\n"
                 "  -t TEAM    team name (VOK)\n"
                 "  -h HOST    server host (localhost)\n"
                 "  -p PORT    the server's port for players (6000)\n"
                 "  -f FILE    configuration (agent.conf)\n"
                 "  -g         goalie\n"
                 "  -r NUMBER  come back as this player after being cut off\n"
                 "  -w FILE    write the world as it is at the end of every set play\n";
    return WRONG_OPTION;
  }
  if (!vok::Config::readFile(options.configuration)) {
    std::cerr << "player: cannot read the configuration " << options.configuration << "\n";
    return NO_CONFIGURATION;
  }
  std::ofstream pictures;
  if (options.pictures != nullptr) pictures.open(options.pictures);
  if (!pictures) {
    std::cerr << "player: cannot write " << options.pictures << "\n";
    return NO_FILE;
  }
  vok::stopOnSignals();
  vok::Comm comm(options.team, options.goalie ? vok::CLIENT_GOALIE : vok::CLIENT_FIELDPLAYER,
                 options.host, options.port, options.reconnect, false, 7, 8, vok::SIDE_LEFT);
  if (!comm.isServerAlive()) return NO_ANSWER;
  const vok::comm_error result = comm.connect();
  if (result != vok::COMM_OK) return result == vok::COMM_ERROR_NO_DATA ? NO_ANSWER : REFUSED;
  // A connection that comes back takes the second half for begun and would wait for it in the
  // first; the next message tells the time.
  if (options.reconnect > 0) {
    comm.async->setStates(options.reconnect, 0, comm.getPlayMode(), comm.getMySide(), false);
  }
  std::cout << "player: number " << comm.getMyNumber() << " of " << comm.getMyTeam() << " on the "
            << (comm.getMySide() == vok::SIDE_LEFT ? "left" : "right") << std::endl;

  Player player(comm);
  player.pictures = pictures.is_open() ? &pictures : nullptr;
  const char* trouble = play(player);
  if (trouble == nullptr) return MATCH_OVER;
  std::cerr << "player: number " << comm.getMyNumber() << " " << trouble << "\n";
  return CUT_OFF;
}
