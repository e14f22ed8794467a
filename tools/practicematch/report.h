// Counts what happened on the connection, and prints a report about it at the end.
#pragma once

#include <array>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "match.h"
#include "pitch.h"

namespace vok::practicematch {

/// Why a session ended.
enum class Ending { Stayed, LeftEarly, Silent, NotAnswering, NoEye, Interrupted };

struct Report {
  int cyclesSent = 0;
  int cyclesMissed = 0;
  int cyclesStanding = 0;           ///< in which the clock of a simulated match stood still
  std::vector<double> answerTimes;  ///< milliseconds from "(think)" to "(done)"
  std::map<std::string, int> commands;
  int unterminated = 0;

  int messagesAccepted = 0;
  std::map<std::string, int> messagesRefused;  ///< by the server's answer
  int messagesDecoded = 0;                     ///< coach messages with a valid checksum
  int ballsRight = 0;
  Squad<int> lastTypes;    ///< the opponents' types in the last one
  int lastTypesRight = 0;  ///< and how many of them were right when it came
  int lastTypesUnknown = 0;

  int typesAsked = 0;  ///< changes of the coach's own players
  int typesGiven = 0;
  std::map<std::string, int> typesRefused;  ///< by the server's answer

  Ending ending = Ending::Interrupted;

  /// Prints the report. `match` is null for a recording.
  void print(std::ostream& out, const Match* match, bool synch) const;

 private:
  void printAnswerTimes(std::ostream& out) const;
  void printMessages(std::ostream& out) const;
  void printOpponents(std::ostream& out, const Match& match) const;
  void printOwnTypes(std::ostream& out, const Match& match) const;
};

}  // namespace vok::practicematch
