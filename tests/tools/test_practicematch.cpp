#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "audiomsg.h"
#include "coachdesk.h"
#include "coachmessage.h"
#include "match.h"
#include "playerport.h"
#include "support/server.h"

using namespace vok;
using namespace vok::practicematch;

namespace {

using Texts = vok::test::Lines;

/// Everything that is sent in so many cycles, or to the end.
Texts play(std::uint64_t seed, int cycles) {
  MatchSettings settings;
  settings.seed = seed;
  Match match(settings);
  Texts all = match.checkIn();
  Texts texts;
  for (; cycles > 0 && !match.finished(); --cycles) {
    match.cycle(texts);
    all.insert(all.end(), texts.begin(), texts.end());
  }
  return all;
}

/// "kick_in_r" of "(hear 408 referee kick_in_r)", without a goal's count; empty for other texts.
std::string callIn(const std::string& text) {
  const std::size_t at = text.find(" referee ");
  if (at == std::string::npos) return {};
  const std::string name = text.substr(at + 9, text.size() - at - 10);
  return name.substr(0, name.find_last_not_of("_0123456789") + 1);
}

TEST(PracticeMatch, IsTheSameForTheSameSeedOnly) {
  EXPECT_EQ(play(7, 700), play(7, 700));
  EXPECT_NE(play(7, 700), play(8, 700));
  // Set it anew after a change that is meant to alter the match.
  std::string all;
  for (const std::string& text : play(7, 700)) all += text + '\n';
  EXPECT_EQ(test::hashOf(all), 6682632837711435668U);
}

TEST(PracticeMatch, HasEverySetPlayOfBothSidesAndStopsTheClockAfterGoalsAndFouls) {
  const Texts texts = play(MatchSettings().seed, 20000);
  std::set<std::string> calls;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string call = callIn(texts[i]);
    calls.insert(call);
    const bool goal = call == "goal_l" || call == "goal_r";
    if (!goal && !call.starts_with("foul_charge") && !call.starts_with("offside")) continue;
    int views = 0;
    std::size_t next = i + 1;
    for (; callIn(texts[next]).empty(); ++next) views += texts[next].starts_with("(see_global ");
    EXPECT_EQ(views, goal ? 50 : 30) << texts[i];
    // The kick is the other side's, and is called before the clock goes on.
    EXPECT_NE(callIn(texts[next]).back(), call.back()) << texts[next];
    EXPECT_EQ(std::stol(texts[next].substr(6)), std::stol(texts[i].substr(6)));
  }
  EXPECT_EQ(std::count(texts.begin(), texts.end(), "(hear 3000 referee kick_off_r)"), 1);
  std::istringstream expected(
      "half_time before_kick_off play_on time_up time_over kick_off_l kick_off_r kick_in_l "
      "kick_in_r corner_kick_l corner_kick_r goal_kick_l goal_kick_r free_kick_l free_kick_r "
      "offside_l offside_r foul_charge_l foul_charge_r goal_l goal_r");
  for (std::string call; expected >> call;) EXPECT_TRUE(calls.contains(call)) << call;
}

TEST(PracticeSayRules, JudgeFormAndTimeAndGrant128MessagesForEach6000Cycles) {
  SayRules rules;
  std::string text;
  const auto judge = [&](const std::string& message, long time, bool playOn) {
    return rules.judge("(say (freeform \"" + message + "\"))", time, playOn, text);
  };
  const std::string longest = "a (b) 1.+-*/?<>_" + std::string(112, 'a');
  EXPECT_EQ(judge(longest, 619, true), "(ok say)");
  EXPECT_EQ(text, longest);
  for (const std::string& message : Texts{longest + "a", "", "a,b"})
    EXPECT_EQ(judge(message, 0, false), "(error could_not_parse_say)") << message;
  for (const long time : {600, 620})
    EXPECT_EQ(judge("a", time, true), "(error cannot_say_freeform_while_playon)") << time;
  int granted = 1;
  while (judge("a", 5999, false) == "(ok say)" && granted < 300) ++granted;
  EXPECT_EQ(granted, 128);
  EXPECT_EQ(judge("a", 5999, false), "(error said_too_many_freeform_messages)");
  EXPECT_EQ(judge("a", 6000, false), "(ok say)");
}

