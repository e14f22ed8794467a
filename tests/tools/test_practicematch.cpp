#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "audiomsg.h"
#include "coachdesk.h"
#include "match.h"
#include "options.h"
#include "replay.h"
#include "session.h"

using namespace vok;
using namespace vok::practice;

namespace {

MatchSettings settings(std::uint64_t seed = MatchSettings().seed) {
  MatchSettings set;
  set.seed = seed;
  set.coachTeam = "Alpha";
  set.otherTeam = "Beta";
  return set;
}

/// Everything that is sent in so many cycles, or to the end.
std::vector<std::string> play(Match& match, int cycles) {
  std::vector<std::string> all = match.checkIn();
  std::vector<std::string> texts;
  for (; cycles > 0 && !match.finished(); --cycles) {
    match.cycle(texts);
    all.insert(all.end(), texts.begin(), texts.end());
  }
  return all;
}

/// "kick_in" of "(hear 408 referee kick_in_r)", with the side; empty for other texts. The count of
/// a goal is cut off.
std::string callIn(const std::string& text) {
  const std::size_t at = text.find(" referee ");
  if (at == std::string::npos) return {};
  std::string name = text.substr(at + 9, text.size() - at - 10);
  if (std::isdigit(static_cast<unsigned char>(name.back())) != 0) name.resize(name.rfind('_'));
  return name;
}

TEST(PracticeMatch, IsTheSameForTheSameSeedOnly) {
  Match first(settings(7));
  Match second(settings(7));
  Match other(settings(8));
  const auto texts = play(first, 700);
  EXPECT_EQ(texts, play(second, 700));
  EXPECT_NE(texts, play(other, 700));
}

TEST(PracticeMatch, ShowsEveryStandardSituationOfBothSides) {
  Match match(settings());
  std::set<std::string> calls;
  for (const std::string& text : play(match, 20000)) calls.insert(callIn(text));
  for (const std::string name : {"kick_off", "kick_in", "corner_kick", "goal_kick", "free_kick",
                                 "offside", "foul_charge", "goal"}) {
    EXPECT_TRUE(calls.contains(name + "_l")) << name;
    EXPECT_TRUE(calls.contains(name + "_r")) << name;
  }
  for (const std::string name :
       {"half_time", "before_kick_off", "play_on", "time_up", "time_over"}) {
    EXPECT_TRUE(calls.contains(name)) << name;
  }
  EXPECT_EQ(match.time(), 6000);
}

TEST(PracticeMatch, StopsTheClockAfterGoalsAndFouls) {
  Match match(settings());
  const std::vector<std::string> texts = play(match, 20000);
  int stops = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string call = callIn(texts[i]);
    const bool goal = call == "goal_l" || call == "goal_r";
    if (!goal && !call.starts_with("foul_charge") && !call.starts_with("offside")) continue;
    ++stops;
    int views = 0;
    std::size_t next = i + 1;
    for (; callIn(texts[next]).empty(); ++next) {
      if (texts[next].starts_with("(see_global ")) ++views;
    }
    EXPECT_EQ(views, goal ? 50 : 30) << texts[i];
    // The kick is the other side's, and is called before the clock goes on.
    EXPECT_NE(callIn(texts[next]).back(), call.back()) << texts[next];
    EXPECT_EQ(texts[next].substr(0, texts[next].find(" ref")),
              texts[i].substr(0, texts[i].find(" ref")));
  }
  EXPECT_GT(stops, 4);
}

