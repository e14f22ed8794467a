// A game log, read from its beginning to its end.
//
// The text formats (versions 4, 5 and 6) are read line by line, JSON object by object, in one pass
// over a window of the file: memory does not grow with the log. A line that has not its form is
// refused and counted, and the reading goes on behind it. Lines and names that are not known are
// skipped. docs/game-logs.md describes the formats.
#pragma once

#include <string>
#include <string_view>

#include "loghead.h"
#include "matchlog.h"
#include "textlines.h"
#include "textwindow.h"

namespace vok::gamelogs {

enum class JsonKind;

class GameLog : public MatchLog {
 public:
  /// Opens a plain or compressed file, or standard input when the name is "-". Returns false, with
  /// the reason in `error`, when it cannot be read or is no game log of a known version.
  bool open(const std::string& name, std::string& error);
  /// Takes a window at the log's beginning.
  bool open(TextWindow window, std::string& error);

  analysis::Told next() override;

  const LogHead& head() const { return head_; }
  /// What `next` found when it returned `Told::MESSAGE`.
  const LogMessage& message() const { return message_; }

  bool complete() const override { return ended_ && scored_ && !cut_ && refused_ == 0; }
  std::string remark() const override;
  std::string date() const override;

 private:
  bool begin(std::string_view firstLine, std::string& error);
  bool nextText(analysis::Told& told);
  bool nextObject(analysis::Told& told);
  bool readLine(std::string_view line, analysis::Told& told, bool& isNews);
  bool readHead(std::string_view line, bool& isHead);
  bool endArray();
  void skipDamage(bool wholeWindow);
  static bool isNews(JsonKind kind, analysis::Told& told);
  void refuse();
  void watch(analysis::Told told);

  TextWindow window_;
  LogHead head_;
  LogMessage message_;
  std::string timestamp_;
  std::string date_;
  long line_ = 0;  ///< its number; in JSON the object's
  long refused_ = 0;
  long firstRefused_ = 0;
  bool inArray_ = false;
  bool cut_ = false;
  bool ended_ = false;
  bool scored_ = false;
  bool shootOut_ = false;
  bool anything_ = false;  ///< a frame was read
};

}  // namespace vok::gamelogs
