// What the parser is measured against: the least that any reading of a text must do, and the
// obvious way of reading it.
#pragma once

#include <string_view>
#include <vector>

#include "Parser.h"

namespace vok::bench {

/// The least work: converts exactly the numbers of a datagram, whose places are known beforehand,
/// and looks at each of its bytes once.
class Reference {
 public:
  explicit Reference(std::string_view datagram);
  double run() const;
  std::size_t numbers() const { return integers_.size() + reals_.size(); }

 private:
  std::string_view text_;
  std::vector<std::string_view> integers_;
  std::vector<std::string_view> reals_;
};

/// The plain way: std::sscanf with whole formats, from the head of the datagram on.
bool plainView(const char* text, const char* ourTeam, playing_side side, SensorData& data);

/// The rows of the table tried one after the other with std::sscanf, until none takes an item.
/// The number of items read.
int plainServerParam(const char* text);

/// All that a record tells of a global view, for comparing two.
std::vector<double> fieldsOf(const SensorData& data);

}  // namespace vok::bench