TEST(PracticeWorld, LeavesAFreeBodyItsSpeedTimesTheDecayOfItsType) {
  World world(18, Dice(3));
  for (int type = 0; type < 18; ++type) {
    Player& p = world.team(Side::Right)[4];
    world.setType(p, type);
    p.pos = {10.0 + type, 20};
    p.vel = {0.3, -0.2};
    world.putBall({-20, 0});
    world.ball.vel = {2, 1};
    const Vector2d from = p.pos;
    const Vector2d ballFrom = world.ball.pos;
    for (Team& team : world.teams) {
      for (Player& other : team) {
        if (&other != &p) other.pos = {-50, other.number * 3.0 * forward(other.side)};
      }
    }
    world.step();
    EXPECT_NEAR(p.vel.getLength() / distance(p.pos, from), world.typeOf(p).decay, 1e-9);
    EXPECT_NEAR(world.ball.vel.getLength() / distance(world.ball.pos, ballFrom), 0.94, 1e-9);
  }
}

TEST(PracticeWorld, TurnsAMovingPlayerLessTheMoreInertiaItHas) {
  World world(1, Dice(3));
  Player& p = world.team(Side::Left)[4];
  p.vel = {1, 0};
  world.turn(p, 180);
  EXPECT_NEAR(p.body, 30, 3);  // 180 / (1 + 5 * 1), one tenth of noise
}

TEST(PracticeTypes, PayForEveryAdvantage) {
  Dice dice(5);
  const auto types = drawTypes(30, dice);
  ASSERT_EQ(types.size(), 30U);
  for (const HeteroType& type : types) {
    EXPECT_NEAR(type.inertia - 5, 25 * (type.decay - 0.4), 1e-9);
    EXPECT_NEAR(type.staminaIncMax - 45, -6000 * (type.dashPowerRate - 0.006), 1e-9);
    EXPECT_NEAR(type.kickRand - 0.1, type.kickableMargin - 0.7, 1e-9);
    EXPECT_NEAR(type.effortMax - 1, -0.004 * (type.extraStamina - 50), 1e-9);
  }
}

TEST(PracticeSayRules, JudgeFormAndTime) {
  const std::string longest(128, 'a');
  const struct {
    std::string command;
    long time;
    bool playOn;
    std::string answer;
  } cases[] = {
      {"(say (freeform \"a (b) 1.+-*/?<>_\"))", 0, false, "(ok say)"},
      {"(say (freeform \"" + longest + "\"))", 0, false, "(ok say)"},
      {"(say (freeform \"" + longest + "a\"))", 0, false, "(error could_not_parse_say)"},
      {"(say (freeform \"\"))", 0, false, "(error could_not_parse_say)"},
      {"(say (freeform \"))", 0, false, "(error could_not_parse_say)"},
      {"(say (freeform \"a,b\"))", 0, false, "(error could_not_parse_say)"},
      {"(say \"a\")", 0, false, "(error could_not_parse_say)"},
      {"(say (freeform \"a\"))", 10, true, "(error cannot_say_freeform_while_playon)"},
      {"(say (freeform \"a\"))", 600, true, "(error cannot_say_freeform_while_playon)"},
      {"(say (freeform \"a\"))", 601, true, "(ok say)"},
      {"(say (freeform \"a\"))", 619, true, "(ok say)"},
      {"(say (freeform \"a\"))", 620, true, "(error cannot_say_freeform_while_playon)"},
      {"(say (freeform \"a\"))", 1200, true, "(ok say)"},
      {"(say (freeform \"a\"))", 620, false, "(ok say)"},
  };
  for (const auto& c : cases) {
    SayRules rules;
    std::string text;
    EXPECT_EQ(rules.judge(c.command, c.time, c.playOn, text), c.answer) << c.command << c.time;
    EXPECT_EQ(text.empty(), c.answer != "(ok say)");
  }
}

TEST(PracticeSayRules, Grant128MessagesAndAsManyAgainAfter6000Cycles) {
  SayRules rules;
  std::string text;
  const std::string_view command = "(say (freeform \"a\"))";
  for (int i = 0; i < 128; ++i) ASSERT_EQ(rules.judge(command, 5999, false, text), "(ok say)");
  EXPECT_EQ(rules.judge(command, 5999, false, text), "(error said_too_many_freeform_messages)");
  for (int i = 0; i < 128; ++i) ASSERT_EQ(rules.judge(command, 6000, false, text), "(ok say)");
  EXPECT_EQ(rules.judge(command, 6000, false, text), "(error said_too_many_freeform_messages)");
}

