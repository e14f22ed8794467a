// The server's answers to "(change_player_type NUMBER TYPE)".
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vok {

enum class TypeAnswerKind {
  GIVEN,
  FULL,  ///< as many players as may have the type
  NO_SUCH_TYPE,
  NO_SUCH_PLAYER,
  IN_PLAY,  ///< changes are for interruptions
  NO_SUBSTITUTION_LEFT
};

/// A refusal does not say what it refuses: answers come in the order of the requests.
struct TypeAnswer {
  TypeAnswerKind kind = TypeAnswerKind::GIVEN;
  int number = -1;  ///< what was given
  int type = -1;
};

/// Keeps the answers until they are taken; of more than fit the oldest are lost.
class TypeAnswers {
 public:
  /// Keeps a text of the server if it is such an answer.
  void note(std::string_view text);
  /// Takes the oldest answer; false when there is none.
  bool next(TypeAnswer& answer);

 private:
  static constexpr std::size_t SIZE = 64;

  std::array<TypeAnswer, SIZE> answers_;
  std::size_t first_ = 0;
  std::size_t count_ = 0;
};

}  // namespace vok
