// A recorded match: what a server sent to a coach.
#pragma once

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace vok::tools {

struct RecordedText {
  double milliseconds;  ///< since the recording began
  std::string text;
};

struct Recording {
  std::vector<RecordedText> texts;

  /// Each line is a time in milliseconds, a tab and a text. False, with the reason in `error`, when
  /// it is no such file or does not begin with a check-in.
  bool read(std::istream& in, std::string& error);

  bool synchronous() const;
  /// The team whose coach was shown the match; empty when no view tells.
  std::string team() const;
  /// The cycle of the last view, as text.
  std::string lastTime() const;
};

/// Reads a whole file, standard input for "-". False, with the reason in `error`, when it cannot be
/// opened or the content's own `read` refuses it.
template <typename Content>
bool readFile(const std::string& name, Content& content, std::string& error) {
  if (name == "-") return content.read(std::cin, error);
  std::ifstream file(name);
  if (file) return content.read(file, error);
  error = "cannot be opened";
  return false;
}

}  // namespace vok::tools
