// What the coach and a player make of recorded matches, every byte of it in one number a variation.
//
// The recordings are those of tests/data, and where they are at hand the captures of a real server
// in ../shared (or in the folder that VOK_SHARED names). A change that is to keep the behaviour
// keeps the numbers in tests/data/signatures.txt. With VOK_TRANSCRIPTS=DIR the test leaves what it
// has summed up in DIR: compare the transcripts of the old and the new code before a number is set
// anew.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "Config.h"
#include "support/coach.h"
#include "support/param_keeper.h"

namespace vok::test {
namespace {

namespace fs = std::filesystem;

/// A file of tests/data, or a compressed one of the shared folders; empty when it is not there.
Lines readRecording(const std::string& name) {
  const char* shared = std::getenv("VOK_SHARED");
  const fs::path folder = shared != nullptr ? shared : VOK_SOURCE_DIR "/../shared";
  const bool isKept = name.find('/') == std::string::npos;
  const fs::path path = isKept ? fs::path(VOK_SOURCE_DIR "/tests/data/" + name + ".txt")
                               : folder / (name + ".txt.gz");
  if (!fs::exists(path)) return {};
  return lines(runCommand((isKept ? "cat " : "zcat ") + path.string()).second);
}

std::string testName(const testing::TestParamInfo<const char*>& recording) {
  std::string name = recording.param;
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

/// The number of "recording variation" in its line of the file.
std::string keptSignature(const std::string& name) {
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/signatures.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name + " ")) return line.substr(name.size() + 1);
  }
  return "none";
}

/// Everything that a client wrote, in order: "> " before what it sent, its lines as they are.
class Transcript : Unique {
 public:
  Transcript() : before_(std::cerr.rdbuf(text.rdbuf())) {}
  ~Transcript() { std::cerr.rdbuf(before_); }

  void takeCommands(TextServer& server, Lines* taken = nullptr) {
    for (std::string command; !(command = server.receive()).empty();) {
      text << "> " << command << '\n';
      if (taken != nullptr) taken->push_back(command);
    }
  }

  /// Holds the whole against the kept number.
  void check(const std::string& name) const {
    const std::string all = text.str();
    if (const char* folder = std::getenv("VOK_TRANSCRIPTS")) {
      std::string file = name;
      for (char& c : file) c = c == ' ' || c == '/' ? '.' : c;
      std::ofstream(fs::path(folder) / file) << all;
    }
    EXPECT_GT(all.size(), 1000U) << name;
    EXPECT_EQ(keptSignature(name), std::to_string(hashOf(all))) << name;
  }

  std::ostringstream text;

 private:
  std::streambuf* before_;
};

// The coach

struct Variation {
  bool left;
  bool synchronous;
  std::string settings;  ///< "plain", "keys" with two optional ones on, or "shipped"

  std::string name() const {
    return std::string(left ? "left" : "right") + (synchronous ? ",synchronous," : ",realtime,") +
           settings;
  }
};

/// The texts of a capture as they come in the other mode, too: a "(think)" behind every view, or
/// none.
Lines textsFor(const Lines& capture, const Variation& variation) {
  Lines texts;
  for (const std::string& line : capture) {
    std::string text = line.substr(line.find('\t') + 1);
    if (texts.empty()) text[6] = variation.left ? 'l' : 'r';
    if (const auto at = text.find("(synch_mode "); at != std::string::npos) {
      text[at + 12] = variation.synchronous ? '1' : '0';
    }
    if (text == "(think)") continue;
    texts.push_back(text);
    if (variation.synchronous && text.starts_with("(see_global ")) texts.emplace_back("(think)");
  }
  return texts;
}

/// A server's answers to the requests for player types: it refuses some, for every reason in turn.
class TypeDesk {
 public:
  Lines answers(const Lines& commands) {
    Lines all;
    for (const std::string& command : commands) {
      int number = 0;
      int type = 0;
      if (std::sscanf(command.c_str(), "(change_player_type %d %d)", &number, &type) != 2) continue;
      const std::string wish = std::to_string(number) + " " + std::to_string(type) + ")";
      static const Lines REFUSALS = {"(warning max_of_that_type_on_field)",
                                     "(warning no_such_player)", "(warning no_left_of_that_type)"};
      if (++asked_ % 4 == 0) {
        all.push_back(REFUSALS[asked_ / 4 % REFUSALS.size()]);
      } else {
        all.push_back("(change_player_type " + wish);
        all.push_back("(ok change_player_type " + wish);
      }
    }
    return all;
  }

 private:
  std::size_t asked_ = 0;
};

class CoachSignature : public testing::TestWithParam<const char*> {};

