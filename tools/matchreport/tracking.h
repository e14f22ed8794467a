// Where the ball and each player were in every frame, as rows of a table.
//
// The key that begins each row is known at the end of a match only, since the score is in it. Until
// then the rows lie in a nameless file, so that memory does not grow with the match.
#pragma once

#include <ostream>
#include <string>

#include "csvrow.h"
#include "frame.h"

namespace vok::matchreport {

class TrackingRows {
 public:
  static constexpr std::string_view COLUMNS =
      "match,cycle,standing,play_mode,side,number,x,y,vx,vy,body,neck,type,stamina\n";

  /// The file lies in this folder.
  explicit TrackingRows(const std::string& folder);
  ~TrackingRows();
  TrackingRows(const TrackingRows&) = delete;
  TrackingRows& operator=(const TrackingRows&) = delete;

  void frame(const analysis::Frame& frame, std::string_view playMode);

  /// Behind the last frame: all rows, `key` and a comma in front of each. False when the disk
  /// did not take or give them.
  bool copyTo(std::ostream& out, std::string_view key);

 private:
  void player(const analysis::Frame& frame, int player);
  void flush();

  int file_ = -1;
  bool failed_ = false;
  int cycle_ = -1;
  int standing_ = 0;
  CsvRow head_;  ///< the values of the frame, which begin its rows
  CsvRow rows_;
};

}  // namespace vok::matchreport
