// A server's text log: what clients sent and the referee called, line by line, plain or compressed.
#pragma once

#include <string>
#include <string_view>

#include "textwindow.h"

namespace vok::gamelogs {

/// One line. The texts are views of it.
struct TextLogLine {
  int cycle = 0;
  int standing = 0;  ///< counts the instants of a standing clock; 0 while it runs
  /// Who sent it, empty for the referee and the server itself.
  std::string_view team;
  int shirt = 0;  ///< 0 for who is no player
  bool coach = false;
  std::string_view text;
};

class TextLog {
 public:
  /// False, with the reason in `error`, when the file cannot be read or does not begin as a text
  /// log.
  bool open(const std::string& name, std::string& error);

  /// The next line, valid until the next call. Lines of another form are passed over and counted.
  /// False at the end.
  bool next(TextLogLine& line);

  /// What was wrong with the text in one sentence, empty when nothing was.
  std::string remark() const;

 private:
  TextWindow window_;
  bool cut_ = false;
  long line_ = 0;
  long refused_ = 0;
  long firstRefused_ = 0;
};

/// Reads a line without its end; false when it has another form.
bool readTextLogLine(std::string_view text, TextLogLine& line);

/// How many commands for the body (dash, turn, kick, catch, move, tackle) a player's text holds.
int bodyCommands(std::string_view text);

}  // namespace vok::gamelogs
