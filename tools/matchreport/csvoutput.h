// The matches as tables of comma-separated values, for programs that work with data.
// docs/match-report.md describes the columns.
#pragma once

#include <array>
#include <fstream>

#include "csvrow.h"
#include "output.h"
#include "tracking.h"

namespace vok::matchreport {

class CsvOutput : public Output {
 public:
  /// Makes the folder where there is none, and the files in it anew. False when it cannot.
  bool open(const std::string& folder);

  MatchTaker match() override;
  bool end() override;

 private:
  enum Table { TRACKING, EVENTS, PLAYERS, SIDES, MATCHES, TABLES };

  void write(const Match& match, TrackingRows& tracking);
  void writeMatch(const Match& match);
  void writeSide(const Match& match, analysis::Period period, playing_side side);
  void writePlayer(const Match& match, analysis::Period period, int player);
  void writeEvents(const Match& match);
  void put(Table table);

  std::string folder_;
  std::array<std::ofstream, TABLES> files_;
  bool failed_ = false;
  std::string key_;  ///< of the match, as it is written
  CsvRow rows_;
};

}  // namespace vok::matchreport
