#include "matchlog.h"

#include "coachrecording.h"
#include "gamelog.h"
#include "scanner.h"

namespace vok::gamelogs {

std::unique_ptr<MatchLog> openMatchLog(const std::string& name, std::string& error) {
  TextWindow window;
  if (!window.open(name)) {
    error = window.problem();
    return nullptr;
  }
  if (window.text().empty()) window.more();
  if (!window.text().empty() && isDigit(window.text().front())) {
    auto recording = std::make_unique<CoachRecording>();
    if (recording->open(std::move(window), error)) return recording;
    return nullptr;
  }
  auto log = std::make_unique<GameLog>();
  if (log->open(std::move(window), error)) return log;
  return nullptr;
}

}  // namespace vok::gamelogs
