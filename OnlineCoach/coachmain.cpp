// The online coach's program: command line, one coach, one match.
#include <getopt.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "constants.h"
#include "errorlines.h"
#include "stopsignals.h"
#include "vokcoach.h"

namespace {

struct Options {
  const char* team = "VOK";
  const char* host = "localhost";
  int port = vok::OLCOACH_PORT;
  const char* agentConfFile = "agent.conf";
  const char* traceConfFile = "trace.conf";
  bool zeltraMode = false;
};

void printUsage(const char* program) {
  std::cerr << "Usage: " << program << "[-t TEAMNAME] [-h HOSTNAME]"
            << "[-p PORTNO] [-l FILENAME] [-f FILENAME]\n"
            << " -l  FILENAME  alternative configuration file for tactics (default trace.conf)\n"
            << " -F  enable ZELTRA mode\n"
            << " -f  FILENAME  alternative configuration file for tactics (default agent.conf)\n"
            << "\n";
}

bool parseOptions(int argc, char** argv, Options& options) {
  // -l takes no argument although the usage announces one; the trace file is never opened.
  for (int option = 0; (option = getopt(argc, argv, "Ft:h:p:lf:")) != -1;) {
    switch (option) {
      case 't':
        options.team = optarg;
        break;
      case 'h':
        options.host = optarg;
        break;
      case 'p':
        options.port = static_cast<int>(std::strtol(optarg, nullptr, 10));
        break;
      case 'f':
        options.agentConfFile = optarg;
        break;
      case 'l':
        options.traceConfFile = optarg;
        break;
      case 'F':
        options.zeltraMode = true;
        break;
      default:
        return false;
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  static const vok::ErrorLines lines;  // std::exit may end the program
  Options options;
  if (!parseOptions(argc, argv, options)) {
    printUsage(argv[0]);
    return 1;
  }
  std::cerr << "Vokar RoboCup Online Coach\n"
            << "Speaks protocol 9.00; all diagnostics are on standard error.\n";

  vok::stopOnSignals();
  const auto coach = std::make_unique<vok::VokCoach>(options.team, options.host, options.port,
                                                     options.agentConfFile, options.traceConfFile,
                                                     options.zeltraMode);
  coach->coach();
  coach->writeSummary();
  return 0;
}
