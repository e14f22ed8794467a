// Runs the inference of the opponents' types over a recorded match, from the decay of their speed
// and without it, and compares its verdicts with the truth.
#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"

using namespace vok;
using namespace vok::typecheck;

namespace {

constexpr int WRONG_VERDICT = 1;
constexpr int BAD_ARGUMENT = 2;

constexpr std::string_view USAGE =
    "usage: typecheck CAPTURE TRUTH --team NAME --side l|r\n"
    "\n"
    "  CAPTURE      a recorded match: milliseconds, tab, text; - is standard input\n"
    "  TRUTH        time, side, shirt number and type of each player\n"
    "  --team NAME  the coach's team\n"
    "  --side l|r   its side; the opponents are the other one's\n"
    "\n"
    "Exit status: 0, 1 when a verdict from the decay is wrong at the end, 2 for bad arguments\n"
    "or unreadable files.\n";

struct Options {
  std::string capture;
  std::string truth;
  std::string team;
  playing_side side = SIDE_UNKNOWN;
};

bool readSide(std::string_view letter, playing_side& side) {
  if (letter == "l") side = SIDE_LEFT;
  if (letter == "r") side = SIDE_RIGHT;
  return letter == "l" || letter == "r";
}

bool readOptions(int argc, char** argv, Options& options) {
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    const bool hasValue = i + 1 < argc;
    if (word == "--team" && hasValue) {
      options.team = argv[++i];
    } else if (word == "--side" && hasValue) {
      if (!readSide(argv[++i], options.side)) return false;
    } else if (word.starts_with("--")) {
      return false;
    } else {
      files.push_back(word);
    }
  }
  if (files.size() != 2 || options.team.empty() || options.side == SIDE_UNKNOWN) return false;
  options.capture = files[0];
  options.truth = files[1];
  return true;
}

template <typename Content>
bool readFile(const std::string& name, Content& content) {
  std::string error = "cannot be read";
  bool ok = false;
  if (name == "-") {
    ok = content.read(std::cin, error);
  } else {
    std::ifstream file(name);
    ok = file && content.read(file, error);
  }
  if (!ok) std::cerr << "typecheck: " << name << ": " << error << "\n";
  return ok;
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
  if (argc == 2 && std::string_view(argv[1]) == "--help") {
    std::cout << USAGE;
    return 0;
  }
  if (!readOptions(argc, argv, options)) {
    std::cerr << "typecheck: wants CAPTURE TRUTH --team NAME --side l|r; --help tells more\n";
    return BAD_ARGUMENT;
  }
  Recording capture;
  Truth truth;
  if (!readFile(options.capture, capture) || !readFile(options.truth, truth)) return BAD_ARGUMENT;

  int status = 0;
  for (const bool fromDecay : {true, false}) {
    Findings findings;
    std::string error;
    if (!check(capture, truth, options.team, options.side, fromDecay, findings, error)) {
      std::cerr << "typecheck: " << error << "\n";
      return BAD_ARGUMENT;
    }
    std::cout << "tac_typesFromDecay = " << (fromDecay ? 1 : 0)
              << " (cycles of play on until the verdict, those of them in which it moved)\n";
    print(findings);
    const bool anyWrong = std::any_of(findings.begin() + 1, findings.end(),
                                      [](const Finding& finding) { return finding.isWrong(); });
    if (fromDecay && anyWrong) status = WRONG_VERDICT;
  }
  if (!std::cout.flush()) {
    std::cerr << "typecheck: cannot write to standard output\n";
    return BAD_ARGUMENT;
  }
  return status;
}
