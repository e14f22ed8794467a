#include "options.h"

#include "commandline.h"

namespace vok::matchreport {
namespace {

tools::Tool commandLine(Options& options) {
  return {
      "matchreport",
      "[options] SOURCE...",
      "Computes the numbers of matches from game logs (versions 4, 5, 6 and JSON) or recordings\n"
      "of a coach, plain or compressed, and writes a report of each.\n",
      {{"SOURCE...", "", "game logs, recordings, or folders of them; - is standard input",
        [&options](const std::string& value) {
          options.sources.push_back(value);
          return !value.empty();
        },
        true},
       {"--json", "FILE", "write all numbers as JSON, a match a line; - is standard output",
        tools::text(options.json)},
       {"--csv", "DIR", "write tables of comma-separated values into this folder, which is made",
        tools::text(options.csv)},
       {"--html", "FILE",
        "write a page with replay, pictures and tables; of several matches a table of them, and a "
        "page of each in the folder FILE-matches (FILE without .html)",
        tools::text(options.html)},
       {"--team", "NAME", "the team whose numbers come first; the left one by default",
        tools::text(options.team)},
       {"--rcl", "FILE",
        "the text log of the one game log; not needed where it lies beside it with the same name",
        tools::text(options.rcl)},
       {"--compare", "",
        "compare two sources of one match, or the matches of two folders, before and after a "
        "change",
        tools::flag(options.compare)},
       {"--jobs", "N", "read up to N matches at once, 1 to 256; 1 by default",
        tools::number(options.jobs, 1, Options::MAX_JOBS)}},
      "Exit status: 0; 1 when a source could not be read (the others are reported all the\n"
      "same) or the output not be written; 2 for a wrong argument.\n"};
}

}  // namespace

std::optional<int> readOptions(Options& options, int argc, char** argv) {
  return tools::readCommandLine(commandLine(options), argc, argv);
}

}  // namespace vok::matchreport
