#include "typeanswers.h"

#include "scanner.h"

namespace vok {

namespace {

struct Refusal {
  std::string_view head;
  TypeAnswerKind kind;
};

constexpr auto refusals = std::to_array<Refusal>({
    {"(warning max_of_that_type_on_field)", TypeAnswerKind::FULL},
    {"(warning no_left_of_that_type)", TypeAnswerKind::FULL},
    {"(error out_of_range_player_type)", TypeAnswerKind::NO_SUCH_TYPE},
    {"(warning no_such_player)", TypeAnswerKind::NO_SUCH_PLAYER},
    {"(warning cannot_sub_while_playon)", TypeAnswerKind::IN_PLAY},
    {"(warning no_subs_left)", TypeAnswerKind::NO_SUBSTITUTION_LEFT},
});

bool readAnswer(std::string_view text, TypeAnswer& answer) {
  Scanner scan(text);
  if (scan.literal("(ok change_player_type ")) {
    return scan.integer(answer.number) && scan.integer(answer.type);
  }
  for (const Refusal& refusal : refusals) {
    if (!text.starts_with(refusal.head)) continue;
    answer.kind = refusal.kind;
    return true;
  }
  return false;
}

}  // namespace

void TypeAnswers::note(std::string_view text) {
  TypeAnswer answer;
  if (!readAnswer(text, answer)) return;
  answers[(first + count) % SIZE] = answer;
  if (count < SIZE) {
    ++count;
  } else {
    first = (first + 1) % SIZE;
  }
}

bool TypeAnswers::next(TypeAnswer& answer) {
  if (count == 0) return false;
  answer = answers[first];
  first = (first + 1) % SIZE;
  --count;
  return true;
}

}  // namespace vok
