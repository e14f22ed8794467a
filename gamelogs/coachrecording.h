// What a simulator server sent to a coach, as a match.
//
// What the coach sent is skipped. Such a source knows no counters, no stamina and no types of the
// opponents; of the states it knows who is on the field, who is goalie, who tackles, who caught the
// ball and who saw a card.
#pragma once

#include <optional>

#include "Parser.h"
#include "loghead.h"
#include "matchlog.h"
#include "recordline.h"
#include "textwindow.h"

namespace vok::gamelogs {

class CoachRecording : public MatchLog {
 public:
  /// Takes a window at the recording's beginning. Returns false, with the reason in `error`, when
  /// it does not begin with the answer to a check-in.
  bool open(TextWindow window, std::string& error);

  analysis::Told next() override;

  bool complete() const override { return ended_ && !cut_ && refused_ == 0; }
  std::string remark() const override;

 private:
  bool readLine(std::string_view line);
  bool readText(std::string_view text);
  bool readHead(std::string_view text);
  bool readCall(std::string_view text);
  void announce(std::string_view name, int cycle);
  void count(const analysis::Call& call);
  bool readTypeChange(std::string_view text);
  bool readView(std::string_view text);
  bool findTeams(std::string_view view);
  void fill(const ExactPlayer& seen);

  TextWindow window_;
  RecordLine recorded_;
  LogHead head_;
  playing_side side_ = SIDE_UNKNOWN;  ///< the coach's
  std::optional<Parser> parser_;      ///< once the teams are known
  SensorData record_;
  Squad<int> types_;  ///< of the coach's team, as announced; 0 is the default type
  analysis::ByPlayer<std::uint32_t> marks_;  ///< cards, for the rest of the match
  analysis::PlayerSet carded_;               ///< who saw one since the last frame
  analysis::BySide<bool> caught_;            ///< its goalie caught the ball since the last frame
  bool kickedOff_ = false;                   ///< a play mode but "before_kick_off" holds
  int halfEnd_ = analysis::NONE;             ///< the cycle in which the last half ended
  bool ended_ = false;
  bool cut_ = false;
  long line_ = 0;
  long refused_ = 0;
  long firstRefused_ = 0;
  // What the last line told, in the order in which it is handed on.
  bool tellsCall_ = false;
  bool tellsScore_ = false;
  bool tellsFrame_ = false;
};

}  // namespace vok::gamelogs
