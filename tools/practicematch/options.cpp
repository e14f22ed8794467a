#include "options.h"

#include <cstdint>

#include "commandline.h"
#include "session.h"

namespace vok::practicematch {

namespace {

using tools::flag;
using tools::number;
using tools::text;

bool readSide(const std::string& letter, Side& side) {
  side = letter == "l" ? Side::Left : Side::Right;
  return letter == "l" || letter == "r";
}

bool readTeam(const std::string& name, std::string& team) {
  team = name;
  return initTeam("(init " + name + " (version 9.00))").has_value();
}

// Options of a simulated match, which a recording does not take, and of a recording.
std::vector<tools::Option> matchOptions(Options& o) {
  return {
      {"--cycles", "N", "length in two halves, 2 to 100000 cycles (default 6000)",
       number(o.match.cycles, 2, 100000)},
      {"--seed", "N", "chooses the match: a whole number; the same one, the same match (default 2)",
       number(o.match.seed, std::uint64_t{0}, UINT64_MAX)},
      {"--side", "l|r", "the coach's side, l or r (default l)",
       [&o](const std::string& v) { return readSide(v, o.match.coachSide); }},
      {"--types", "N", "player types, the default one included, 1 to 100 (default 18)",
       number(o.match.types, 1, 100)},
      {"--pt-max", "N", "players of one type in a team, 1 to 11 (default 1)",
       number(o.match.ptMax, 1, LAST_SHIRT)},
      {"--step", "MS",
       "real time, a cycle every 1 to 10000 ms; the clock does not wait for the coach",
       number(o.stepMs, 1, 10000)},
      {"--player-port", "N", "lets players in there that hear the coach, 0 to 65535 (default none)",
       number(o.playerPort, 0, 65535)},
      {"--game-log", "FILE",
       "writes the match there as a server's game log (.rcg), and what the coach says beside it as "
       "a "
       "text log (.rcl)",
       text(o.gameLog)},
      {"--lenient", "", "no warning about commands without a terminator", flag(o.lenient)},
  };
}

std::vector<tools::Option> recordingOptions(Options& o) {
  return {{"--speed", "X",
           "with --replay: at the recorded times, so many times faster, 0.001 to 1000000",
           number(o.speed, 0.001, 1e6)}};
}

std::vector<tools::Option> commonOptions(Options& o) {
  return {
      {"--replay", "FILE", "sends the datagrams of a recording, - for standard input",
       text(o.replay)},
      {"--synch", "",
       "as fast as the coach answers \"(done)\" (default, but for recordings in real time)",
       flag(o.synch)},
      {"--team", "NAME",
       "lets in only the coach of this team: 1 to 15 letters, digits, - and _ (default any)",
       [&o](const std::string& v) { return readTeam(v, o.team); }},
      {"--port", "N", "port, 0 to 65535; 0 takes a free one (default 6002)",
       number(o.match.port, 0, 65535)},
      {"--wait", "SECONDS", "how long to wait for a coach, 1 to 86400 (default 60)",
       number(o.waitSeconds, 1, 86400)},
      {"--log", "FILE", "writes every command of the coach there, a line each", text(o.log)},
      {"--quiet", "", "no report at the end", flag(o.quiet)},
  };
}

/// What does not go together; empty when all does.
std::string contradiction(Options& options, const std::set<std::string>& given) {
  const bool replay = !options.replay.empty();
  for (const tools::Option& row : replay ? matchOptions(options) : recordingOptions(options)) {
    if (given.contains(row.name)) {
      return row.name + (replay ? " does not go with --replay" : " goes only with --replay");
    }
  }
  for (const char* pace : {"--step", "--speed"}) {
    if (options.synch && given.contains(pace)) {
      return std::string("--synch does not go with ") + pace;
    }
  }
  return {};
}

}  // namespace

std::optional<int> readOptions(int argc, char** argv, Options& options) {
  tools::Tool tool = {
      "practicematch",
      "[OPTION...]",
      "Stands in for the simulator server on the online coach's port: waits for a coach on\n"
      "this machine and shows it a simulated match, or a recorded one. At the end it\n"
      "reports how the coach did. With --player-port, players of the coach's team may come\n"
      "too, before the coach or later. They get the calls, their senses and what the coach\n"
      "says, but their commands have no effect.\n",
      {},
      "Exit status: 0 the coach stayed to the end and left with \"(bye)\"; 1 it did not, none\n"
      "came, or a port cannot be opened; 2 a wrong argument, or a file that cannot be read or\n"
      "written.\n"};
  for (const auto& rows :
       {matchOptions(options), recordingOptions(options), commonOptions(options)}) {
    tool.options.insert(tool.options.end(), rows.begin(), rows.end());
  }
  std::set<std::string> given;
  if (const auto status = readCommandLine(tool, argc, argv, &given)) return status;
  const std::string wrong = contradiction(options, given);
  if (!wrong.empty()) return tools::fail(tool.name, wrong);
  options.match.synch = options.stepMs == 0;
  return std::nullopt;
}

}  // namespace vok::practicematch
