#include "outputs.h"

#include <fstream>
#include <iostream>

#include "csvoutput.h"
#include "htmloutput.h"
#include "jsonreport.h"
#include "seasonreport.h"
#include "textreport.h"

namespace vok::matchreport {
namespace {

/// The reports for a terminal, with an empty line between two, and what several come to.
class TextOutput : public Output {
 public:
  explicit TextOutput(std::string team) : team_(std::move(team)) {}

  MatchTaker match() override {
    return {{}, [this](const Match& match) {
              if (!first_) std::cout << '\n';
              first_ = false;
              writeTextReport(match, sideOfTeam(match, team_), std::cout);
              season_.add(match.analysis);
            }};
  }

  bool end() override {
    if (season_.matches() > 1) writeSeason(season_, team_, std::cout);
    return !std::cout.flush().fail();
  }

 private:
  static playing_side sideOfTeam(const Match& match, const std::string& team) {
    const auto& names = match.analysis.lastScore().names;
    return !team.empty() && names[SIDE_RIGHT] == team ? SIDE_RIGHT : SIDE_LEFT;
  }

  std::string team_;
  Season season_;
  bool first_ = true;
};

class JsonOutput : public Output {
 public:
  bool open(const std::string& name) {
    if (name != "-") file_.open(name);
    return name == "-" || file_.is_open();
  }

  MatchTaker match() override {
    return {{}, [this](const Match& match) { out() << jsonReport(match) << '\n'; }};
  }

  bool end() override { return !out().flush().fail(); }

 private:
  std::ostream& out() { return file_.is_open() ? file_ : std::cout; }

  std::ofstream file_;
};

}  // namespace

Outputs outputsOf(const Options& options, std::string& error) {
  Outputs outputs;
  if (!options.json.empty()) {
    auto json = std::make_unique<JsonOutput>();
    if (!json->open(options.json)) error = options.json + " cannot be written";
    outputs.push_back(std::move(json));
  }
  if (!options.csv.empty()) {
    auto csv = std::make_unique<CsvOutput>();
    if (!csv->open(options.csv)) error = options.csv + " cannot be written";
    outputs.push_back(std::move(csv));
  }
  if (!options.html.empty()) {
    auto html = std::make_unique<HtmlOutput>();
    if (!html->open(options.html)) error = options.html + " cannot be written";
    outputs.push_back(std::move(html));
  }
  if (outputs.empty()) outputs.push_back(std::make_unique<TextOutput>(options.team));
  return outputs;
}

}  // namespace vok::matchreport
