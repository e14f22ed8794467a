// What the server answers to a command: "(ok ...)", "(warning ...)" and "(error ...)".
#include <array>

#include "Parser.h"
#include "scanner.h"

namespace vok {

namespace {

struct AnswerText {
  sensor_data_type type;
  std::string_view rest;  ///< of the text, behind the head
  AnswerKind kind;
};

constexpr auto ANSWERS = std::to_array<AnswerText>({
    {SENSOR_TYPE_WARNING, "max_of_that_type_on_field)", AnswerKind::TYPE_FULL},
    {SENSOR_TYPE_WARNING, "no_left_of_that_type)", AnswerKind::TYPE_FULL},
    {SENSOR_TYPE_ERROR, "out_of_range_player_type)", AnswerKind::NO_SUCH_TYPE},
    {SENSOR_TYPE_WARNING, "no_such_player)", AnswerKind::NO_SUCH_PLAYER},
    {SENSOR_TYPE_WARNING, "cannot_sub_while_playon)", AnswerKind::IN_PLAY},
    {SENSOR_TYPE_WARNING, "no_subs_left)", AnswerKind::NO_SUBSTITUTION_LEFT},
    {SENSOR_TYPE_WARNING, "cannot_sub_while_penalty_shootouts)", AnswerKind::IN_SHOOTOUT},
    {SENSOR_TYPE_WARNING, "only_before_kick_off)", AnswerKind::TILE_TOO_LATE},
    {SENSOR_TYPE_WARNING, "invalid_tile_location)", AnswerKind::TILE_REFUSED},
    {SENSOR_TYPE_WARNING, "invalid_tile_size)", AnswerKind::TILE_REFUSED},
    {SENSOR_TYPE_ERROR, "invalid_xpm_data)", AnswerKind::TILE_REFUSED},
    {SENSOR_TYPE_WARNING, "message_not_null_terminated)", AnswerKind::TEXT_NOT_TERMINATED},
});

}  // namespace

/// Most answers mean nothing to a client.
bool Parser::parseAnswer() {
  if (data_->type == SENSOR_TYPE_OK) return parseGranted();
  for (const AnswerText& row : ANSWERS) {
    if (row.type == data_->type && msg_.starts_with(row.rest)) data_->answer.kind = row.kind;
  }
  return true;
}

/// "change_player_type 5 3)", "team_graphic 31 7)"
bool Parser::parseGranted() {
  Scanner at(msg_);
  Answer answer;
  if (at.literal("change_player_type ")) answer.kind = AnswerKind::TYPE_GIVEN;
  if (at.literal("team_graphic ")) answer.kind = AnswerKind::TILE_TAKEN;
  if (answer.kind == AnswerKind::NONE) return true;
  if (at.integer(answer.number) && at.integer(answer.type)) data_->answer = answer;
  return true;
}

}  // namespace vok
