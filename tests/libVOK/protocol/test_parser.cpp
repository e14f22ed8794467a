// What the parser makes of messages; tests/data/messages.txt holds them with their records.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Parser.h"
#include "support/server.h"

namespace vok::test {
namespace {

/// The groups of a record's fields that are not as in a fresh one, and the valid objects.
std::string describe(const SensorData& data) {
  using D = SensorData;
  using T = PlayerType;
  const SensorData fresh;
  std::ostringstream out;
  out << "type " << data.type << " time " << data.time;
  const auto print = [&](const char* name, const auto&... values) {
    out << " | " << name;
    ((out << " " << values), ...);
  };
  const auto show = [&](const char* name, const auto& now, const auto& before, auto... fields) {
    if (((now.*fields != before.*fields) || ...)) print(name, now.*fields...);
  };
  show("change", data, fresh, &D::number, &D::ourTeamChanged, &D::heteroType, &D::announcedType);
  if (data.answer.kind != fresh.answer.kind)
    print("answer", static_cast<int>(data.answer.kind), data.answer.number, data.answer.type);
  show("think", data, fresh, &D::think);
  show("referee", data, fresh, &D::mode, &D::penaltySide, &D::score);
  if (data.type == SENSOR_TYPE_HEAR)
    print("voice", data.sender, data.coachMsgType, data.sender_dir, data.sender_num,
          data.sender_name.data() + std::string(":"), data.message.data() + std::string("."));
  show("view", data, fresh, &D::see_view_width, &D::my_view_width, &D::my_view_quality);
  show("body", data, fresh, &D::stamina, &D::effort, &D::speed, &D::speed_angle, &D::head_angle);
  show("counts", data, fresh, &D::kick_count, &D::dash_count, &D::turn_count, &D::say_count,
       &D::turn_neck_count, &D::catch_count, &D::move_count, &D::change_view_count,
       &D::point_to_count, &D::attention_to_count, &D::tackle_count);
  show("arm and focus", data, fresh, &D::arm_movable, &D::arm_expires, &D::attentionTo,
       &D::attentionToOurTeam, &D::tackle_expires);
  show("arm's target", data.arm_target, fresh.arm_target, &Vector2d::x, &Vector2d::y);
  show("type", data.playerType, fresh.playerType, &T::player_type, &T::player_speed_max,
       &T::stamina_inc_max, &T::player_decay, &T::inertia_moment, &T::dash_power_rate,
       &T::player_size, &T::kickable_margin, &T::kick_rand, &T::extra_stamina, &T::effort_max,
       &T::effort_min);

  const auto seen = [&](const char* name, const SensorObject& o, auto... facts) {
    if (o.valid) print(name, facts..., "at", o.dist, o.dir, o.dist_change, o.dir_change);
  };
  const auto exact = [&](const char* name, const ExactObject& o, auto... facts) {
    if (o.valid) print(name, facts..., "at", o.x, o.y, o.x_vel, o.y_vel);
  };
  const auto player = [](const auto& p, auto add) {
    add("player", p, p.team, p.number, p.goalie, p.face_dir, p.body_dir, p.pointto_dir, p.tackle);
  };
  seen("ball", data.ball);
  for (const SensorGoal& g : data.goal) seen("goal", g, g.which, g.team);
  for (const SensorFlag& f : data.flag) seen("flag", f, f.which);
  for (const SensorLine& l : data.line) seen("line", l, l.which);
  for (const SensorPlayer& p : data.player) player(p, seen);
  exact("ball", data.exactball);
  for (const ExactGoal& g : data.exactgoal) exact("goal", g, g.which, g.team);
  for (const ExactPlayer& p : data.exactplayer) player(p, exact);
  return out.str();
}

TEST(ParserTest, MessagesBecomeTheirRecords) {
  Parser coach("Alpha", CLIENT_ONLINECOACH, 7, 8);
  Parser player("Alpha", CLIENT_FIELDPLAYER, 7, 8);
  player.setSide(SIDE_RIGHT);
  StderrCapture errors;
  const std::string file = VOK_SOURCE_DIR "/tests/data/messages.txt";
  const Lines rows = lines(runCommand("grep -v '^#' " + file).second);
  ASSERT_EQ(rows.size(), 2U * 94);
  for (std::size_t i = 0; i < rows.size(); i += 2) {
    const std::string message = rows[i].substr(rows[i].find(' ') + 1);
    SensorData record;
    const bool understood =
        (rows[i].starts_with("coach") ? coach : player).parseServerString(message, record);
    std::string got = "  " + (understood ? describe(record) : "refused");
    for (const std::string& line : lines(errors.take())) got += " ! " + line;
    EXPECT_EQ(got, rows[i + 1]) << message;
  }
}

TEST(ParserTest, ATextEndsAtItsNulByteAndFitsItsRoom) {
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  SensorData record;
  const std::string flood(8000, 'a');
  const std::string kept(512, 'a');
  StderrCapture errors;
  EXPECT_FALSE(parser.parseServerString({"(see_global 5 ((b) 0 0 0 0\0))", 29}, record));
  EXPECT_FALSE(parser.parseServerString("(see_global 1 ((" + flood + ") 0 0\n", record));
  EXPECT_EQ(errors.take(),
            "Parser: malformed object: l=5 len=0\n'((b) 0 0 0 0'\n"
            "Parser: malformed object: l=8004 len=0\n'((" +
                flood + ") 0 0'\n");
  EXPECT_TRUE(
      parser.parseServerString("(hear 1 (p \"" + flood + "\" 3) \"" + flood + "\")", record));
  EXPECT_EQ(record.sender_name.data(), kept);
  EXPECT_EQ(record.message.data(), kept);
  EXPECT_TRUE(parser.parseServerString("(hear 1 online_coach_left (info" + flood, record));
  EXPECT_EQ(record.message.data(), kept);
}

}  // namespace
}  // namespace vok::test
