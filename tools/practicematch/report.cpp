#include "report.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <ostream>
#include <string_view>

namespace vok::practicematch {

namespace {

// In the order of Ending.
constexpr std::array<std::string_view, 6> ENDINGS = {
    "the coach stayed to the end and left with \"(bye)\"",
    "the coach left before the end",
    "the coach did not say \"(bye)\" after the end",
    "the coach did not answer for too many cycles in a row",
    "the coach did not switch its eye on",
    "interrupted"};

std::ostream& line(std::ostream& out, std::string_view title) {
  return out << std::left << std::setw(10) << title << std::right;
}

void printCounts(std::ostream& out, const std::map<std::string, int>& counts) {
  const char* separator = "";
  for (const auto& [name, count] : counts) {
    out << separator << name << ' ' << count;
    separator = ", ";
  }
}

/// The value below which the given share of the sorted times lies.
double percentile(const std::vector<double>& sorted, double share) {
  const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
  return sorted[std::max<std::size_t>(rank, 1) - 1];
}

const Squad<int> NUMBERS = {{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}};

/// "-" is an unknown type.
void printTypeRow(std::ostream& out, std::string_view title, const Squad<int>& types) {
  line(out, "") << std::left << std::setw(20) << title << std::right;
  for (const int type : types) {
    out << std::setw(4);
    if (type < 0) {
      out << '-';
    } else {
      out << type;
    }
  }
  out << '\n';
}

Squad<int> typesOf(const Team& team) {
  Squad<int> types;
  for (const Player& p : team) types[p.number] = p.type;
  return types;
}

}  // namespace

void Report::print(std::ostream& out, const Match* match, bool synch) const {
  if (match != nullptr) {
    line(out, "match") << match->name(Side::Left) << ' ' << match->goals(Side::Left) << " : "
                       << match->goals(Side::Right) << ' ' << match->name(Side::Right) << ", "
                       << match->time() << " of " << match->settings().cycles
                       << " cycles played, seed " << match->settings().seed << '\n';
  }
  line(out, "cycles");
  if (synch) {
    out << answerTimes.size() << " answered, " << cyclesMissed << " missed";
  } else {
    out << cyclesSent << " sent";
  }
  if (match != nullptr) out << "; in " << cyclesStanding << " of them the clock stood still";
  out << '\n';
  if (!answerTimes.empty()) printAnswerTimes(out);
  line(out, "commands");
  printCounts(out, commands);
  if (commands.empty()) out << "none";
  if (unterminated > 0) out << " (" << unterminated << " without a NUL byte at the end)";
  out << '\n';
  if (match != nullptr) {
    printMessages(out);
    printOpponents(out, *match);
    printOwnTypes(out, *match);
  }
  line(out, "end") << ENDINGS[static_cast<std::size_t>(ending)] << std::endl;
}

void Report::printAnswerTimes(std::ostream& out) const {
  std::vector<double> sorted = answerTimes;
  std::sort(sorted.begin(), sorted.end());
  line(out, "answers") << std::fixed << std::setprecision(3) << percentile(sorted, 0.5)
                       << " ms median, 99 of 100 within " << percentile(sorted, 0.99) << " ms, "
                       << sorted.back() << " ms at most, from \"(think)\" to \"(done)\"\n"
                       << std::defaultfloat << std::setprecision(6);
}

void Report::printMessages(std::ostream& out) const {
  int refused = 0;
  for (const auto& [reason, count] : messagesRefused) refused += count;
  line(out, "messages") << messagesAccepted + refused << " to the players: " << messagesAccepted
                        << " accepted, " << refused << " refused";
  if (refused > 0) {
    out << " (";
    printCounts(out, messagesRefused);
    out << ')';
  }
  out << '\n';
  line(out, "") << messagesDecoded << " decoded with a valid checksum, " << ballsRight
                << " of them with the ball within 0.1 m of the truth\n";
}

void Report::printOpponents(std::ostream& out, const Match& match) const {
  const Side side = other(match.settings().coachSide);
  line(out, "opponents");
  if (messagesDecoded > 0) {
    out << 11 - lastTypesUnknown << " of 11 types known to the coach in its last message, "
        << lastTypesRight << " of them right\n";
  } else {
    out << "no message told their types\n";
  }
  printTypeRow(out, "number", NUMBERS);
  printTypeRow(out, "type", typesOf(match.state().team(side)));
  if (messagesDecoded > 0) printTypeRow(out, "in the last message", lastTypes);
}

void Report::printOwnTypes(std::ostream& out, const Match& match) const {
  line(out, "own types") << typesAsked << " asked, " << typesGiven << " given, "
                         << typesAsked - typesGiven << " refused";
  if (!typesRefused.empty()) {
    out << " (";
    printCounts(out, typesRefused);
    out << ')';
  }
  out << '\n';
  printTypeRow(out, "number", NUMBERS);
  printTypeRow(out, "type", typesOf(match.state().team(match.settings().coachSide)));
}

}  // namespace vok::practicematch
