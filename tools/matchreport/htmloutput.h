// Writes pages: of one match its page, of several a table of them and the page of each.
#pragma once

#include <fstream>
#include <set>
#include <string>

#include "matchtable.h"
#include "output.h"

namespace vok::matchreport {

class HtmlOutput : public Output {
 public:
  bool open(const std::string& name);

  MatchTaker match() override;
  bool end() override;

 private:
  /// The page of a match that waits for the name of the next one.
  struct Page {
    std::string name;  ///< without folder
    std::string text;
  };

  void take(const Match& match, const std::string& text);
  void writeLast(const std::string& next);
  std::string nameOf(const Match& match);

  std::ofstream file_;
  std::string name_;    ///< of the file
  std::string folder_;  ///< of the single pages
  Page last_;
  std::string before_;  ///< the name of the page before the last one
  std::set<std::string> names_;
  MatchTable table_;
  bool failed_ = false;
};

}  // namespace vok::matchreport
