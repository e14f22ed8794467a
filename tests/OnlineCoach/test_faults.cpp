// The real coach program in matches, above all while the network, the server or the machine
// misbehaves: what it outlives, what ends it, and that a request to stop is obeyed at any moment.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <map>
#include <set>
#include <sstream>
#include <thread>
#include <tuple>

#include "support/server.h"

namespace vok::test {
namespace {

using namespace std::string_literals;
using Table = std::map<std::string, std::string>;

const std::string CLOSING = "Onlinecoach: could not connect to sserver, closing down\n";
const std::string UNDELIVERED = "Onlinecoach: could not deliver checkin message to server !\n";
const std::string MISREAD = "Onlinecoach: could not parse init response !\n";
const std::string STRANGER =
    "CommError: Comm (Alpha No.-1): cannot handle server checkin response ";
const std::string CHECKIN = "CommError: Comm (Alpha No.0): ";
const std::string NO_SERVER_PARAM = CHECKIN + "cannot parse server_param ";
const std::string NOT_SERVER_PARAM = CHECKIN + "got player_param instead of server_param\n";
const std::string NOT_PLAYER_PARAM = CHECKIN + "got server_param instead of player_param\n";
const std::string READ_ERROR = "CommError: error while recving data\n" + UNDELIVERED + CLOSING;
const std::string UNREADABLE = "CommError: 1 Comm (Alpha No.0): could not parse server string ";
const std::string MALFORMED = "Parser: malformed object: ";
const std::string DUMPING =
    "DataStore: more than 20 unprocessed SensorDatas, dumping oldest one.\n";

std::string padded(std::string text, std::size_t size) {
  text.insert(text.size() - 1, size - text.size(), ' ');
  return text;
}

std::string crowd(int players) {
  std::string text = "(see_global 2 ((b) 0 0 0 0)";
  for (int i = 0; i < players; ++i) text += " ((p \"Beta\" 1) 0 0 0 0 0 0)";
  return text + ")";
}

// What the servers say, each with a NUL byte behind it, and what the coach is to say.
const Table TEXTS = {
    {"init", "(init l ok)"},
    {"init-r", "(init r ok)"},
    {"init-long", padded("(init l ok)", 60000)},
    {"refusal", "(error no_such_team)"},
    {"server", SERVER_PARAM},
    {"server-hasty", "(server_param (simulator_step 10)(synch_mode 1))"},  // dead in half a second
    {"server-8192", padded(SERVER_PARAM, 8191)},
    {"server-cut", padded("(server_param (synch_mode 1) ", 8185) + "(half_time 1))"},
    {"player", PLAYER_PARAM},
    {"player-8193", padded(PLAYER_PARAM, 8192)},
    {"player-cut", "(player_param (player_types 7)(pt_\0max 1))"s},
    {"player-none", "(player_param (player_types 0)(pt_max 0)(subs_max 0))"},
    {"player-200", "(player_param (player_types 200)(pt_max 1)(subs_max 3))"},
    {"think", "(think)"},
    {"think-nul", "(think)\0\0\0"s},
    {"view-nul", "(see_global 2 ((b) 0 0\0 0 0))"s},
    {"nul-view", "\0(see_global 2 ((b) 0 0 0 0))"s},
    {"view-nul-over", view(2) + "\0(hear 2 referee time_over)"s},
    {"crowd22", crowd(22)},
    {"crowd23", crowd(23)},
    {"kickoff", "(hear 0 referee kick_off_l)"},
    {"goal", "(hear 1 referee goal_l_1)"},
    {"foul", "(hear 3 referee foul_charge_l)"},
    {"over", "(hear 1 referee time_over)"},
    {"bogus", "(bogus)"},
    {"error", "(error unknown_command)"},
    {"see12", "(see 12)"},
    {"unterminated", "(warning message_not_null_terminated)"}};
const Table COMMANDS = {{"INIT", "(init Alpha (version 9.00))"},
                        {"EYE", "(eye on)"},
                        {"DONE", "(done)"},
                        {"BYE", "(bye)"},
                        {"DONE$", "(done)$"},
                        {"BYE$", "(bye)$"},
                        {"NOTHING", ""}};
const std::map<std::string, int> SIGNALS = {
    {"alarm", SIGALRM}, {"pipe", SIGPIPE}, {"stop", SIGSTOP}, {"go", SIGCONT}, {"end", SIGTERM}};

// A coach, its server and another one that knows of it.
struct Game {
  explicit Game(const Lines& options = {}, FailingSend failing = {})
      : coach(coachArguments(server->port(), options), failing) {}
  ~Game() {
    if (helper_ <= 0) return;
    kill(helper_, SIGKILL);
    waitpid(helper_, nullptr, 0);
  }

