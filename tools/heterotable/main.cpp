// Prints what the players of each type can do, what that is worth in each part of the team, and
// which types the coach would give.
#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <string>

#include "Config.h"
#include "Parser.h"
#include "commandline.h"
#include "constants.h"
#include "typeassignment.h"
#include "typevalues.h"
#include "worldmodel.h"

using namespace vok;

namespace {

constexpr int NO_TYPES = 1;
constexpr std::array<const char*, NUM_ROLES> ROLE_NAMES = {"defender", "midfielder", "offender"};

struct Options {
  std::string source;
  std::string configFile = "agent.conf";
  int limit = 0;
};

tools::Tool commandLine(Options& options) {
  return {
      "heterotable",
      "[-f FILE] [--limit N] SOURCE",
      "Reads the player types of a match and prints for each type what its players can do, by\n"
      "simulation: cycles for 5 and for 20 m from a standing start and for a half-turn at top\n"
      "speed, metres in a half within the stamina, reach and noise of a kick. Then what that is\n"
      "worth in each part of the team by the weights of the configuration (the default type is\n"
      "100), the product of top speed and kept speed, and the best choice for the team.\n",
      {{"SOURCE", "",
        "a coach's recording, or a game log of version 4 to 6 (not compressed); - is "
        "standard input",
        tools::text(options.source), true},
       {"-f", "FILE", "the configuration, agent.conf by default", tools::text(options.configFile)},
       {"--limit", "N", "so many players may have the same type; by default what the source says",
        [&options](const std::string& value) {
          return tools::readNumber(value, 1, LAST_SHIRT, options.limit);
        }}},
      "Exit status: 0; 1 when the source names no types; 2 for a wrong argument.\n"};
}

int fail(const std::string& reason, int status = tools::BAD_ARGUMENT) {
  return tools::fail("heterotable", reason, status);
}

/// The parameter messages of a source, wherever they begin in a line.
class Messages {
 public:
  bool read(std::istream& in) {
    for (std::string line; std::getline(in, line);) take(line);
    return !in.bad();
  }
  /// The types by id; those that were not announced have the state -1.
  std::vector<WPlayerType> types() const {
    Worldmodel world(nullptr);
    SensorData data;
    Parser parser("", CLIENT_ONLINECOACH, 7, 8);
    for (const std::string& text : types_) {
      if (parser.parseServerString(text, data)) world.adjust(data, {});
    }
    return world.playerType;
  }

 private:
  void take(const std::string& line) {
    takeParameters(line, "(server_param ");
    takeParameters(line, "(player_param ");
    const std::size_t type = line.find("(player_type ");
    if (type != line.npos) types_.push_back(line.substr(type));
  }

  /// Item by item: a game log has more of them than a coach is told, and the parser stops at the
  /// first that it does not know.
  static void takeParameters(const std::string& line, const std::string& head) {
    Parser parser("", CLIENT_ONLINECOACH, 7, 8);
    const std::size_t begin = line.find(head);
    if (begin == line.npos) return;
    for (std::size_t item = line.find('(', begin + 1); item != line.npos;) {
      const std::size_t next = line.find('(', item + 1);
      const std::string text = head + line.substr(item, next - item);
      if (!parser.parseServerParam(text)) parser.parsePlayerParam(text);
      item = next;
    }
  }

