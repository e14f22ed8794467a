// The frames of a match as characters, for the replay of a page.
//
// What changes seldom (cycles, play mode, score, types, cards) is told by frame, when it changes.
// Places are whole steps of 6 cm, so within 3 cm in x and in y; angles are steps of 5.6 degrees. A
// digit is one of 64 characters; a place is a number of two digits, x before y, high digit first,
// from -2048 steps on. Each frame has the place of the ball, then each player:
//
//   62                            not on the field
//   63, x, y, body, state         at a place
//   dx, dy, body, state           -31 to 30 steps from the place in the frame before, as 0 to 61
//
// `body` counts 64ths of a full turn. `state` has the stamina in 30ths of the full one, 31 where it
// is not told, and 32 more while the player tackles.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jsonwriter.h"
#include "matchrules.h"
#include "matchsource.h"

namespace vok::matchreport {

class FilmWriter {
 public:
  void frame(const analysis::Frame& frame, std::string_view playMode, const analysis::Score& score,
             const analysis::MatchRules& rules);

  int frames() const { return frames_; }
  const std::string& packed() const { return packed_; }

  /// Members of an object: what a reader needs to know of the code, and what changes when.
  static void writeCode(JsonWriter& json);
  void writeChanges(JsonWriter& json) const;

  /// Forgets the frames and changes that were told, but not what the next ones build on.
  void forget();

 private:
  struct Steps {
    int x = 0;
    int y = 0;
  };
  template <typename T>
  using Changes = std::vector<std::pair<int, T>>;  ///< a frame's number, and what holds from there
  struct PlayerNews {
    int player = 0;
    int value = 0;
  };

  void digit(int value);
  void place(Steps steps);
  void player(int number, const analysis::FramePlayer& shown, double staminaMax);
  void noteCycle(int cycle);
  void noteScore(const analysis::Score& score);
  void notePlayer(int number, const analysis::FramePlayer& shown);

  std::string packed_;
  int frames_ = 0;
  int cycle_ = 0;
  std::string mode_;
  bool scored_ = false;
  std::pair<int, int> goals_;
  analysis::ByPlayer<std::optional<Steps>> places_;  ///< in the frame before
  analysis::ByPlayer<int> types_;                    ///< each one more, so that 0 is not told
  analysis::ByPlayer<std::uint32_t> cards_;
  Changes<int> cycles_;
  Changes<std::string> modes_;
  Changes<std::pair<int, int>> scores_;
  Changes<PlayerNews> typeChanges_;
  Changes<PlayerNews> cardChanges_;
};

}  // namespace vok::matchreport