void replay(const std::string& recording, const Lines& texts, const Variation& variation) {
  const std::string config = testing::TempDir() + "vok-signature-" + std::to_string(getpid());
  {
    std::ofstream file(config);
    const bool shipped = variation.settings == "shipped";
    file << std::ifstream(shipped ? SHIPPED_CONFIG : PLAIN_CONFIG).rdbuf();
    if (variation.settings == "keys") file << "tac_typesFromDecay = 1\ntypes_withinLimits = 1\n";
  }
  TextServer server({texts[0], texts[1], texts[2]});
  Transcript transcript;
  TypeDesk desk;
  auto coach =
      std::make_unique<VokCoach>(variation.left ? "Alpha" : "Beta", server, config.c_str());
  server.receive();  // the init
  std::remove(config.c_str());
  ASSERT_NE(coach->world, nullptr);

  for (std::size_t i = 3; i < texts.size(); ++i) {
    coach->comm->receiveText(texts[i].c_str());
    coach->step();
    Lines commands;
    transcript.takeCommands(server, &commands);
    for (const std::string& answer : desk.answers(commands)) {
      coach->comm->receiveText(answer.c_str());
      coach->step();
    }
  }
  transcript.text << *coach->world << '\n';
  coach.reset();
  transcript.takeCommands(server);
  transcript.check(recording + " " + variation.name());
}

TEST_P(CoachSignature, IsTheSameAsEver) {
  const Lines capture = readRecording(GetParam());
  if (capture.empty()) GTEST_SKIP() << "no capture " << GetParam() << " at hand";
  const std::vector<double> parameters = ParamKeeper::values();
  for (const bool left : {true, false}) {
    const Variation variations[] = {{left, true, "plain"},
                                    {left, false, "plain"},
                                    {left, true, "keys"},
                                    {left, false, "keys"},
                                    {left, true, "shipped"}};
    for (const Variation& variation : variations) {
      ParamKeeper::store(parameters);
      Config::clear();
      replay(GetParam(), textsFor(capture, variation), variation);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Recordings, CoachSignature,
                         testing::Values("realtime_left", "types_left", "captures/types_left",
                                         "captures/match_left", "captures/rare_calls_left",
                                         "captures/cards_left", "captures/penalties_left"),
                         testName);

// A player

/// Sends a command of a recording through the connection, which counts it; others are left out.
void sendCommand(Comm& comm, const std::string& text) {
  double a = 0;
  double b = 0;
  if (std::sscanf(text.c_str(), "(dash %lf)", &a) == 1) comm.sendDash(a);
  if (std::sscanf(text.c_str(), "(turn %lf)", &a) == 1) comm.sendTurn(toRadians(a));
  if (std::sscanf(text.c_str(), "(turn_neck %lf)", &a) == 1) comm.sendTurnNeck(toRadians(a));
  if (std::sscanf(text.c_str(), "(kick %lf %lf)", &a, &b) == 2) comm.sendKick(a, toRadians(b));
  if (std::sscanf(text.c_str(), "(move %lf %lf)", &a, &b) == 2) comm.sendMove(a, b);
  if (std::sscanf(text.c_str(), "(pointto %lf %lf)", &a, &b) == 2)
    comm.sendPointTo(a, toRadians(b));
  if (text == "(pointto off)") comm.sendPointToOff();
  if (text == "(done)") comm.sendDone();
}

class PlayerSignature : public testing::TestWithParam<const char*> {};

TEST_P(PlayerSignature, IsTheSameAsEver) {
  const Lines events = readRecording(GetParam());
  if (events.empty()) GTEST_SKIP() << "no recording " << GetParam() << " at hand";
  ASSERT_TRUE(Config::readFile(PLAIN_CONFIG));
  TextServer server;
  for (std::size_t i = 1; i < 4; ++i) server.add(events[i].substr(events[i].find('<') + 2));
  Transcript transcript;
  Comm comm("Alpha", CLIENT_FIELDPLAYER, server, 0, false, 7, 8, SIDE_LEFT);
  ASSERT_EQ(comm.connect(), COMM_OK);
  server.receive();  // the init
  Worldmodel world(&comm);

  for (std::size_t i = 4; i < events.size(); ++i) {
    const auto arrow = events[i].find('\t') + 1;
    const std::string text = events[i].substr(arrow + 2);
    if (events[i][arrow] == '>') {
      sendCommand(comm, text);
    } else {
      comm.receiveText(text.c_str());
      if (comm.async->takeAct()) {
        world.adjust();
        transcript.text << world << '\n';
      }
    }
    transcript.takeCommands(server);
  }
  transcript.check(std::string(GetParam()) + " player");
}

INSTANTIATE_TEST_SUITE_P(Recordings, PlayerSignature,
                         testing::Values("player_left_7", "players/synch_left_7",
                                         "players/synch_left_8_views"),
                         testName);

}  // namespace
}  // namespace vok::test
