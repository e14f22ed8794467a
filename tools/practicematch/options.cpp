#include "options.h"

#include <array>
#include <charconv>
#include <set>
#include <string_view>

#include "session.h"

namespace vok::practice {

namespace {

struct Argument {
  std::string_view name;
  std::string_view value;
};

using Reader = bool (*)(std::string_view value, Options& options);

enum class Goes { Always, WithMatch, WithReplay };

struct Row {
  std::string_view name;
  std::string_view valueName;  ///< empty: takes no value
  Reader read;
  Goes goes;
  std::string_view help;  ///< also says what values are right
};

template <typename Number>
bool readNumber(std::string_view text, Number low, Number high, Number& number) {
  Number read{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  if (!(read >= low && read <= high)) return false;
  number = read;
  return true;
}

bool readSide(std::string_view text, Options& o) {
  if (text != "l" && text != "r") return false;
  o.match.coachSide = text == "l" ? Side::Left : Side::Right;
  return true;
}

bool readTeam(std::string_view text, Options& o) {
  o.team = text;
  return initTeam("(init " + o.team + " (version 9.00))").has_value();
}

const std::array<Row, 17> ROWS = {{
    {"--cycles", "N",
     [](std::string_view v, Options& o) { return readNumber(v, 2, 100000, o.match.cycles); },
     Goes::WithMatch, "length in two halves, 2 to 100000 cycles (default 6000)"},
    {"--seed", "N",
     [](std::string_view v, Options& o) {
       return readNumber<std::uint64_t>(v, 0, UINT64_MAX, o.match.seed);
     },
     Goes::WithMatch,
     "chooses the match: a whole number; the same one, the same match (default 2)"},
    {"--side", "l|r", readSide, Goes::WithMatch, "the coach's side, l or r (default l)"},
    {"--types", "N",
     [](std::string_view v, Options& o) { return readNumber(v, 1, 100, o.match.types); },
     Goes::WithMatch, "player types, the default one included, 1 to 100 (default 18)"},
    {"--pt-max", "N",
     [](std::string_view v, Options& o) { return readNumber(v, 1, 11, o.match.ptMax); },
     Goes::WithMatch, "players of one type in a team, 1 to 11 (default 1)"},
    {"--step", "MS",
     [](std::string_view v, Options& o) { return readNumber(v, 1, 10000, o.stepMs); },
     Goes::WithMatch, "real time, a cycle every 1 to 10000 ms; the clock waits for nobody"},
    {"--replay", "FILE",
     [](std::string_view v, Options& o) {
       o.replay = v;
       return !v.empty();
     },
     Goes::Always, "sends the datagrams of a recording, - for standard input"},
    {"--speed", "X",
     [](std::string_view v, Options& o) { return readNumber(v, 0.001, 1e6, o.speed); },
     Goes::WithReplay, "at the recorded times, so many times faster, 0.001 to 1000000"},
    {"--synch", "", [](std::string_view, Options& o) { return o.synch = true; }, Goes::Always,
     "as fast as the coach answers \"(done)\" (default, but for recordings in real time)"},
    {"--team", "NAME", readTeam, Goes::Always,
     "lets in only the coach of this team: 1 to 15 letters, digits, - and _ (default any)"},
    {"--port", "N",
     [](std::string_view v, Options& o) { return readNumber(v, 0, 65535, o.match.port); },
     Goes::Always, "port, 0 to 65535; 0 takes a free one (default 6002)"},
    {"--player-port", "N",
     [](std::string_view v, Options& o) { return readNumber(v, 0, 65535, o.playerPort.emplace()); },
     Goes::WithMatch, "lets players in there that hear the coach, 0 to 65535 (default: none)"},
    {"--wait", "SECONDS",
     [](std::string_view v, Options& o) { return readNumber(v, 1, 86400, o.waitSeconds); },
     Goes::Always, "how long to wait for a coach, 1 to 86400 (default 60)"},
    {"--log", "FILE",
     [](std::string_view v, Options& o) {
       o.log = v;
       return !v.empty();
     },
     Goes::Always, "writes every command of the coach there, a line each"},
    {"--lenient", "", [](std::string_view, Options& o) { return o.lenient = true; },
     Goes::WithMatch, "no warning about commands without a terminator"},
    {"--quiet", "", [](std::string_view, Options& o) { return o.quiet = true; }, Goes::Always,
     "no report at the end"},
    {"--help", "", [](std::string_view, Options& o) { return o.help = true; }, Goes::Always,
     "this text"},
}};

const Row* rowOf(std::string_view name) {
  for (const Row& row : ROWS) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

std::string contradiction(const Options& options, const std::set<const Row*>& given) {
  const bool replay = !options.replay.empty();
  for (const Row* row : given) {
    if (row->goes == Goes::WithMatch && replay) {
      return std::string(row->name) + " does not go with --replay";
    }
    if (row->goes == Goes::WithReplay && !replay) {
      return std::string(row->name) + " goes only with --replay";
    }
  }
  if (options.synch && (options.stepMs != 0 || options.speed != 0)) {
    return std::string("--synch does not go with ") + (options.stepMs != 0 ? "--step" : "--speed");
  }
  return {};
}

}  // namespace

std::optional<Options> readOptions(int count, const char* const* arguments, std::string& error) {
  Options options;
  std::set<const Row*> given;
  for (int i = 1; i < count; ++i) {
    const std::string name = arguments[i];
    const Row* row = rowOf(name);
    if (row == nullptr) {
      error = "unknown argument \"" + name + "\"; --help lists what there is";
      return std::nullopt;
    }
    std::string value;
    if (!row->valueName.empty()) {
      if (++i == count) {
        error = name + " needs a value: " + std::string(row->help);
        return std::nullopt;
      }
      value = arguments[i];
    }
    if (!row->read(value, options)) {
      error = name;
      error.append(" cannot be \"").append(value).append("\": ").append(row->help);
      return std::nullopt;
    }
    given.insert(row);
  }
  error = contradiction(options, given);
  options.match.synch = options.stepMs == 0;
  return error.empty() ? std::optional(options) : std::nullopt;
}

std::string helpText() {
  std::string text =
      "practicematch [OPTION]...\n\n"
      "Stands in for the simulator server on the online coach's port: waits for a coach on this\n"
      "machine and shows it a simulated match, or a recorded one. At the end it reports how the\n"
      "coach did. With --player-port, players of the coach's team may come too, before the coach\n"
      "or later. They get the calls, their senses and what the coach says, but steer no body.\n\n";
  for (const Row& row : ROWS) {
    std::string left = "  " + std::string(row.name);
    if (!row.valueName.empty()) left += " " + std::string(row.valueName);
    left.resize(20, ' ');
    text += left + std::string(row.help) + "\n";
  }
  return text +
         "\nExit status: 0 the coach stayed to the end and left with \"(bye)\", 1 it did not, or"
         "\nnone came, 2 a wrong argument.\n";
}

}  // namespace vok::practice
