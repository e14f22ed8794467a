// Tells what happened in matches: numbers from game logs and recordings.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>

#include "commandline.h"
#include "jsonreport.h"
#include "printable.h"
#include "textreport.h"

using namespace vok;
using namespace vok::matchreport;

namespace {

constexpr int UNREADABLE = 1;

struct Options {
  std::vector<std::string> sources;
  std::string json;
  std::string team;
};

tools::Tool commandLine(Options& options) {
  return {
      "matchreport",
      "[options] SOURCE...",
      "Computes the numbers of matches from game logs (versions 4, 5, 6 and JSON) or recordings\n"
      "of a coach, plain or compressed, and writes a report of each.\n",
      {{"SOURCE...", "", "game logs, recordings, or folders of logs; - is standard input",
        [&options](const std::string& value) {
          options.sources.push_back(value);
          return !value.empty();
        },
        true},
       {"--json", "FILE", "write all numbers as JSON, a match a line; - is standard output",
        tools::text(options.json)},
       {"--team", "NAME", "the team whose numbers come first; the left one by default",
        tools::text(options.team)}},
      "Exit status: 0; 1 when a source could not be read (the others are reported all the\n"
      "same) or the output not be written; 2 for a wrong argument.\n"};
}

bool isLog(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  return name.ends_with(".rcg") || name.ends_with(".rcg.gz");
}

/// A folder stands for the game logs in it, by name.
std::vector<std::string> filesOf(const std::vector<std::string>& sources) {
  std::vector<std::string> files;
  for (const std::string& source : sources) {
    std::error_code error;
    if (!std::filesystem::is_directory(source, error)) {
      files.push_back(source);
      continue;
    }
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(source, error)) {
      if (isLog(entry.path())) found.push_back(entry.path().string());
    }
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

playing_side sideOfTeam(const Match& match, const std::string& team) {
  const auto& names = match.analysis.lastScore().names;
  return !team.empty() && names[SIDE_RIGHT] == team ? SIDE_RIGHT : SIDE_LEFT;
}

void say(const Match& match, const std::string& what) {
  std::cerr << "matchreport: " << printable(match.source) << ' ' << printable(what) << '\n';
}

/// Two matches of the same minute, teams and score get a number each.
void makeUnique(Match& match, std::set<std::string>& keys) {
  const std::string key = match.key;
  for (int n = 2; !keys.insert(match.key).second; ++n) match.key = key + "-" + std::to_string(n);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = tools::readCommandLine(commandLine(options), argc, argv)) return *status;
  std::ofstream file;
  if (!options.json.empty() && options.json != "-") {
    file.open(options.json);
    if (!file) return tools::fail("matchreport", options.json + " cannot be written");
  }
  std::ostream& json = file.is_open() ? file : std::cout;

  int status = 0;
  bool first = true;
  std::set<std::string> keys;
  for (const std::string& source : filesOf(options.sources)) {
    const auto match = readMatch(source);
    if (!match->isRead()) {
      say(*match, match->error);
      status = UNREADABLE;
      continue;
    }
    if (!match->remark.empty()) say(*match, "is read as far as it goes: " + match->remark);
    makeUnique(*match, keys);
    if (!options.json.empty()) {
      json << jsonReport(*match) << '\n';
    } else {
      if (!first) std::cout << '\n';
      writeTextReport(*match, sideOfTeam(*match, options.team), std::cout);
    }
    first = false;
  }
  if (!json.flush() || !std::cout.flush()) {
    return tools::fail("matchreport", "the output cannot be written", UNREADABLE);
  }
  return status;
}
