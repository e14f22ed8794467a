#include "gamelog.h"

#include <utility>

#include "jsonobjects.h"
#include "scanner.h"

namespace vok::gamelogs {

using analysis::Told;

namespace {

constexpr int JSON = -1;
constexpr int FIRST_TEXT_VERSION = 4;
constexpr int LAST_TEXT_VERSION = 6;

/// "(result YYYYmmddHHMM ...)": the date.
std::string_view resultDate(std::string_view message) {
  constexpr std::size_t DIGITS = 12;
  Scanner in(message);
  std::string_view date;
  if (!in.literal("(result ") || !in.run(isDigit, date) || date.size() != DIGITS) return {};
  return date;
}

/// A JSON log's "2026-11-21T15:19:37+0000" in the same form.
std::string dateOfTimestamp(std::string_view timestamp) {
  constexpr std::size_t DIGITS = 12;
  std::string date;
  for (const char c : timestamp) {
    if (isDigit(c) && date.size() < DIGITS) date += c;
  }
  return date.size() == DIGITS ? date : std::string();
}

}  // namespace

bool GameLog::open(const std::string& name, std::string& error) {
  TextWindow window;
  if (!window.open(name)) {
    error = window.problem();
    return false;
  }
  return open(std::move(window), error);
}

bool GameLog::open(TextWindow window, std::string& error) {
  constexpr std::size_t LONG_MESSAGE = 512;
  *this = GameLog();
  message_.text.reserve(LONG_MESSAGE);
  window_ = std::move(window);
  while (window_.text().find('\n') == std::string_view::npos && window_.more()) {
  }
  if (!begin(firstLine(window_.text()), error)) return false;
  error.clear();
  return true;
}

/// The first line tells the version.
bool GameLog::begin(std::string_view firstLine, std::string& error) {
  constexpr std::string_view HEAD = "ULG";
  constexpr char LAST_BINARY_VERSION = 3;
  error = "is no game log";
  head_.version = JSON;
  inArray_ = firstLine.starts_with('[');
  if (inArray_) return true;
  window_.drop(firstLine.size());
  if (firstLine.find("JSON") != std::string_view::npos) return true;
  if (!firstLine.starts_with(HEAD) || firstLine.size() == HEAD.size()) return false;

  const char version = firstLine[HEAD.size()];
  if (version > 0 && version <= LAST_BINARY_VERSION) {
    error = "is a binary game log of version " + std::to_string(version) +
            ", which is too old to be read";
    return false;
  }
  head_.version = version - '0';
  if (head_.version < FIRST_TEXT_VERSION || head_.version > LAST_TEXT_VERSION) return false;
  JsonText in(window_.text());
  if (in.peek() == '{' || in.peek() == '[') head_.version = JSON;
  if (window_.text().starts_with("\r")) window_.drop(1);
  if (head_.version != JSON && window_.text().starts_with("\n")) window_.drop(1);
  line_ = 1;
  return true;
}

Told GameLog::next() {
  Told told = Told::END;
  const bool found = head_.version == JSON ? nextObject(told) : nextText(told);
  if (!found) return Told::END;
  watch(told);
  return told;
}

void GameLog::refuse() {
  if (refused_++ == 0) firstRefused_ = line_;
}

bool GameLog::nextText(Told& told) {
  std::string_view line;
  bool cut = false;
  while (window_.line(line, cut)) {
    ++line_;
    if (line.ends_with('\r')) line.remove_suffix(1);
    bool isNews = false;
    // The last line of a log that was cut off is no damage, unless more follows.
    if (!readLine(line, told, isNews)) {
      if (cut && window_.text().empty()) {
        cut_ = true;
      } else {
        refuse();
      }
    } else if (isNews) {
      return true;
    }
  }
  if (!window_.problem().empty()) cut_ = true;
  return false;
}

/// False when the line has not its form. `isNews` tells that `told` is something for the caller.
bool GameLog::readLine(std::string_view line, Told& told, bool& isNews) {
  isNews = true;
  if (line.starts_with("(show ")) {
    told = Told::FRAME;
    return readShow(line, frame_);
  }
  if (line.starts_with("(playmode ")) {
    told = Told::CALL;
    return readPlayMode(line, call_);
  }
  if (line.starts_with("(team ")) {
    told = Told::SCORE;
    return readTeams(line, score_);
  }
  if (line.starts_with("(msg ")) {
    told = Told::MESSAGE;
    return readMessage(line, message_);
  }
  isNews = false;
  bool isHead = false;
  const bool read = readHead(line, isHead);
  if (isHead) return read;
  // A head that is not known: a word in a parenthesis.
  return line.empty() ||
         (line.size() > 2 && line[0] == '(' && isLetter(line[1]) && line.ends_with(')'));
}

bool GameLog::readHead(std::string_view line, bool& isHead) {
  constexpr std::string_view SERVER = "server_param ";
  constexpr std::string_view PLAYER = "player_param ";
  constexpr std::string_view TYPE = "player_type ";
  const std::string_view head = line.substr(line.empty() ? 0 : 1);
  isHead = head.starts_with(SERVER) || head.starts_with(PLAYER) || head.starts_with(TYPE);
  if (!isHead) return false;
  ParameterList type;
  const bool read = head.starts_with(SERVER)   ? head_.server.read(line, SERVER)
                    : head.starts_with(PLAYER) ? head_.player.read(line, PLAYER)
                                               : type.read(line, TYPE);
  if (read && !type.items.empty() && head_.types.size() < LogHead::MAX_TYPES) {
    head_.types.push_back(std::move(type));
  }
  rules_ = head_.rules();
  return read;
}

bool GameLog::nextObject(Told& told) {
  for (;;) {
    const std::string_view text = window_.text();
    JsonText in(text);
    while (in.take(',') || in.take('[')) {
    }
    if (in.peek() == ']') return endArray();
    if (in.peek() == '\0') {  // between two objects
      window_.drop(text.size());
      if (window_.more()) continue;
      cut_ = inArray_ || !window_.problem().empty();
      return false;
    }
    JsonKind kind = JsonKind::OTHER;
    const JsonTargets targets{head_, frame_, call_, score_, message_, timestamp_};
    if (readObject(in, targets, kind)) {
      ++line_;
      window_.drop(text.size() - in.rest().size());
      if (kind == JsonKind::HEAD) rules_ = head_.rules();
      if (isNews(kind, told)) return true;
    } else if (!in.ranOut()) {
      skipDamage(false);
    } else if (window_.full()) {
      skipDamage(true);
    } else if (!window_.more()) {
      cut_ = true;
      return false;
    }
  }
}

/// Reads on to the file's end, where compressed data have their checksum.
bool GameLog::endArray() {
  do {
    window_.drop(window_.text().size());
  } while (window_.more());
  inArray_ = false;
  cut_ = !window_.problem().empty();
  return false;
}

/// Behind a damaged object the next one begins on the next line; what fills the window without an
/// end is dropped whole.
void GameLog::skipDamage(bool wholeWindow) {
  ++line_;
  refuse();
  std::string_view skipped;
  bool cut = false;
  if (wholeWindow) window_.drop(window_.text().size());
  window_.line(skipped, cut);
}

bool GameLog::isNews(JsonKind kind, Told& told) {
  switch (kind) {
    case JsonKind::SHOW:
      told = Told::FRAME;
      return true;
    case JsonKind::PLAY_MODE:
      told = Told::CALL;
      return true;
    case JsonKind::TEAMS:
      told = Told::SCORE;
      return true;
    case JsonKind::MESSAGE:
      told = Told::MESSAGE;
      return true;
    default:
      return false;
  }
}

/// The match's end is `time_over`, of a shoot-out also the result; the score stands behind it.
void GameLog::watch(Told told) {
  if (told == Told::FRAME) anything_ = true;
  if (told == Told::SCORE) scored_ = true;
  if (told == Told::CALL) {
    if (call_.kind == analysis::CallKind::PENALTY_SETUP) shootOut_ = true;
    if (call_.kind == analysis::CallKind::TIME_OVER) ended_ = true;
    scored_ = false;
  }
  if (told != Told::MESSAGE) return;
  const std::string_view date = resultDate(message_.text);
  if (date.empty()) return;
  date_ = date;
  ended_ = ended_ || shootOut_;
  scored_ = false;
}

std::string GameLog::date() const {
  return date_.empty() ? dateOfTimestamp(timestamp_) : date_;
}

std::string GameLog::remark() const {
  std::string text;
  if (refused_ > 0) {
    const char* const unit = head_.version == JSON ? "object" : "line";
    text = std::string(unit) + " " + std::to_string(firstRefused_) + " is damaged";
    if (refused_ > 1) {
      text += " and " + std::to_string(refused_ - 1) + " more of " + std::to_string(line_);
    }
  }
  if (cut_) {
    text += text.empty() ? "" : "; ";
    text += "it ends in the middle of a line";
    if (!window_.problem().empty()) text += " (" + window_.problem() + ")";
  }
  if (!anything_) text += text.empty() ? "it holds no frame" : "; it holds no frame";
  return text;
}

}  // namespace vok::gamelogs
