// What the parser makes of messages; tests/data/messages.txt holds them with their records.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <tuple>

#include "Parser.h"
#include "support/server.h"

namespace vok::test {
namespace {

template <typename... Values>
void print(std::ostream& out, const char* name, const std::tuple<Values...>& values) {
  out << " | " << name;
  std::apply([&](const auto&... value) { ((out << " " << value), ...); }, values);
}

/// The groups of a record's fields that are not as in a fresh one, and the valid objects.
std::string describe(const SensorData& data) {
  using D = SensorData;
  std::ostringstream out;
  out << "type " << data.type << " time " << data.time;
  const auto show = [&](const char* name, auto valuesOf) {
    if (valuesOf(data) != valuesOf(D())) print(out, name, valuesOf(data));
  };
  show("change", [](const D& d) {
    return std::tuple(d.number, d.ourTeamChanged, d.heteroType, d.announcedType);
  });
  show("answer", [](const D& d) {
    return std::tuple(static_cast<int>(d.answer.kind), d.answer.number, d.answer.type);
  });
  show("think", [](const D& d) { return std::tuple(d.think); });
  show("referee", [](const D& d) { return std::tuple(d.mode, d.penaltySide, d.score); });
  show("voice", [](const D& d) {
    return std::tuple(d.sender, d.coachMsgType, d.sender_dir, d.sender_num,
                      d.sender_name.data() + std::string(":"), d.message.data() + std::string("."));
  });
  show("view",
       [](const D& d) { return std::tuple(d.see_view_width, d.my_view_width, d.my_view_quality); });
  show("body", [](const D& d) {
    return std::tuple(d.stamina, d.effort, d.speed, d.speed_angle, d.head_angle);
  });
  show("counts", [](const D& d) {
    return std::tuple(d.kick_count, d.dash_count, d.turn_count, d.say_count, d.turn_neck_count,
                      d.catch_count, d.move_count, d.change_view_count, d.point_to_count,
                      d.attention_to_count, d.tackle_count);
  });
  show("arm and focus", [](const D& d) {
    return std::tuple(d.arm_movable, d.arm_expires, d.arm_target.x, d.arm_target.y, d.attentionTo,
                      d.attentionToOurTeam, d.tackle_expires);
  });
  show("type", [](const D& d) {
    const PlayerType& t = d.playerType;
    return std::tuple(t.player_type, t.player_speed_max, t.stamina_inc_max, t.player_decay,
                      t.inertia_moment, t.dash_power_rate, t.player_size, t.kickable_margin,
                      t.kick_rand, t.extra_stamina, t.effort_max, t.effort_min);
  });

  const auto seen = [&](const char* name, const SensorObject& o, auto... facts) {
    if (!o.valid) return;
    print(out, name, std::tuple(facts..., "at", o.dist, o.dir, o.dist_change, o.dir_change));
  };
  const auto exact = [&](const char* name, const ExactObject& o, auto... facts) {
    if (o.valid) print(out, name, std::tuple(facts..., "at", o.x, o.y, o.x_vel, o.y_vel));
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

struct Clients {
  Parser coach{"Alpha", CLIENT_ONLINECOACH, 7, 8};
  Parser player{"Alpha", CLIENT_FIELDPLAYER, 7, 8};
  Clients() { player.setSide(SIDE_RIGHT); }
};

TEST(ParserTest, MessagesBecomeTheirRecords) {
  Clients clients;
  StderrCapture errors;
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/messages.txt");
  std::string message, expected;
  int messages = 0;
  while (std::getline(file, message)) {
    if (message.starts_with('#')) continue;
    ASSERT_TRUE(std::getline(file, expected)) << message;
    const bool isCoach = message.starts_with("coach");
    SensorData record;
    const bool understood =
        (isCoach ? clients.coach : clients.player)
            .parseServerString(std::string_view(message).substr(isCoach ? 6 : 7), record);
    std::string got = std::string("  ") + (understood ? describe(record) : "refused");
    std::istringstream told(errors.take());
    for (std::string line; std::getline(told, line);) got += " ! " + line;
    EXPECT_EQ(got, expected) << message;
    ++messages;
  }
  EXPECT_EQ(messages, 93);
}

TEST(ParserTest, ATextEndsAtItsNulByteAndFitsItsRoom) {
  Clients clients;
  SensorData record;
  const std::string flood(8000, 'a');
  StderrCapture errors;
  EXPECT_FALSE(clients.coach.parseServerString(
      std::string_view("(see_global 5 ((b) 0 0 0 0\0))", 29), record));
  EXPECT_FALSE(clients.coach.parseServerString("(see_global 1 ((" + flood + ") 0 0\n", record));
  EXPECT_EQ(errors.take(),
            "Parser: malformed object: l=5 len=0\n'((b) 0 0 0 0'\nParser: malformed object: l=8004 "
            "len=0\n'((" +
                flood + ") 0 0'\n");
  EXPECT_TRUE(clients.coach.parseServerString("(hear 1 (p \"" + flood + "\" 3) \"" + flood + "\")",
                                              record));
  EXPECT_EQ(record.sender_name.data(), std::string(512, 'a'));
  EXPECT_EQ(record.message.data(), std::string(512, 'a'));
  EXPECT_FALSE(clients.coach.parseServerString("", record));
  EXPECT_TRUE(clients.coach.parseServerString("(hear 1 online_coach_left (info" + flood, record));
  EXPECT_EQ(record.message.data(), std::string(512, 'a'));
}

}  // namespace
}  // namespace vok::test
