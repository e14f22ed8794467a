#include "typeanswers.h"

#include "scanner.h"

namespace vok {

namespace {

struct Refusal {
  std::string_view head;
  TypeAnswerKind kind;
};

constexpr auto REFUSALS = std::to_array<Refusal>({
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
  for (const Refusal& refusal : REFUSALS) {
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
  answers_[(first_ + count_) % SIZE] = answer;
  if (count_ < SIZE) {
    ++count_;
  } else {
    first_ = (first_ + 1) % SIZE;
  }
}

bool TypeAnswers::next(TypeAnswer& answer) {
  if (count_ == 0) return false;
  answer = answers_[first_];
  first_ = (first_ + 1) % SIZE;
  --count_;
  return true;
}

}  // namespace vok
