#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <sstream>
#include <tuple>

#include "audiomsg.h"
#include "coachdesk.h"
#include "match.h"
#include "playerport.h"
#include "recording.h"
#include "support/server.h"

using namespace vok;
using namespace vok::practicematch;

namespace {

using Texts = vok::test::Lines;

MatchSettings settings(std::uint64_t seed = MatchSettings().seed) {
  MatchSettings set;
  set.seed = seed;
  set.coachTeam = "Alpha";
  set.otherTeam = "Beta";
  return set;
}

/// Everything that is sent in so many cycles, or to the end.
Texts play(Match match, int cycles) {
  Texts all = match.checkIn();
  Texts texts;
  for (; cycles > 0 && !match.finished(); --cycles) {
    match.cycle(texts);
    all.insert(all.end(), texts.begin(), texts.end());
  }
  return all;
}

/// "kick_in_r" of "(hear 408 referee kick_in_r)"; empty for other texts. The count of a goal is cut
/// off.
std::string callIn(const std::string& text) {
  const std::size_t at = text.find(" referee ");
  if (at == std::string::npos) return {};
  std::string name = text.substr(at + 9, text.size() - at - 10);
  if (std::isdigit(static_cast<unsigned char>(name.back())) != 0) name.resize(name.rfind('_'));
  return name;
}

TEST(PracticeMatch, IsTheSameForTheSameSeedOnly) {
  const Texts texts = play(Match(settings(7)), 700);
  EXPECT_EQ(texts, play(Match(settings(7)), 700));
  EXPECT_NE(texts, play(Match(settings(8)), 700));
}

TEST(PracticeMatch, ShowsEveryStandardSituationAndStopsTheClockAfterGoalsAndFouls) {
  const Texts texts = play(Match(settings()), 20000);
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
  for (const std::string name : {"kick_off", "kick_in", "corner_kick", "goal_kick", "free_kick",
                                 "offside", "foul_charge", "goal"})
    EXPECT_TRUE(calls.contains(name + "_l") && calls.contains(name + "_r")) << name;
  for (const char* name : {"half_time", "before_kick_off", "play_on", "time_up", "time_over"})
    EXPECT_TRUE(calls.contains(name)) << name;
}

TEST(PracticeSayRules, JudgeFormAndTimeAndGrant128MessagesForEach6000Cycles) {
  const std::string longest(128, 'a');
  const std::string unread = "(error could_not_parse_say)";
  const std::string inPlay = "(error cannot_say_freeform_while_playon)";
  const std::tuple<std::string, long, bool, std::string> cases[] = {
      {"a (b) 1.+-*/?<>_" + longest.substr(16), 0, false, "(ok say)"},
      {longest + "a", 0, false, unread},
      {"", 0, false, unread},
      {"a,b", 0, false, unread},
      {"a", 600, true, inPlay},
      {"a", 619, true, "(ok say)"},
      {"a", 620, true, inPlay},
  };
  const auto command = [](const std::string& text) { return "(say (freeform \"" + text + "\"))"; };
  std::string text;
  for (const auto& [message, time, playOn, answer] : cases) {
    EXPECT_EQ(SayRules().judge(command(message), time, playOn, text), answer) << message << time;
    EXPECT_EQ(text, answer == "(ok say)" ? message : "");
  }
  SayRules rules;
  const std::string a = command("a");
  for (const long time : {5999, 6000}) {
    for (int i = 0; i < 128; ++i) ASSERT_EQ(rules.judge(a, time, false, text), "(ok say)");
    EXPECT_EQ(rules.judge(a, time, false, text), "(error said_too_many_freeform_messages)");
  }
}

class PracticeDesk : public ::testing::Test {
 protected:
  Texts ask(const std::string& text, bool terminated = true) {
    Texts answers;
    desk.take({text, terminated}, answers);
    return answers;
  }
  void playTo(std::string_view mode) {
    Texts texts;
    while (match.modeName() != mode) match.cycle(texts);
  }

