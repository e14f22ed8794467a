#include "gamelogwriter.h"

namespace vok::gamelogs {

void GameLogWriter::put() {
  out_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
  line_.clear();
}

void GameLogWriter::head(const LogHead& head) {
  line_ = "ULG6\n";
  head.server.write("server_param", line_);
  head.player.write("player_param", line_);
  for (const ParameterList& type : head.types) type.write("player_type", line_);
  put();
}

void GameLogWriter::frame(const analysis::Frame& frame) {
  writeShow(frame, line_);
  put();
}

void GameLogWriter::call(const analysis::Call& call) {
  writePlayMode(call, line_);
  put();
}

void GameLogWriter::score(const analysis::Score& score) {
  writeTeams(score, line_);
  put();
}

void GameLogWriter::message(const LogMessage& message) {
  writeMessage(message, line_);
  put();
}

}  // namespace vok::gamelogs
