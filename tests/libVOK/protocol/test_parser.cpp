// What the parser makes of messages; tests/data/messages.txt holds them with their records.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

#include "Parser.h"
#include "support/server.h"

namespace vok::test {
namespace {

/// The fields of a record that are not as in a fresh one. Angles in degrees.
class Description {
 public:
  explicit Description(const SensorData& d) {
    const SensorData fresh;
    static constexpr std::array TYPES = {"see",         "hear",           "sense_body", "exact",
                                         "ok",          "error",          "warning",    "strange",
                                         "player_type", "player_changed", "clang"};
    out_ << TYPES.at(static_cast<std::size_t>(d.type)) << " " << d.time;
    using S = SensorData;
    const std::pair<const char*, int S::*> counts[] = {{"number", &S::number},
                                                       {"heteroType", &S::heteroType},
                                                       {"announcedType", &S::announcedType},
                                                       {"score", &S::score},
                                                       {"sender_num", &S::sender_num},
                                                       {"kick", &S::kick_count},
                                                       {"dash", &S::dash_count},
                                                       {"turn", &S::turn_count},
                                                       {"say", &S::say_count},
                                                       {"turn_neck", &S::turn_neck_count},
                                                       {"catch", &S::catch_count},
                                                       {"move", &S::move_count},
                                                       {"change_view", &S::change_view_count},
                                                       {"point_to", &S::point_to_count},
                                                       {"attention_to", &S::attention_to_count},
                                                       {"tackle", &S::tackle_count},
                                                       {"arm_movable", &S::arm_movable},
                                                       {"arm_expires", &S::arm_expires},
                                                       {"attentionTo", &S::attentionTo},
                                                       {"tackle_expires", &S::tackle_expires}};
    for (const auto& [name, field] : counts) add(name, d.*field, fresh.*field);
    for (const auto& [name, field] :
         {std::pair("stamina", &S::stamina), {"effort", &S::effort}, {"speed", &S::speed}})
      add(name, d.*field, 0.0);
    for (const auto& [name, field] : {std::pair("speed_angle", &S::speed_angle),
                                      {"head_angle", &S::head_angle},
                                      {"sender_dir", &S::sender_dir}})
      addAngle(name, d.*field, fresh.*field);
    add("ourTeam", d.ourTeamChanged || d.attentionToOurTeam, false);
    add("sender", static_cast<int>(d.sender), 0);
    add("coachMsg", static_cast<int>(d.coachMsgType), 5);
    add("mode", static_cast<int>(d.mode), -1);
    add("penaltySide", static_cast<int>(d.penaltySide), -1);
    add("name", std::string(d.sender_name.data()), std::string());
    add("message", std::string(d.message.data()), std::string());
    add("see_width", static_cast<int>(d.see_view_width), 3);
    add("my_width", static_cast<int>(d.my_view_width), 3);
    add("my_quality", static_cast<int>(d.my_view_quality), 0);
    add("arm_x", d.arm_target.x, 0.0);
    add("arm_y", d.arm_target.y, 0.0);
    add("answer", static_cast<int>(d.answer.kind), 0);
    add("answerNumber", d.answer.number, -1);
    add("answerType", d.answer.type, -1);
    add("think", d.think, false);
    addSeen("ball", d.ball);
    for (const SensorGoal& g : d.goal) addSeen("goal", g, g.which, g.team);
    for (const SensorFlag& f : d.flag) addSeen("flag", f, f.which);
    for (const SensorLine& l : d.line) addSeen("line", l, l.which);
    for (const SensorPlayer& p : d.player)
      addSeen("player", p, p.team, p.number, p.goalie) && addDirections(p);
    addExact("ball", d.exactball);
    for (const ExactGoal& g : d.exactgoal) addExact("goal", g, g.which, g.team);
    for (const ExactPlayer& p : d.exactplayer)
      addExact("player", p, p.team, p.number, p.goalie) && addDirections(p);
  }

  std::string text() const { return out_.str(); }

 private:
  template <typename Value>
  void add(const char* name, const Value& value, const Value& fresh) {
    if (value != fresh) out_ << " " << name << "=" << value;
  }

  void addAngle(const char* name, double angle, double fresh) {
    if (angle != fresh) out_ << " " << name << "=" << std::round(toDegrees(angle) * 1000) / 1000;
  }

  template <typename... Facts>
  bool addSeen(const char* name, const SensorObject& o, Facts... facts) {
    if (!o.valid) return false;
    out_ << " | " << name;
    ((out_ << " " << static_cast<int>(facts)), ...);
    out_ << " at " << o.dist;
    addAngle("dir", o.dir, 0);
    add("dist_change", o.dist_change, 0.0);
    addAngle("dir_change", o.dir_change, 0);
    return true;
  }

  template <typename... Facts>
  bool addExact(const char* name, const ExactObject& o, Facts... facts) {
    if (!o.valid) return false;
    out_ << " | " << name;
    ((out_ << " " << static_cast<int>(facts)), ...);
    out_ << " at " << o.x << "," << o.y << "," << o.x_vel << "," << o.y_vel;
    return true;
  }

  template <typename Player>
  bool addDirections(const Player& p) {
    addAngle("face", p.face_dir, NO_ANGLE);
    addAngle("body", p.body_dir, NO_ANGLE);
    addAngle("pointto", p.pointto_dir, NO_ANGLE);
    add("tackle", p.tackle, false);
    return true;
  }

  std::ostringstream out_;
};

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
    std::string got = std::string("  ") + (understood ? Description(record).text() : "refused");
    std::istringstream told(errors.take());
    for (std::string line; std::getline(told, line);) got += " ! " + line;
    EXPECT_EQ(got, expected) << message;
    ++messages;
  }
  EXPECT_EQ(messages, 87);
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