  Match match{settings()};
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
        {"(change_player_type 12 4)", "(warning no_such_player)"}}) {
    EXPECT_EQ(ask(command), Texts{answer}) << command;
  }
  playTo("play_on");
  EXPECT_EQ(ask("(change_player_type 5 17)"), Texts{"(warning cannot_sub_while_playon)"});
  std::ostringstream page;
  report.print(page, &match, true);
  EXPECT_EQ(test::count(page.str(),
                        "\nchanges   5 types asked, 1 given, 4 refused (cannot_sub_while_playon "
                        "1, max_of_that_type_on_field 1, no_such_player 1, "
                        "out_of_range_player_type 1)\n"),
            1U)
      << page.str();
}

TEST_F(PracticeDesk, ComparesWhatACoachSaysWithTheViewOfThatTime) {
  playTo("kick_off_l");
  desk.viewSent();
  for (const double ballX : {0.0, 0.3}) {
    AudioMsg message(0, static_cast<unsigned>(match.time()), true);
    message << true << NodaChar(1) << NodaChar(1) << ballX << 0.0;
    for (int i = 0; i < 44; ++i) message << 1.0;
    for (int number = 1; number <= 11; ++number) message << NodaChar(number == 4 ? 8 : 0);
    message << Int3B(9U) << Int3B(0U);
    for (int damaged = 0; damaged < 2; ++damaged) {  // first the sum of no payload
      ask("(say (freeform \"" + std::string(message.getEncoding()) + "\"))");
      message.createChkSums();
    }
  }
  EXPECT_EQ(std::tuple(report.messagesAccepted, report.messagesDecoded, report.ballsRight),
            std::tuple(4, 2, 1));
  EXPECT_EQ(report.lastTypes[4], 7);
  EXPECT_EQ(report.lastTypesUnknown, 10);
  EXPECT_EQ(report.lastTypesRight, match.state().team(Side::Right)[4].type == 7 ? 1 : 0);
}

TEST(PracticePlayers, AreLetInOnceAndGivenUpWhenTheyStaySilent) {
  const Match match(settings());
  std::string team;
  std::string error;
  PlayerPort port(match, team);
  Socket player;
  ASSERT_TRUE(port.open(0, error) && player.open(0, error)) << error;
  sockaddr_in from{};
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port.port()));
  const auto answersTo = [&](const std::string& text, int times = 1) {
    for (int i = 0; i < times; ++i) player.send(text, address);
    port.company().serve();
    Texts answers;
    while (const auto answer = player.receive(from)) answers.push_back(answer->text);
    return answers;
  };
  const Texts refused = {"(error no_more_team_or_player_or_goalie)"};
  EXPECT_EQ(answersTo("(init Alpha (version "), Texts{"(error illegal_command_form)"});
  EXPECT_EQ(answersTo("", 30).size(), 20U) << "a flood is taken in pieces";
  EXPECT_EQ(answersTo("(dash 1)").size(), 11U);
  EXPECT_EQ(answersTo("(init Alpha (version 9.00))").at(0), "(init l 2 before_kick_off)");
  const sockaddr_in itsPort = from;
  EXPECT_EQ(answersTo("(init Alpha (version 9.00))"), refused) << "again from the same place";
  port.think();
  EXPECT_TRUE(port.allDone()) << "it has never answered";
  address = itsPort;
  answersTo("(done)");
  for (int cycle = 0; cycle < 3; ++cycle) {
    port.think();
    EXPECT_FALSE(port.allDone());
    port.endCycle();
  }
  EXPECT_TRUE(port.allDone()) << "nobody is waited for any longer";
}

TEST(PracticeReplay, TakesARecordingAndRefusesOtherFiles) {
  std::istringstream good("14\t(init r ok)\n15\t(server_param (synch_mode 1))\n");
  vok::tools::Recording recording;
  std::string error;
  EXPECT_TRUE(recording.read(good, error)) << error;
  EXPECT_TRUE(recording.synchronous());
  for (const char* wrong : {"14\t(init l ok)\nx\t(think)\n", "1x\t(init l ok)\n", "1\t(think)\n"}) {
    std::istringstream bad(wrong);
    EXPECT_FALSE(recording.read(bad, error)) << wrong;
  }
}

}  // namespace