  /// Plays words of the tables: sends a text, waits for a command, sends the coach a signal.
  /// "v3" is the view of time 3, "start" a whole check-in with a first cycle; "x*5" plays x five
  /// times; "2:x" lets the other server do it; behind "MEANWHILE" all goes on to the game's end.
  void play(const std::string& script) {
    std::istringstream words(script);
    for (std::string word; words >> word;) {
      if (word == "MEANWHILE") return meanwhile(std::string(std::istreambuf_iterator(words), {}));
      const std::size_t star = word.find('*');
      const int times = star < word.size() ? std::stoi(word.substr(star + 1)) : 1;
      for (int i = 0; i < times; ++i) playWord(word.substr(0, star));
    }
  }

  std::unique_ptr<ScriptedServer> server = std::make_unique<ScriptedServer>();
  CoachProcess coach;

 private:
  void playWord(const std::string& word) {
    const std::string next = "v" + std::to_string(time_ + 1);
    if (word.starts_with("2:")) {
      other_.swap(server);
      server->address(*other_);
      playWord(word.substr(2));
      other_.swap(server);
    } else if (TEXTS.contains(word)) {
      server->send(TEXTS.at(word));
    } else if (COMMANDS.contains(word)) {
      EXPECT_EQ(server->answer(word == "NOTHING" ? 20 : 3000), COMMANDS.at(word)) << "at " << time_;
    } else if (SIGNALS.contains(word)) {
      coach.signal(SIGNALS.at(word));
    } else if (word == "start") {
      play("INIT init EYE server player v1 think DONE");
    } else if (word == "cycle") {
      play(next + " think DONE");
    } else if (word == "type") {
      server->send(playerType(types_++));
    } else if (word == "empty") {
      server->sendBytes("");
    } else if (word == "wait") {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    } else if (word == "settle") {
      // Cycles until the coach is through; the system may have dropped the first.
      for (int tries = 0; tries < 9; ++tries) {
        while (!server->answer(100).empty()) continue;
        play("v" + std::to_string(time_ + 1) + " think");
        if (server->answer(1000) == "(done)") break;
      }
      while (!server->answer(100).empty()) continue;
    } else if (word.starts_with("big")) {
      const std::string seen = view(++time_);
      server->send(seen + std::string(std::stoul(word.substr(3)) - seen.size() - 1, ')'));
    } else {
      ASSERT_EQ(word[0], 'v') << word;
      time_ = std::stol(word.substr(1));
      server->send(view(time_));
    }
  }

