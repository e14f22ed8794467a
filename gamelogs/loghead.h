// The head of a game log: all parameters of the server, as they were written.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "matchrules.h"

namespace vok::gamelogs {

/// One parameter message: names and values in their order. A text's value has its quotes, a truth
/// value is 0 or 1.
struct ParameterList {
  std::vector<std::pair<std::string, std::string>> items;

  /// The value of a name, empty without it.
  std::string_view value(std::string_view name) const;
  /// Sets `target` where the list has a number of this name.
  void number(std::string_view name, double& target) const;
  void number(std::string_view name, int& target) const;

  /// Reads "(HEAD (name value)(name value)...)"; false, with nothing changed, for anything else.
  bool read(std::string_view line, std::string_view head);
  void write(std::string_view head, std::string& to) const;
};

struct LogHead {
  static constexpr std::size_t MAX_TYPES = 1000;

  int version = 0;  ///< 4, 5, 6, or -1 for JSON
  ParameterList server;
  ParameterList player;
  std::vector<ParameterList> types;

  analysis::MatchRules rules() const;
};

}  // namespace vok::gamelogs