class PracticeDesk : public ::testing::Test {
 protected:
  std::vector<std::string> ask(const std::string& text, bool terminated = true) {
    std::vector<std::string> answers;
    desk.take({text, terminated}, answers);
    return answers;
  }
  void playTo(std::string_view mode) {
    std::vector<std::string> texts;
    while (match.modeName() != mode) match.cycle(texts);
  }
  using Texts = std::vector<std::string>;

  Match match{settings()};
  Report report;
  CoachDesk desk{match, report, false};
};

TEST_F(PracticeDesk, AnswersEachCommandAndWarnsAboutMissingTerminators) {
  EXPECT_EQ(ask("(eye on)"), Texts{"(ok eye on)"});
  EXPECT_EQ(ask("(eye off)", false),
            (Texts{"(warning message_not_null_terminated)", "(ok eye off)"}));
  EXPECT_FALSE(desk.eyeOn());
  EXPECT_EQ(ask("(dance)"), Texts{"(error unknown_command)"});
  EXPECT_EQ(ask("dance"), Texts{"(error illegal_command_form)"});
  EXPECT_EQ(ask("(change_player_type 5 3 1)"), Texts{"(error illegal_command_form)"});
  EXPECT_EQ(ask("(done)", false), Texts{});
  EXPECT_TRUE(desk.tookDone());
  EXPECT_FALSE(desk.tookDone());
  EXPECT_EQ(ask("(bye)"), Texts{});
  EXPECT_TRUE(desk.left());
}

TEST_F(PracticeDesk, ChangesTypesByTheRules) {
  EXPECT_EQ(ask("(change_player_type 5 3)"),
            (Texts{"(change_player_type 5 3)", "(ok change_player_type 5 3)"}));
  EXPECT_EQ(ask("(change_player_type 6 3)"), Texts{"(warning max_of_that_type_on_field)"});
  EXPECT_EQ(ask("(change_player_type 6 18)"), Texts{"(error out_of_range_player_type)"});
  EXPECT_EQ(ask("(change_player_type 12 4)"), Texts{"(warning no_such_player)"});

  playTo("play_on");
  EXPECT_EQ(ask("(change_player_type 5 17)"), Texts{"(warning cannot_sub_while_playon)"});
  while (match.playOn()) {
    std::vector<std::string> texts;
    match.cycle(texts);
  }
  // The kick-off gave types 1, 2, 4 and so on to the players that had none; 11 to 17 are free.
  EXPECT_EQ(ask("(change_player_type 5 1)"), Texts{"(warning no_left_of_that_type)"});
  for (const std::string type : {"15", "16", "17"}) {
    EXPECT_EQ(ask("(change_player_type 5 " + type + ")").back(),
              "(ok change_player_type 5 " + type + ")");
  }
  EXPECT_EQ(ask("(change_player_type 5 14)"), Texts{"(warning no_subs_left)"});
  EXPECT_EQ(report.typesAsked, 10);
  EXPECT_EQ(report.typesGiven, 4);
  EXPECT_EQ(report.typesRefused["no_subs_left"], 1);
}

