// Puts the server's and the players' parameters back to what they were.
#pragma once

#include <type_traits>
#include <vector>

#include "Parser.h"

namespace vok::test {

class ParamKeeper {
 public:
  ParamKeeper() : before_(values()) {}
  ~ParamKeeper() { restore(); }
  ParamKeeper(const ParamKeeper&) = delete;
  ParamKeeper& operator=(const ParamKeeper&) = delete;

  /// All stored parameters in the order of the tables.
  static std::vector<double> values() {
    std::vector<double> all;
    visit([&](auto& value) { all.push_back(static_cast<double>(value)); });
    return all;
  }

  static void store(const std::vector<double>& all) {
    auto next = all.begin();
    visit([&](auto& v) { v = static_cast<std::remove_reference_t<decltype(v)>>(*next++); });
  }

  void restore() const { store(before_); }

 private:
  template <typename Visitor>
  static void visit(Visitor visitor) {
    for (const auto* table : {&Parser::serverParamTokens, &Parser::playerParamTokens}) {
      for (const Token& row : *table) {
        if (row.dt == DT_INT) visitor(*static_cast<int*>(row.ptr));
        if (row.dt == DT_DOUBLE) visitor(*static_cast<double*>(row.ptr));
        if (row.dt == DT_BOOL) visitor(*static_cast<bool*>(row.ptr));
      }
    }
  }

  std::vector<double> before_;
};

}  // namespace vok::test
