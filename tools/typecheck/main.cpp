// Runs the inference of the opponents' types over a recorded match, from the decay of their speed
// and without it, and compares its verdicts with the truth.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "check.h"
#include "commandline.h"

using namespace vok;
using namespace vok::typecheck;

namespace {

constexpr int WRONG_VERDICT = 1;

struct Options {
  std::string capture;
  std::string truth;
  std::string team;
  playing_side side = SIDE_UNKNOWN;
};

bool readSide(const std::string& letter, playing_side& side) {
  if (letter == "l") side = SIDE_LEFT;
  if (letter == "r") side = SIDE_RIGHT;
  return letter == "l" || letter == "r";
}

tools::Tool commandLine(Options& options) {
  return {
      "typecheck",
      "CAPTURE TRUTH --team NAME --side l|r",
      "Runs the inference of the opponents' player types over a recorded match, from the\n"
      "decay of their speed and without it, and compares its verdicts with the truth.\n",
      {{"CAPTURE", "", "a recorded match: lines of milliseconds, tab and text; - is standard input",
        tools::text(options.capture), true},
       {"TRUTH", "", "lines of time, side (l or r), shirt number and type of each player",
        tools::text(options.truth), true},
       {"--team", "NAME", "the coach's team", tools::text(options.team), true},
       {"--side", "l|r", "its side, l or r; the opponents are the other one's",
        [&options](const std::string& value) { return readSide(value, options.side); }, true}},
      "Exit status: 0; 1 when a verdict from the decay is wrong at the end; 2 for a wrong\n"
      "argument or an unreadable file.\n"};
}

int fail(const std::string& reason) {
  return tools::fail("typecheck", reason);
}

void printType(int type) {
  std::cout << std::setw(9);
  if (type < 0) {
    std::cout << '-';
  } else {
    std::cout << type;
  }
}

void print(const Findings& findings) {
  std::cout << "  number     true  verdict  play-on    moved    wrong\n";
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const Finding& finding = findings[n];
    std::cout << std::setw(8) << n;
    printType(finding.trueType);
    printType(finding.verdict);
    std::cout << std::setw(9) << finding.playOn << std::setw(9) << finding.moved << std::setw(9)
              << finding.wrongOnTheWay << "\n";
  }
  int right = 0;
  int wrong = 0;
  int onTheWay = 0;
  for (const Finding& finding : findings) {
    right += finding.isRight() ? 1 : 0;
    wrong += finding.isWrong() ? 1 : 0;
    onTheWay += finding.wrongOnTheWay;
  }
  std::cout << "  " << right << " of 11 right, " << wrong << " wrong, " << 11 - right - wrong
            << " unknown; " << onTheWay << " wrong on the way\n";
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = readCommandLine(commandLine(options), argc, argv)) return *status;
  tools::Recording capture;
  Truth truth;
  std::string error;
  if (!tools::readFile(options.capture, capture, error))
    return fail(options.capture + ": " + error);
  if (!tools::readFile(options.truth, truth, error)) return fail(options.truth + ": " + error);

  int status = 0;
  for (const bool fromDecay : {true, false}) {
    Findings findings;
    if (!check(capture, truth, options.team, options.side, fromDecay, findings, error)) {
      return fail(error);
    }
    std::cout << "tac_typesFromDecay = " << (fromDecay ? 1 : 0)
              << " (cycles of play on until the verdict, those of them in which it moved)\n";
    print(findings);
    const bool anyWrong = std::any_of(findings.begin(), findings.end(),
                                      [](const Finding& finding) { return finding.isWrong(); });
    if (fromDecay && anyWrong) status = WRONG_VERDICT;
  }
  if (!std::cout.flush()) return fail("cannot write to standard output");
  return status;
}