  std::vector<std::string> types_;
};

struct Row {
  int type;
  std::array<TypeAbility, NUM_ROLES> abilities;
  std::array<double, NUM_ROLES> values;
  double speeds;
};

std::vector<Row> rowsOf(const std::vector<WPlayerType>& types, const TypeValues& values) {
  std::vector<Row> rows;
  for (int t = 0; t < static_cast<int>(types.size()); ++t) {
    const WPlayerType& type = types[static_cast<std::size_t>(t)];
    if (t != DEFAULT_TYPE && type.state == -1) continue;
    Row row{t, {}, {}, productOfSpeeds(type) / productOfSpeeds(WPlayerType::fromDefaults())};
    for (int r = DEFENDER; r < NUM_ROLES; ++r) {
      const auto role = static_cast<PlayerRole>(r);
      row.abilities[role] = values.abilityOf(type, role);
      row.values[role] = values.valueOf(row.abilities[role], role);
    }
    rows.push_back(row);
  }
  return rows;
}

void print(const std::vector<Row>& rows, const TypeValues& values) {
  std::cout << "        cycles for          metres of a half    turn    kick          "
               "worth in %\n"
               " type    5 m   20 m    def    mid    off  cycles  reach  noise    def  mid  off "
               "speeds\n"
            << std::fixed;
  for (const Row& row : rows) {
    const auto& [def, mid, off] = row.abilities;
    std::cout << std::setw(5) << row.type << std::setprecision(2) << std::setw(7) << def.shortRun
              << std::setw(7) << def.longRun << std::setprecision(0);
    for (const double way : {def.way, mid.way, off.way}) std::cout << std::setw(7) << way;
    std::cout << std::setprecision(2) << std::setw(8) << def.halfTurn << std::setprecision(3)
              << std::setw(7) << def.kickRange << std::setw(7) << def.kickNoise
              << std::setprecision(0) << "  ";
    for (const double value : row.values) std::cout << std::setw(5) << 100 * value;
    std::cout << std::setw(7) << 100 * row.speeds << "\n";
  }
  std::cout << "\nweights      5 m   20 m    way   turn  reach  noise  share of dashing\n"
            << std::setprecision(2);
  for (int r = DEFENDER; r < NUM_ROLES; ++r) {
    const auto& [shortRun, longRun, way, turn, reach, noise, share] =
        values.weights(static_cast<PlayerRole>(r));
    std::cout << std::left << std::setw(10) << ROLE_NAMES[static_cast<std::size_t>(r)]
              << std::right;
    for (const double weight : {shortRun, longRun, way, turn, reach, noise, share}) {
      std::cout << std::setw(7) << weight;
    }
    std::cout << "\n";
  }
}

/// The choice that the coach makes before the match, when nobody has a type yet.
void printChoice(const std::vector<Row>& rows, std::size_t types, int limit,
                 const TacticalModule& tactical) {
  TypeAssignment assignment(LAST_SHIRT - FIRST_FIELD_PLAYER + 1, types);
  std::vector<int> capacity(types);
  for (const Row& row : rows) {
    capacity[static_cast<std::size_t>(row.type)] = limit - (row.type == DEFAULT_TYPE ? 1 : 0);
    for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
      assignment.setUtility(static_cast<std::size_t>(n - FIRST_FIELD_PLAYER),
                            static_cast<std::size_t>(row.type), row.values[roleOf(n, tactical)]);
    }
  }
  assignment.solve(capacity);
  std::cout << "\nchoice, " << limit << " of a type at most (the goalie keeps type 0)\n";
  for (int n = FIRST_FIELD_PLAYER; n <= LAST_SHIRT; ++n) {
    const PlayerRole role = roleOf(n, tactical);
    std::cout << std::setw(5) << n << "  " << std::left << std::setw(12) << ROLE_NAMES[role]
              << std::right << "type" << std::setw(4)
              << assignment.typeOf(static_cast<std::size_t>(n - FIRST_FIELD_PLAYER)) << "\n";
  }
}

bool readSource(const std::string& name, Messages& messages) {
  if (name == "-") return messages.read(std::cin);
  std::ifstream file(name);
  return file && messages.read(file);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = tools::readCommandLine(commandLine(options), argc, argv)) return *status;
  Messages messages;
  if (!readSource(options.source, messages)) return fail(options.source + ": cannot be read");
  if (!Config::readFile(options.configFile.c_str())) {
    return fail(options.configFile + ": cannot be read");
  }
  const auto types = messages.types();
  if (types.size() <= 1) return fail(options.source + ": names no player types", NO_TYPES);

  Worldmodel world(nullptr);
  world.adjustTacticalNumbers(FIRST_SHIRT);
  const TacticalModule tactical(&world, nullptr);
  const TypeValues values;
  const auto rows = rowsOf(types, values);
  const int told = static_cast<int>(std::clamp(playerParams.pt_max, 1.0, double{LAST_SHIRT}));
  print(rows, values);
  printChoice(rows, types.size(), options.limit > 0 ? options.limit : told, tactical);
  return 0;
}
