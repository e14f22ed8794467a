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

  /// Reads the lines of a recording (see recordline.h), but for what the coach sent. Returns false,
  /// with the reason in `error`, when a line has another form or the recording does not begin with
  /// the answer to a check-in.
  bool read(std::istream& in, std::string& error);

  /// Whether the server waited for the coach in each cycle.
  bool synchronous() const;
  /// The name of the team to whose coach the match was shown; empty when no view tells it.
  std::string team() const;
  /// The cycle of the last view, as text.
  std::string lastTime() const;
};

/// Reads a whole file, or standard input when the name is "-". Returns false, with the reason in
/// `error`, when the file cannot be opened or `Content::read` refuses it.
template <typename Content>
bool readFile(const std::string& name, Content& content, std::string& error) {
  if (name == "-") return content.read(std::cin, error);
  std::ifstream file(name);
  if (file) return content.read(file, error);
  error = "cannot be opened";
  return false;
}

}  // namespace vok::tools