TEST_F(PracticeDesk, ComparesWhatACoachSaysWithTheViewOfThatTime) {
  playTo("kick_off_l");
  desk.viewSent();
  const auto said = [&](double ballX) {
    AudioMsg message(0, static_cast<unsigned>(match.time()), true);
    message << true << NodaChar(1) << NodaChar(1) << ballX << 0.0;
    for (int i = 0; i < 44; ++i) message << 1.0;
    for (int number = 1; number <= 11; ++number) message << NodaChar(number == 4 ? 8 : 0);
    message << Int3B(9U) << Int3B(0U);
    message.createChkSums();
    return std::string(message.getEncoding());
  };
  EXPECT_EQ(ask("(say (freeform \"" + said(0) + "\"))"), Texts{"(ok say)"});
  EXPECT_EQ(ask("(say (freeform \"" + said(0.3) + "\"))"), Texts{"(ok say)"});
  std::string damaged = said(0);
  damaged[20] = damaged[20] == 'a' ? 'b' : 'a';
  EXPECT_EQ(ask("(say (freeform \"" + damaged + "\"))"), Texts{"(ok say)"});
  EXPECT_EQ(report.messagesAccepted, 3);
  EXPECT_EQ(report.messagesDecoded, 2);
  EXPECT_EQ(report.ballsRight, 1);
  EXPECT_EQ(report.lastTypes[4], 7);
  EXPECT_EQ(report.lastTypes[5], -1);
  EXPECT_EQ(report.lastTypesUnknown, 10);
  EXPECT_EQ(report.lastTypesRight, match.state().team(Side::Right)[3].type == 7 ? 1 : 0);
}

TEST(PracticeOptions, SayWhatIsWrongWithAnArgument) {
  const struct {
    std::vector<const char*> arguments;
    std::string error;  ///< its beginning; empty: right
  } cases[] = {{{"--cycles", "600", "--side", "r", "--types", "1"}, ""},
               {{"--replay", "-", "--speed", "2.5"}, ""},
               {{"--cycles", "1"}, "--cycles cannot be \"1\": "},
               {{"--cycles", "10x"}, "--cycles cannot be \"10x\": "},
               {{"--seed", "-1"}, "--seed cannot be \"-1\": "},
               {{"--speed", "nan", "--replay", "-"}, "--speed cannot be \"nan\": "},
               {{"--team", "A B"}, "--team cannot be \"A B\": "},
               {{"--port"}, "--port needs a value: "},
               {{"verbose"}, "unknown argument \"verbose\""},
               {{"--speed", "2"}, "--speed goes only with --replay"},
               {{"--replay", "-", "--seed", "2"}, "--seed does not go with --replay"},
               {{"--synch", "--step", "10"}, "--synch does not go with --step"}};
  for (const auto& c : cases) {
    std::vector<const char*> arguments = {"practicematch"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    std::string error;
    const auto options = readOptions(static_cast<int>(arguments.size()), arguments.data(), error);
    EXPECT_EQ(options.has_value(), c.error.empty()) << error;
    EXPECT_EQ(error.substr(0, c.error.size()), c.error);
  }
}

TEST(PracticeSession, KnowsTheNameInACheckIn) {
  EXPECT_EQ(initTeam("(init VOK-1_x (version 9.00))"), "VOK-1_x");
  for (const char* text :
       {"(init VOK)", "(init  (version 9))", "(init V K (version 9))", "(init",
        "(init VOK (version ))", "(init VOK (version x))", "(reconnect VOK 1)"}) {
    EXPECT_FALSE(initTeam(text)) << text;
  }
}

TEST(PracticeReplay, TakesARecordingAndRefusesOtherFiles) {
  std::istringstream good(
      "14\t(init r ok)\n15\t(server_param (synch_mode 1))\n"
      "67\t(see_global 0 ((b) 0 0 0 0) ((p \"Beta\" 1) 0 0 0 0 0 0) ((p \"Alpha\" 1) 0 0 0 0 0 "
      "0))\n");
  Recording recording;
  std::string error;
  ASSERT_TRUE(recording.read(good, error)) << error;
  EXPECT_TRUE(recording.synchronous());
  EXPECT_EQ(recording.team(), "Alpha");
  EXPECT_EQ(recording.texts[2].milliseconds, 67);

  for (const char* text :
       {"", "14\t(think)\n", "14\t(init l ok)\nx\t(think)\n", "14 (init l ok)\n"}) {
    std::istringstream bad(text);
    Recording other;
    EXPECT_FALSE(other.read(bad, error)) << text;
  }
}

}  // namespace
