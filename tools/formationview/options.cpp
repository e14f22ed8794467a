#include "options.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "scanner.h"

namespace vok {
namespace {

constexpr double HALF_LENGTH = 52.5;  // of the field, metres
constexpr double HALF_WIDTH = 34;
constexpr int MAX_PICTURES = 100;

using Reason = std::optional<std::string>;

bool readPoint(Scanner& text, Vector2d& point) {
  return text.real(point.x) && text.literal(',') && text.real(point.y) &&
         std::abs(point.x) <= HALF_LENGTH && std::abs(point.y) <= HALF_WIDTH;
}

/// A point, or two and how many positions the way between them has.
bool readSweep(Scanner text, Vector2d& from, Vector2d& to, int& count) {
  if (!readPoint(text, from)) return false;
  to = from;
  count = 1;
  if (text.rest().empty()) return true;
  return text.literal(':') && readPoint(text, to) && text.literal(':') && text.integer(count) &&
         count >= 2 && text.rest().empty();
}

Reason takeBall(Options& options, const std::string& value) {
  Vector2d from;
  Vector2d to;
  int count = 0;
  if (!readSweep(Scanner(value), from, to, count)) {
    return "--ball needs X,Y or X,Y:X,Y:COUNT with |X| <= 52.5, |Y| <= 34 and COUNT >= 2, not '" +
           value + "'";
  }
  if (count > MAX_PICTURES - static_cast<int>(options.balls.size())) {
    return "more than " + std::to_string(MAX_PICTURES) + " ball positions";
  }
  for (int i = 0; i < count; ++i) {
    const double share = static_cast<double>(i) / std::max(count - 1, 1);
    options.balls.push_back(from + share * (to - from));
  }
  return std::nullopt;
}

Reason takeOffside(Options& options, const std::string& value) {
  Scanner text(value);
  double x = 0;
  if (!text.real(x) || !text.rest().empty() || x < 0 || x > HALF_LENGTH) {
    return "--offside needs an x from 0 to 52.5, not '" + value + "'";
  }
  options.offside = x;
  return std::nullopt;
}

Reason takeFormation(std::optional<int>& formation, const std::string& value) {
  if (value != "0" && value != "1" && value != "2") {
    return "a formation is 0, 1 or 2, not '" + value + "'";
  }
  formation = value[0] - '0';
  return std::nullopt;
}

Reason takeName(std::string& name, const char* what, const std::string& value) {
  if (value.empty()) return std::string(what) + " needs a name";
  name = value;
  return std::nullopt;
}

struct OptionRow {
  std::string_view name;
  Reason (*take)(Options&, const std::string& value);
};

constexpr auto ROWS = std::to_array<OptionRow>({
    {"-f", [](Options& o,
              const std::string& v) { return takeName(o.configFile, "the configuration", v); }},
    {"--out", [](Options& o, const std::string& v) { return takeName(o.outFile, "--out", v); }},
    {"--form-def", [](Options& o, const std::string& v) { return takeFormation(o.formDef, v); }},
    {"--form-off", [](Options& o, const std::string& v) { return takeFormation(o.formOff, v); }},
    {"--ball", takeBall},
    {"--offside", takeOffside},
});

}  // namespace

std::optional<std::string> parse(const std::vector<std::string>& arguments, Options& options) {
  bool named = false;  // the configuration
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help") {
      options.help = true;
      return std::nullopt;
    }
    const bool bare = !argument.starts_with("-");
    const std::string_view name = bare ? std::string_view("-f") : std::string_view(argument);
    const auto* const row =
        std::find_if(ROWS.begin(), ROWS.end(),
                     [name](const OptionRow& candidate) { return candidate.name == name; });
    if (row == ROWS.end()) return "unknown option '" + argument + "'";
    if (!bare && ++i == arguments.size()) return argument + " needs a value";
    if (name == "-f" && named) return "more than one configuration: '" + arguments[i] + "'";
    named = named || name == "-f";
    if (Reason reason = row->take(options, arguments[i])) return reason;
  }
  if (options.balls.empty()) options.balls.emplace_back();
  return std::nullopt;
}

}  // namespace vok