  // In a process of its own, which does not outlive this one.
  void meanwhile(const std::string& script) {
    helper_ = fork();
    if (helper_ != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (;;) play(script);
  }

  std::unique_ptr<ScriptedServer> other_ = std::make_unique<ScriptedServer>();
  long time_ = 0;
  int types_ = -1;
  pid_t helper_ = -1;
};

struct Fault {
  const char* name;
  const char* words;
  std::string lines = {};  ///< beginnings of the coach's lines, each at least once
};

void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.name;
}

std::string nameOf(const testing::TestParamInfo<Fault>& tested) {
  return tested.param.name;
}

// It ends by itself in order, and has said no lines but those that begin so.
void expectEnd(CoachProcess& coach, const std::string& text) {
  EXPECT_EQ(coach.wait(2000), 0);
  const Lines beginnings = lines(text);
  std::set<std::string> missing(beginnings.begin(), beginnings.end());
  std::set<std::string> unexplained;
  for (const std::string& line : coach.reports()) {
    const auto begins = [&line](const std::string& b) { return line.starts_with(b); };
    std::erase_if(missing, begins);
    if (std::none_of(beginnings.begin(), beginnings.end(), begins)) unexplained.insert(line);
  }
  EXPECT_EQ(missing, std::set<std::string>());
  EXPECT_EQ(unexplained, std::set<std::string>());
}

class Outlived : public testing::TestWithParam<Fault> {};

TEST_P(Outlived, AndThenEveryCycleIsAnsweredOnce) {
  Game game;
  game.play(GetParam().words);
  game.play("cycle*2 NOTHING end BYE");
  expectEnd(game.coach, GetParam().lines);
}

const Fault OUTLIVED_FAULTS[] = {
    {"ServerParamTwice", "INIT init EYE server server player",
     NOT_PLAYER_PARAM +
         "CommError: 0 Comm (Alpha No.0): could not parse server string (player_param \n"},
    {"ParametersInTheOtherOrder", "INIT init player server EYE",
     NOT_SERVER_PARAM + NOT_PLAYER_PARAM},
    // Before the kick-off and after a foul, although the play mode does not tell.
    {"ClockStandsStill",
     "INIT init EYE server player v0 NOTHING think DONE kickoff v0 think DONE v1 think DONE "
     "think NOTHING v2 DONE foul v3 think DONE v3 think DONE think v3 DONE"},
    {"CheckinAmongAlarms", "INIT alarm init alarm EYE alarm server wait alarm player alarm"},
    {"LateTextsFromChangingPorts", "INIT wait*50 2:init 2:EYE wait*50 server wait*50 2:player"},
    {"CheckinOfLongTexts", "INIT init-long EYE server-8192 player-8193"},
    {"ParametersCutOff", "INIT init EYE server-cut player-cut"},
    {"NoPlayerTypesButThreeAnnounced", "INIT init EYE server player-none type*3"},
    {"PlayerTypes200InOneBurst", "INIT init EYE server player-200 type*200 settle", DUMPING},
    {"LostView", "start think"},
    {"LostThink", "start v2"},
    {"ViewTwice", "start v2 v2 think DONE v2"},
    {"ThinkTwice", "start v2 think think DONE"},
    {"ThinkBeforeItsView", "start think v2 DONE v3 think DONE think v4 DONE"},
    {"LateView", "start v3 think DONE v2 think DONE v3",
     "3 AsyncInfo (Alpha No.0): completely missed server timesteps from 2 to 2 \n"},
    {"LateAndDoubledGoal", "start v2 goal think DONE goal"},
    {"TimeGoesBackFromTheLastThereIs",
     "start v2147483647 think DONE v5 think DONE v-5 think DONE v0 think DONE",
     "2147483647 AsyncInfo (Alpha No.0): completely missed server timesteps from 2 to \n"},
    {"AlarmsAtAnyMoment", "start MEANWHILE alarm wait"},
    {"StoppedForLongerThanItsPatience",
     "INIT init EYE server-hasty player cycle stop wait*700 v2 think v3 think go DONE DONE"},
    {"StoppedTogetherWithTheServer",
     "INIT init EYE server-hasty wait*50 stop wait*700 go wait*50 player cycle "
     "stop wait*700 go wait*50 cycle"},
    {"NobodyReadsItsLines", "start pipe cycle"},
    {"PortMovesWhileAnAnswerIsOnItsWay", "start v2 think 2:NOTHING DONE 2:cycle*9"},
    {"AnswersFromTwoPorts", "start v2 2:think 2:DONE think 2:v3 2:DONE"},
    {"SecondServerChecksIn", "start 2:init-r 2:server 2:player",
     UNREADABLE + "(init r ok)\n" + UNREADABLE + "(server_param \n" + UNREADABLE +
         "(player_param \n"},
    {"EmptyDatagrams", "start empty*50", UNREADABLE + "\n"},
    {"ViewsOf8192BytesAndMore",
     "start big8191 think DONE big8192 think DONE big8193 think DONE big65507 think DONE"},
    {"NulBytesInside", "start view-nul nul-view view-nul-over think-nul DONE",
     UNREADABLE + "\n" + MALFORMED + "\n'((b) 0 0'\n"},
    {"PlayerNumber23", "start crowd22 think DONE crowd23",
     "Parser: to manny players!\n"
     "CommError: 2 Comm (Alpha No.0): could not parse server string (see_global 2\n"},
    {"FloodOfNonsense", "start bogus*20000 settle", UNREADABLE + "(bogus)\n"},
    {"FloodOfTypes", "start type*20000 settle", DUMPING},
    {"FloodOfThinks", "start think*20000 settle"},
};

INSTANTIATE_TEST_SUITE_P(Faults, Outlived, testing::ValuesIn(OUTLIVED_FAULTS), nameOf);

class Fatal : public testing::TestWithParam<Fault> {};

TEST_P(Fatal, AndTheCoachEndsInOrder) {
  Game game;
  game.play(GetParam().words);
  expectEnd(game.coach, GetParam().lines);
  game.play("NOTHING");
}

const Fault FATAL_FAULTS[] = {
    {"EmptyAnswer", "INIT empty BYE", STRANGER + "\n" + MISREAD + CLOSING},
    {"Refusal", "INIT refusal BYE", STRANGER + "(error no_such_team)\n" + MISREAD + CLOSING},
    {"AnswersOfTwoServers", "INIT init 2:init-r EYE 2:BYE",
     NO_SERVER_PARAM + "(init r ok)\n" + UNDELIVERED + CLOSING},
    {"InitTwice", "INIT init init EYE BYE",
     NO_SERVER_PARAM + "(init l ok)\n" + UNDELIVERED + CLOSING},
    {"LostServerParam", "INIT init player v1 EYE BYE",
     NOT_SERVER_PARAM + CHECKIN + "cannot parse player_param (see_global 1\n" + UNDELIVERED +
         CLOSING},
    {"LostPlayerParam", "INIT init server-hasty EYE BYE",
     "CommError: select timed out\n"
     "Onlinecoach: did not receive response from server !\n" +
         CLOSING},
    {"SilenceAmongAlarms", "INIT init EYE server-hasty player v1 think DONE MEANWHILE alarm wait",
     "CommError:  (Alpha No. 0) select timed out assuming server is dead\n"},
    // From the warning on every command carries its NUL byte.
    {"TimeOverBehindUnreadableTexts",
     "start error bogus see12 unterminated v13 think DONE$ over BYE$",
     "CommError: 1 Comm (Alpha No.0): received error message from server: (error "
     "unknown_command)\n" +
         UNREADABLE + "(bogus)\n" +
         "12 AsyncInfo (Alpha No.0): completely missed server timesteps from 2 to 11 (no commands "
         "sent)\nCommError: 12 Comm (Alpha No.0): received strange message from server: (see 12)\n"
         "CommError: 12 Comm (Alpha No.0): received warning message from server: "
         "(warning message_not_null_terminated)\n"},
};

INSTANTIATE_TEST_SUITE_P(Faults, Fatal, testing::ValuesIn(FATAL_FAULTS), nameOf);

class AtAnyMoment : public testing::TestWithParam<Fault> {};

TEST_P(AtAnyMoment, ASignalEndsTheCoachWithinASecond) {
  using std::chrono::steady_clock;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    Game game({"-F"});
    game.play(GetParam().words);
    game.coach.signal(number);
    const auto limit = steady_clock::now() + std::chrono::seconds(1);
    std::string last;
    while (last != "(bye)" && steady_clock::now() < limit) last = game.server->answer(100);
    EXPECT_EQ(last, "(bye)");
    expectEnd(game.coach, GetParam().lines);
  }
}

const Fault MOMENTS[] = {
    {"BehindTheInit", "INIT", READ_ERROR},
    {"BetweenTheParameters", "INIT init server EYE", READ_ERROR},
    {"BetweenViewAndThink", "start v2"},
    {"InAnEndlessWait", "INIT init server-hasty player EYE cycle wait*600 cycle"},
    {"AmongAlarms", "start MEANWHILE alarm wait"},
    {"InAFloodOfNonsense", "start bogus wait*50 MEANWHILE bogus", UNREADABLE + "(bogus)\n"},
    {"InAFloodOfCycles", "start MEANWHILE v1 think"},
};

INSTANTIATE_TEST_SUITE_P(Faults, AtAnyMoment, testing::ValuesIn(MOMENTS), nameOf);

TEST(FailingSends, AreReportedAndTheCommandIsLost) {
  const std::string unsent = " Comm (Alpha No.0): agent cannot send ";
  const std::tuple<const char*, int, const char*, std::string> cases[] = {
      {"INIT", ENETUNREACH, "BYE", "CommError: could not send msg\n" + UNDELIVERED + CLOSING},
      {"EYE", EHOSTUNREACH, "INIT init server player v1 think DONE over BYE",
       "CommError: 0 Comm (Alpha No.-1): agent cannot send (eye on) to server"},
      {"DONE", ENOBUFS, "INIT init EYE server player v1 think over BYE",
       "CommError: 1" + unsent + "(done) to server"},
      {"BYE", EPERM, "start over", "CommError: 1" + unsent + "(bye) to server"}};
  for (const auto& [lost, error, words, reported] : cases) {
    Game game({}, {static_cast<unsigned>(COMMANDS.at(lost).size()), error});
    game.play(words);
    expectEnd(game.coach, reported);
  }
}

}  // namespace
}  // namespace vok::test
