// Feeds the senses of a recorded player to a world and prints how far that is from the truth.
#include <array>
#include <iomanip>
#include <iostream>
#include <string>

#include "commandline.h"
#include "recording.h"
#include "seecheck.h"

using namespace vok;
using namespace vok::seecheck;

namespace {

constexpr int GOAL_MISSED = 1;

struct Options {
  std::string recording;
  std::string truth;
};

tools::Tool commandLine(Options& options) {
  return {
      "seecheck",
      "RECORDING TRUTH",
      "Feeds what a player sensed and sent to its world, compares the world with the truth,\n"
      "and prints the errors beside those of who has no memory.\n",
      {{"RECORDING", "", "lines of milliseconds, tab, < or >, tab and text; - is standard input",
        tools::text(options.recording), true},
       {"TRUTH", "", "lines of cycle and state of the player, the ball and all others",
        tools::text(options.truth), true}},
      "Exit status: 0; 1 when a goal is missed; 2 for a wrong argument or an unreadable file.\n"};
}

int fail(const std::string& reason) {
  return tools::fail("seecheck", reason);
}

/// Prints the table and remembers whether a goal was missed.
class Table {
 public:
  Table() {
    std::cout
        << std::fixed << std::setprecision(3)
        << "                                          world                 memoryless\n"
           "                        samples  median    95 %   worst  median    95 %   worst\n";
  }

  void row(const char* name, const Errors& errors) {
    const auto& [world, other] = errors;
    std::cout << "  " << std::left << std::setw(22) << name << std::right << std::setw(7)
              << world.size();
    for (const auto* of : {&world, &other}) {
      for (const double part : {0.5, 0.95, 1.0}) {
        std::cout << std::setw(8);
        if (of->empty()) {
          std::cout << '-';
        } else {
          std::cout << share(*of, part);
        }
      }
    }
    std::cout << "\n";
  }

  void goal(const char* name, double figure, double bound, bool atMost = true) {
    const bool kept = atMost ? figure <= bound : figure >= bound;
    std::cout << "  " << std::left << std::setw(40) << name << std::right << std::setw(8) << figure
              << (atMost ? "  at most " : "  at least ") << std::setw(6) << bound
              << (kept ? "" : "  MISSED") << "\n";
    missed = missed || !kept;
  }

  bool missed = false;
};

double ratio(const Errors& errors) {
  const double other = share(errors.other, 0.5);
  return other > 0 ? share(errors.world, 0.5) / other : 0;
}

double percent(int part, int whole) {
  return whole == 0 ? 0 : 100.0 * part / whole;
}

bool print(const Findings& f) {
  Table table;
  table.row("own position, m", f.position);
  table.row("face, degrees", f.face);
  table.row("own velocity, m/cycle", f.velocity);
  table.row("ball within 20 m, m", f.ball);
  table.row("players within 30 m, m", f.players);
  table.row("ball velocity", f.ballVelocity);
  table.row("player velocity", f.playerVelocity);
  table.row("ball unseen (still)", f.ballUnseen);
  table.row("players unseen (still)", f.playersUnseen);
  if (f.lowViews > 0) {
    table.row("low: own position, m", f.lowPosition);
    table.row("low: face, degrees", f.lowFace);
    table.row("low: ball within 20 m", f.lowBall);
  }
  std::cout << "  " << f.views << " views; left out: " << f.standing
            << " whose cycle is not that of exactly one row of the truth\n"
            << "  " << f.lowViews << " of the others are of low quality and tell no distances\n"
            << "  " << f.unnumbered << " unnumbered of a known team within 30 m, "
            << f.unnumberedGiven << " of them got a number; " << f.given
            << " numbers given in all, " << f.givenWrong << " of them wrong\n";
  table.goal("own position, median, m", share(f.position.world, 0.5), 0.05);
  table.goal("own position, 95 %, m", share(f.position.world, 0.95), 0.16);
  table.goal("own position, worst, m", share(f.position.world, 1), 0.5);
  table.goal("face, median, degrees", share(f.face.world, 0.5), 0.1);
  table.goal("own velocity, median, m/cycle", share(f.velocity.world, 0.5), 0.02);
  table.goal("ball within 20 m, median, m", share(f.ball.world, 0.5), 0.17);
  table.goal("players within 30 m, median, m", share(f.players.world, 0.5), 0.32);
  table.goal("ball velocity / of a single view", ratio(f.ballVelocity), 0.8);
  table.goal("player velocity / of a single view", ratio(f.playerVelocity), 0.8);
  table.goal("ball unseen / standing still", ratio(f.ballUnseen), 0.8);
  table.goal("players unseen / standing still", ratio(f.playersUnseen), 0.8);
  table.goal("wrong numbers given, %", percent(f.givenWrong, f.given), 2);
  table.goal("unnumbered that got one, %", percent(f.unnumberedGiven, f.unnumbered), 60, false);
  return !table.missed;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = readCommandLine(commandLine(options), argc, argv)) return *status;
  PlayerRecording recording;
  Truth truth;
  std::string error;
  if (!tools::readFile(options.recording, recording, error)) {
    return fail(options.recording + ": " + error);
  }
  if (!tools::readFile(options.truth, truth, error)) return fail(options.truth + ": " + error);
  truth.turnTo(recording.side);
  Findings findings;
  if (!check(recording, truth, findings, error)) return fail(options.recording + ": " + error);
  const bool kept = print(findings);
  if (!std::cout.flush()) return fail("cannot write to standard output");
  return kept ? 0 : GOAL_MISSED;
}