class PracticeDesk : public ::testing::Test {
 protected:
  Texts ask(const std::string& text, bool terminated = true) {
    Texts answers;
    desk.take({text, terminated}, answers);
    return answers;
  }

  Match match{MatchSettings()};
  Report report;
  CoachDesk desk{match, report, false};
};

TEST_F(PracticeDesk, AnswersEachCommandAndWarnsAboutMissingTerminators) {
  EXPECT_EQ(ask("(eye off)", false),
            (Texts{"(warning message_not_null_terminated)", "(ok eye off)"}));
  EXPECT_EQ(ask("(change_player_type 5 3)"),
            (Texts{"(change_player_type 5 3)", "(ok change_player_type 5 3)"}));
  for (const auto& [command, answer] :
       {std::pair("(dance)", "(error unknown_command)"),
        {"dance", "(error illegal_command_form)"},
        {"(change_player_type 5 3 1)", "(error illegal_command_form)"},
        {"(change_player_type 6 3)", "(warning max_of_that_type_on_field)"},
        {"(change_player_type 6 18)", "(error out_of_range_player_type)"},
        {"(change_player_type 12 4)", "(warning no_such_player)"}})
    EXPECT_EQ(ask(command), Texts{answer}) << command;
  for (Texts texts; !match.playOn();) match.cycle(texts);
  EXPECT_EQ(ask("(change_player_type 5 17)"), Texts{"(warning cannot_sub_while_playon)"});
  EXPECT_EQ(std::pair(report.typesAsked, report.typesGiven), std::pair(5, 1));
}

TEST_F(PracticeDesk, ComparesWhatACoachSaysWithTheViewOfThatTime) {
  desk.viewSent();
  for (const double ballX : {0.0, 0.3}) {
    AudioMsg message(0, static_cast<unsigned>(match.time()), true);
    CoachMessage told;
    told.ball = {ballX, 0};
    told.otherTypes[4] = match.state().team(Side::Right)[4].type;
    told.write(message);
    message.createChkSums();
    ask("(say (freeform \"" + std::string(message.getEncoding()) + "\"))");
  }
  EXPECT_EQ(std::pair(report.messagesDecoded, report.ballsRight), std::pair(2, 1));
  EXPECT_EQ(std::pair(report.lastTypesRight, report.lastTypesUnknown), std::pair(1, 10));
}

TEST(PracticePlayers, AreLetInOnceAndDroppedWhenTheyStaySilent) {
  const Match match{MatchSettings()};
  std::string team;
  std::string error;
  PlayerPort port(match, team);
  Socket player;
  ASSERT_TRUE(port.open(0, error) && player.open(0, error)) << error;
  sockaddr_in from{};
  sockaddr_in to{AF_INET, htons(static_cast<in_port_t>(port.port())), {htonl(INADDR_LOOPBACK)}, {}};
  const auto answersTo = [&](const std::string& text, int times = 1) {
    for (int i = 0; i < times; ++i) player.send(text, to);
    port.company().serve();
    Texts answers;
    while (const auto answer = player.receive(from)) answers.push_back(answer->text);
    return answers;
  };
  const std::string init = "(init Alpha (version 9.00))";
  EXPECT_EQ(answersTo("", 30).size(), 20U) << "a flood is taken in pieces";
  EXPECT_EQ(answersTo(init).at(10), "(init l 2 before_kick_off)");
  const sockaddr_in own = from;
  EXPECT_EQ(answersTo(init), Texts{"(error no_more_team_or_player_or_goalie)"}) << "it is in";
  port.think();
  EXPECT_TRUE(port.allDone()) << "it has never answered";
  to = own;
  answersTo("(done)");
  for (int cycle = 0; cycle < 3; ++cycle) {
    port.think();
    EXPECT_FALSE(port.allDone());
    port.endCycle();
  }
  EXPECT_TRUE(port.allDone()) << "the silent player was dropped";
}

}  // namespace
